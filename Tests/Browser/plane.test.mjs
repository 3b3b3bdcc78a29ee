// The picture beneath the pages, in screenshots of the whole screen.
import assert from "node:assert/strict";
import { after, before, describe, it } from "node:test";
import { join } from "node:path";
import { PageServer } from "./Harness/pages.mjs";
import { Picture } from "./Harness/picture.mjs";
import { shell } from "./Harness/programs.mjs";
import { Workplace } from "./Harness/workplace.mjs";

const black = "#000000";
const graphics = "#204060";

// Presents a channel, then does `step`, and is done when the object is in the given state after it.
const page = (step, state) => `<!DOCTYPE html><html><head><style>
body { margin: 0; height: 2000px }
#video { position: absolute; left: 200px; top: 100px; width: 640px; height: 360px }
#graphics { position: fixed; left: 0; top: 80px; width: 1280px; height: 60px; background: ${graphics} }
</style></head><body><object type="video/broadcast" id="video"></object><div id="graphics"></div>
<div id="verdict"></div><script>
const video = document.getElementById("video");
const frame = () => new Promise(requestAnimationFrame);
(async () => {
  while (!video.bindToCurrentChannel)
    await frame();
  let stepped = false;
  video.onPlayStateChange = async playState => {
    if (playState === 2 && !stepped) {
      stepped = true;
      await (${step})(video);
    }
    if (playState !== ${state} || !stepped)
      return;
    // A hole is looked at once a frame, and tells of its new place in that frame.
    for (let count = 0; count < 4; ++count)
      await frame();
    document.getElementById("verdict").dataset.verdict = "pass";
  };
  video.bindToCurrentChannel();
})();
</script></body></html>`;

describe("The video plane", () => {
  let workplace, server, pictures = 0;

  before(async () => {
    workplace = await Workplace.create();
    server = await PageServer.start();
  });

  after(async () => {
    await server?.close();
    await workplace?.close();
  });

  // Each shell runs a receiver of its own, in which no player is left from before.
  async function screenWith(body) {
    const path = join(workplace.env.HOME, `${++pictures}.png`);
    const url = server.write(`plane-${pictures}.html`, body);
    const program = workplace.start(shell(), ["--exit-after-load", "--screenshot", path, url]);
    await program.ended;
    assert.equal(program.exitCode, 0);
    return new Picture(path);
  }

  // White and black marks stand along the edges of the card, which is 16 by 9 cells.
  function assertCardAt(picture, x, y, width, height) {
    const inEdge = Math.floor(height / 9 / 8);
    const middle = cell => Math.floor((cell + 0.5) * width / 16);
    const bottom = y + height - 1 - inEdge;
    for (const cell of [2, 8, 14])
      assert.equal(picture.at(x + middle(cell), bottom), "#ffffff", `the white mark ${cell}`);
    for (const cell of [3, 9])
      assert.equal(picture.at(x + middle(cell), bottom), black, `the black mark ${cell}`);
    if (bottom + 2 * inEdge < picture.height)
      assert.equal(picture.at(x + middle(8), y + height + inEdge), black, "beneath the card");
  }

  for (const [what, step, place] of [
    ["where the object is, beneath the graphics", () => {}, [200, 100, 640, 360]],
    ["where the object was scrolled to", () => scrollTo(0, 250), [200, -150, 640, 360]],
    ["where the object was moved to", video => { video.style.left = "600px"; video.style.top = "300px"; },
      [600, 300, 640, 360]],
    ["as large as the object, in its own form",
      video => { video.style.width = "320px"; video.style.height = "400px"; }, [200, 210, 320, 180]],
    ["where setWindow() wants it", video => video.setWindow(900, 20, 320, 180), [900, 20, 320, 180]],
    ["on the full screen", video => video.setFullScreen(true), [0, 0, 1280, 720]]
  ]) {
    it(`shows the picture ${what}`, async () => {
      const picture = await screenWith(page(step, 2));
      assertCardAt(picture, ...place);
      assert.equal(picture.at(300, 110), graphics, "the graphics above the picture");
    });
  }

  for (const [what, step, state] of [
    ["is stopped", video => video.stop(), 3],
    ["is released", video => video.release(), 0],
    // Nobody hears of the state of an object that is gone.
    ["has left the document", video => { video.remove(); }, 2]
  ]) {
    it(`is black when the object ${what}`, async () => {
      const picture = await screenWith(page(step, state));
      for (const [x, y] of [[240, 455], [520, 280], [240, 160], [1000, 600]])
        assert.equal(picture.at(x, y), black, `at ${x}, ${y}`);
    });
  }

  it("is hidden by a page that paints its background, and black beneath one that does not", async () => {
    const body = style => `<html><body style="${style}"></body></html>`;
    assert.equal((await screenWith(body("background: #123456"))).at(640, 360), "#123456");
    assert.equal((await screenWith(body(""))).at(640, 360), black);
  });
});
