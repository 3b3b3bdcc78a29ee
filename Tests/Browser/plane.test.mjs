// The picture beneath the pages, in screenshots of the whole screen.
import assert from "node:assert/strict";
import { after, before, describe, it } from "node:test";
import { join } from "node:path";
import { PageServer } from "./Harness/pages.mjs";
import { Picture } from "./Harness/picture.mjs";
import { shell } from "./Harness/programs.mjs";
import { Receiver } from "./Harness/receiver.mjs";
import { waitFor } from "./Harness/wait.mjs";
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

// Plays a medium in each object, does `step` with the first one, and is done when that is in the given state.
const mediaPage = (step, state, objects = 1) => `<!DOCTYPE html><html><head><style>
body { margin: 0 }
object { position: absolute; width: 640px; height: 360px }
#film { left: 200px; top: 100px }
#other { left: 860px; top: 500px; width: 320px; height: 180px }
</style></head><body><object type="video/mp4" data="http://media.invalid/film.mp4" id="film"></object>
${objects > 1 ? '<object type="video/mp4" data="http://media.invalid/other.mp4" id="other"></object>' : ""}
<div id="verdict"></div><script>
const films = [...document.querySelectorAll("object")];
const frame = () => new Promise(requestAnimationFrame);
const reached = (film, state) => new Promise(resolve => {
  film.onPlayStateChange = now => now === state && resolve();
});
(async () => {
  while (!films.every(film => film.play))
    await frame();
  for (const film of films) {
    const playing = reached(film, 1);
    film.play(1);
    await playing;
  }
  const done = reached(films[0], ${state});
  await (${step})(films[0]);
  if (${state} !== 1)
    await done;
  for (let count = 0; count < 4; ++count)
    await frame();
  document.getElementById("verdict").dataset.verdict = "pass";
})();
</script></body></html>`;

const nothing = "<!DOCTYPE html><html><body></body></html>";

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

// Shells one after the other, with a bus, a display and pages for all of them.
class Screens {
  static async open() {
    const screens = new Screens();
    screens.workplace = await Workplace.create();
    screens.server = await PageServer.start();
    return screens;
  }

  #count = 0;

  // Unless there is a receiver already, the shell runs one of its own, in which no player is left from before.
  async with(body) {
    const path = join(this.workplace.env.HOME, `${++this.#count}.png`);
    const url = this.server.write(`plane-${this.#count}.html`, body);
    const program = this.workplace.start(shell(), ["--session-bus", "--exit-after-load", "--screenshot", path, url]);
    await program.ended;
    assert.equal(program.exitCode, 0);
    return new Picture(path);
  }

  async close() {
    await this.server.close();
    await this.workplace.close();
  }
}

describe("The video plane", () => {
  let screens;

  before(async () => {
    screens = await Screens.open();
  });

  after(() => screens?.close());

  const screenWith = body => screens.with(body);

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

  for (const [what, step, place, state] of [
    ["where the object is", () => {}, [200, 100, 640, 360], 1],
    ["while it pauses", film => film.play(0), [200, 100, 640, 360], 2],
    ["where the object was moved to while it plays", film => { film.style.left = "400px"; },
      [400, 100, 640, 360], 1],
    ["on the full screen", film => film.setFullScreen(true), [0, 0, 1280, 720], 1]
  ]) {
    it(`shows a medium ${what}`, async () => {
      assertCardAt(await screenWith(mediaPage(step, state)), ...place);
    });
  }

  it("shows two media at once, and no longer one that was stopped", async () => {
    const both = await screenWith(mediaPage(() => {}, 1, 2));
    assertCardAt(both, 200, 100, 640, 360);
    assertCardAt(both, 860, 500, 320, 180);
    const one = await screenWith(mediaPage(film => film.stop(), 0, 2));
    assert.equal(one.at(240, 455), black);
    assertCardAt(one, 860, 500, 320, 180);
  });

  it("is hidden by a page that paints its background, and black beneath one that does not", async () => {
    const body = style => `<html><body style="${style}"></body></html>`;
    assert.equal((await screenWith(body("background: #123456"))).at(640, 360), "#123456");
    assert.equal((await screenWith(body(""))).at(640, 360), black);
  });
});

// Plays on all kinds of players at once, and goes on.
const busyPage = `<!DOCTYPE html><html><head><style>
object { position: absolute; width: 320px; height: 180px; top: 0 }
</style></head><body><object type="video/broadcast" style="left: 0"></object>
<object type="video/mp4" data="http://x/film.mp4" style="left: 200px; top: 200px; width: 640px; height: 360px"></object>
<object type="video/mp4" data="http://x/song.mp3" style="left: 900px"></object><script>
const objects = [...document.querySelectorAll("object")];
(async () => {
  while (!objects.every(object => object.bindToCurrentChannel || object.play))
    await new Promise(requestAnimationFrame);
  objects[0].bindToCurrentChannel();
  objects.slice(1).forEach(film => film.play(1));
})();
</script></body></html>`;

describe("The video plane of a shell that comes later", () => {
  let screens, receiver;

  before(async () => {
    screens = await Screens.open();
    receiver = await Receiver.start(screens.workplace);
  });

  after(async () => {
    await receiver?.stop();
    await screens?.close();
  });

  const playersShown = async count => waitFor(`${count} players are shown`, async () => {
    const [planes] = await receiver.call("GetPlanes");
    return planes.length === count;
  });

  it("shows what another one's page plays, takes nothing from it, and nothing stays when that is killed", async () => {
    await receiver.setWorld("/media/items", [
      { url: "*/song*", components: [{ type: "audio", encoding: "MPEG1_L3", pid: 1 }] },
      { url: "*", duration_ms: 600000 }
    ]);
    const other = screens.workplace.start(shell(), ["--session-bus", screens.server.write("busy.html", busyPage)]);
    await playersShown(3);
    const picture = await screens.with(nothing);
    assertCardAt(picture, 0, 0, 320, 180);
    assertCardAt(picture, 200, 200, 640, 360);
    const ground = picture.at(905, 5);
    assert.notEqual(ground, black);
    assert.equal(picture.at(1215, 175), ground);
    assert.equal(picture.at(905, 175), ground);
    assert.equal(picture.at(1225, 175), black);

    await playersShown(3);
    await screens.workplace.stop(other, "SIGKILL");
    await playersShown(0);
    await waitFor("the receiver keeps nothing of it",
      async () => Object.keys(await receiver.getWorld("/state/callers")).length === 0);
  });
});
