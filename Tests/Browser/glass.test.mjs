// The pictures of players as a viewer sees them: what is on the display, looked at again and again.
import assert from "node:assert/strict";
import { execFileSync } from "node:child_process";
import { mkdtempSync, readFileSync, rmSync, writeFileSync } from "node:fs";
import { tmpdir } from "node:os";
import { after, before, describe, it } from "node:test";
import { setTimeout as pause } from "node:timers/promises";
import { join } from "node:path";
import { Picture } from "./Harness/picture.mjs";
import { defaultScenario, exitAfterLoad, shell, sourceRoot } from "./Harness/programs.mjs";
import { useTelevision } from "./Harness/suite.mjs";
import { waitFor } from "./Harness/wait.mjs";

const [black, ground, menu, overlay] = ["#000000", "#605020", "#204060", "#ff8000"];

// Everything that is not a picture is opaque, and there are things of the page before and behind each.
const page = body => `<!DOCTYPE html><html><head><style>
body { margin: 0; background: #123456 }
#ground { position: absolute; left: 0; top: 0; width: 1280px; height: 720px; background: ${ground} }
#menu { position: absolute; left: 250px; top: 150px; width: 100px; height: 400px; background: ${menu} }
#overlay { position: absolute; left: 0; top: 120px; width: 700px; height: 20px; background: ${overlay} }
object { position: absolute; width: 640px; height: 360px }
</style></head><body><div id="ground"></div><div id="menu">Menu</div>${body}<div id="overlay"></div><script>
window.objects = [...document.querySelectorAll("object")];
window.begin = async object => {
  while (!object.bindToCurrentChannel && !object.play)
    await new Promise(requestAnimationFrame);
  if (object.bindToCurrentChannel)
    object.bindToCurrentChannel();
  else
    object.play(1);
};
objects.forEach(begin);
</script></body></html>`;

const channel = style => `<object type="video/broadcast" style="${style}"></object>`;
const film = (style, name = "film") =>
  `<object type="video/mp4" data="http://media.invalid/${name}.mp4" style="${style}"></object>`;

// A point of the card, which is 16 by 9 cells with white and black marks along its edges, and its colour.
const marks = [[0.5, 0.005, "#ffffff"], [2.5, 8.9, "#ffffff"], [14.5, 8.9, "#ffffff"], [3.5, 8.9, black],
  [15.9, 2.5, "#ffffff"], [15.9, 3.5, black], [0.08, 5.5, black]].map(([x, y, colour]) => [x / 16, y / 9, colour]);
const cardAt = (x, y, width, height) =>
  marks.map(([right, down, colour]) => [x + right * width, y + down * height, colour]);

for (const [how, environment, scale, wayland] of [
  ["with the display's GL", {}, 1],
  ["without compositing", { WEBKIT_DISABLE_COMPOSITING_MODE: "1" }, 1],
  ["on a display of twice the pixels", { GDK_SCALE: "2" }, 2],
  ["on Wayland", { WEBKIT_DISABLE_COMPOSITING_MODE: "1" }, 1, true]
]) {
  describe(`What a viewer sees ${how}`, () => {
    const television = useTelevision({ environment, wayland });

    const differences = (picture, points) => points.flatMap(([x, y, colour]) => {
      const seen = picture.at(Math.floor(x * scale), Math.floor(y * scale));
      return seen === colour ? [] : [`${seen} at ${x}, ${y} instead of ${colour}`];
    });
    const look = () => television.workplace.look(1280 * scale, 720 * scale);
    // At last, and then at each look for a second: a picture must not come and go.
    const sees = async points => {
      let wrong;
      // A software GL compiles shaders before the first picture, longer than ten seconds while others build.
      await waitFor("the points have their colours", async () => {
        wrong = differences(look(), points);
        return wrong.length === 0;
      }, 60000).catch(() => assert.deepEqual(wrong, []));
      for (let count = 0; count < 4; ++count) {
        await pause(250);
        assert.deepEqual(differences(look(), points), []);
      }
    };
    const show = body => television.show("glass.html", page(body));
    const run = step => television.browser.run(step);

    it("is cut through what lies behind, beneath what lies above, clipped, scaled, turned and pushed out", async () => {
      await show(`${channel("left: 200px; top: 100px")}
        ${film("left: 900px; top: 20px; width: 320px; height: 180px")}
        <div style="position: absolute; left: 900px; top: 250px; width: 160px; height: 200px; overflow: hidden">
        ${channel("width: 320px; height: 180px")}</div>
        ${channel("left: 1120px; top: 500px; width: 320px; height: 180px")}
        ${film("left: 400px; top: 500px; width: 320px; height: 180px; transform: scale(0.5)", "half")}
        ${film("left: 20px; top: 500px; width: 320px; height: 180px; transform: rotate(180deg)", "turned")}
        ${channel("left: 800px; top: 600px; width: 1px; height: 1px")}
        ${channel("left: 800px; top: 650px; width: 80px; height: 60px")}`);
      await sees([
        ...cardAt(200, 100, 640, 360), [300, 130, overlay], [190, 130, overlay], [300, 470, menu], [190, 300, ground],
        ...cardAt(900, 20, 320, 180),
        ...cardAt(900, 250, 320, 180).filter(([x]) => x < 1060), [1064, 252, ground],
        ...cardAt(1120, 500, 320, 180).filter(([x]) => x < 1280),
        ...cardAt(480, 545, 160, 90), [470, 550, ground],
        ...cardAt(20, 500, 320, 180).map(([x, y, colour]) => [2 * 180 - x, 2 * 590 - y, colour]),
        [798, 598, ground], [803, 603, ground],
        ...cardAt(800, 657.5, 80, 45).slice(1, 2), [810, 653, black]
      ]);
    });

    it("follows what becomes of the object, and the driver's screenshot is the same", async () => {
      await show(`${film("left: 600px; top: 300px")}${channel("left: 0; top: 500px; width: 320px; height: 180px")}`);
      await sees([...cardAt(600, 300, 640, 360), ...cardAt(0, 500, 320, 180)]);
      await run(() => objects[0].setFullScreen(true));
      // The channel comes later in the document, so it is above.
      await sees([[680, 718, "#ffffff"], [280, 450, "#5c616b"], [300, 130, overlay], ...cardAt(0, 500, 320, 180)]);
      await run(() => {
        objects[0].setFullScreen(false);
        objects[1].setWindow(20, 300, 320, 180);
        objects[0].style.transform = "translate(-600px, -300px) scale(0.5)";
        document.body.style.height = "2000px";
      });
      await sees([...cardAt(160, 90, 320, 180), ...cardAt(20, 300, 320, 180), [1100, 500, ground]]);
      const screenshot = new Picture(Buffer.from(await television.browser.driver.takeScreenshot(), "base64"));
      assert.deepEqual(differences(screenshot, cardAt(160, 90, 320, 180)), []);
      await run(() => {
        objects[0].style.transform = "";
        scrollTo(0, 250);
        objects[1].stop();
      });
      await sees([...cardAt(600, 50, 640, 360), [150, 60, ground]]);
    });

    it("keeps its shape while the object grows and shrinks", async () => {
      await show(`<style>@keyframes grow { to { transform: scale(0.5) } }</style>
        ${channel("left: 600px; top: 300px; transform-origin: 0 0")}`);
      await sees(cardAt(600, 300, 640, 360));
      await run(() => { objects[0].style.animation = "grow 1.7s linear infinite alternate"; });
      const sizes = new Set();
      for (let count = 0; count < 15; ++count) {
        const picture = look();
        const size = (from, at) => {
          let length = 0;
          while (at(from + length) !== ground)
            ++length;
          return length;
        };
        const [x, y] = [600 * scale, 300 * scale];
        const width = size(x, at => picture.at(at, y + 3 * scale));
        const height = size(y, at => picture.at(x + 3 * scale, at));
        assert.ok(width >= 320 * scale && width <= 640 * scale, `${width} wide`);
        assert.ok(Math.abs(width / height - 16 / 9) < 0.06, `${width} by ${height}`);
        sizes.add(width);
        await pause(50);
      }
      assert.ok(sizes.size > 3, `the sizes are ${[...sizes]}`);
    });

    it("shines through another application above", async () => {
      const above = television.server.write("above.html", `<!DOCTYPE html><html><body style="margin: 0">
        <object type="application/oipfApplicationManager" id="manager"></object>
        <div style="position: absolute; left: 300px; top: 0; width: 300px; height: 720px; background: #ff0000"></div>
        <script>document.getElementById("manager").getOwnerApplication(document).show();</script></body></html>`);
      await show(channel("left: 200px; top: 100px"));
      await sees(cardAt(200, 100, 640, 360));
      await television.browser.run(url => {
        window.above = oipfObjectFactory.createApplicationManagerObject().getOwnerApplication(document)
          .createApplication(url, true);
      }, above);
      await sees([...cardAt(200, 100, 640, 360).filter(([x]) => x < 300 || x > 600), [450, 50, "#ff0000"],
        [700, 50, ground]]);
      await run(() => above.destroyApplication());
      await sees([...cardAt(200, 100, 640, 360), [450, 50, ground]]);
    });

    it("has the subtitles that the page selects over the picture", async () => {
      await show(`${channel("left: 600px; top: 300px")}${film("left: 0; top: 500px; width: 320px; height: 180px")}`);
      await sees([...cardAt(600, 300, 640, 360), ...cardAt(0, 500, 320, 180)]);
      // Where the last line is.
      const isWhite = picture => Array.from({ length: 300 }, (_, place) =>
        picture.at((770 + place) * scale, Math.floor(625 * scale))).filter(colour => colour === "#ffffff").length > 20;
      assert.equal(isWhite(look()), false);
      await run(() => objects[0].selectComponent(objects[0].getComponents(objects[0].COMPONENT_TYPE_SUBTITLE)[0]));
      await waitFor("subtitles are to be read", () => isWhite(look()));
      await run(() => objects[0].unselectComponent(objects[0].COMPONENT_TYPE_SUBTITLE));
      await waitFor("there are none any more", () => !isWhite(look()));
    });

    it("is black in an object that shows nothing, and nothing where none is any more", async () => {
      await show(`${channel("left: 400px; top: 200px")}${film("left: 0; top: 0; width: 320px; height: 180px")}`);
      await sees([...cardAt(400, 200, 640, 360), ...cardAt(0, 0, 320, 180)]);
      await run(() => {
        objects[0].stop();
        objects[1].stop();
      });
      await sees([[420, 550, black], [1000, 550, black], [20, 20, black], [300, 300, menu], [1100, 400, ground]]);
      await run(() => {
        objects.forEach(object => object.remove());
        // One that is gone before anybody has looked at it, and one that stays.
        for (const [left, stays] of [["400px", false], ["600px", true]]) {
          const object = document.createElement("object");
          object.type = "video/mp4";
          object.data = "http://media.invalid/other.mp4";
          object.style.cssText = `left: ${left}; top: 0; width: 640px; height: 360px`;
          document.body.appendChild(object);
          object.play(1);
          if (!stays)
            object.remove();
        }
      });
      await sees([[420, 550, ground], [20, 20, ground], [500, 20, ground], ...cardAt(600, 0, 640, 360)]);
    });

    it("has the running channel behind the page, as far as that lets it through, while players are idle", async () => {
      const dimmed = colour => colour === black ? black : "#808080";
      const full = cardAt(0, 0, 1280, 720);
      const box = [[300, 300, menu]];
      await television.show("behind.html", `<!DOCTYPE html><html><body style="margin: 0"><div style="width: 200px;
        height: 200px; margin: 200px; background: ${menu}"></div></body></html>`);
      await sees([...full, ...box]);
      await run(() => { document.body.style.background = "rgba(0, 0, 0, 0.498)"; });
      await sees([...full.map(([x, y, colour]) => [x, y, dimmed(colour)]), ...box]);
      await run(() => { document.documentElement.style.background = "#605020"; });
      await sees([[680, 5, ground], [680, 300, "#302810"], ...box]);
      await run(() => {
        document.documentElement.style.background = document.body.style.background = "";
        document.body.insertAdjacentHTML("beforeend", `<object type="video/broadcast" id="video"
          style="position: absolute; left: 900px; top: 100px; width: 320px; height: 180px">`);
        document.getElementById("video").bindToCurrentChannel();
      });
      await sees([[680, 718, black], [10, 2, black], ...cardAt(900, 100, 320, 180), ...box]);
      await run(() => document.getElementById("video").release());
      await sees([...full, ...box, [910, 105, black]]);
    });

    it("is written to a file as it is seen", async () => {
      const path = join(television.workplace.env.HOME, "screen.png");
      const url = television.server.write("screenshot.html", page(`
        <div id="verdict"></div>${channel("left: 200px; top: 100px")}<script>
        document.querySelector("object").onPlayStateChange = state => state === 2
          && (document.getElementById("verdict").dataset.verdict = "pass");</script>`));
      const args = ["--session-bus", ...exitAfterLoad, "--screenshot", path, url];
      assert.equal((await television.workplace.run(shell(), args)).code, 0);
      const picture = new Picture(readFileSync(path));
      assert.equal(picture.width, 1280 * scale);
      assert.deepEqual(differences(picture,
        [...cardAt(200, 100, 640, 360), [300, 130, overlay], [190, 300, ground]]), []);
    });
  });
}

describe("What a viewer sees of channels with pictures", () => {
  const folder = mkdtempSync(join(tmpdir(), "hbbtv-pictures-"));
  const file = join(folder, "scenario.json");

  before(() => {
    const scenario = JSON.parse(readFileSync(defaultScenario, "utf8"));
    scenario.broadcast.channels.length = 2;
    delete scenario.carousel;
    writeFileSync(file, JSON.stringify(scenario));
    execFileSync(join(sourceRoot, "Tools/Scripts/make-pictures.mjs"), [file, folder]);
  });

  const television = useTelevision({ scenario: file });

  after(() => rmSync(folder, { recursive: true }));

  const stripes = ["#a11212", "#12a13b"];
  // A film's colours are not exact.
  const isNear = (one, other) => [1, 3, 5].every(place =>
    Math.abs(parseInt(one.slice(place, place + 2), 16) - parseInt(other.slice(place, place + 2), 16)) < 24);
  // The name of the channel is in its stripe, above which something moves.
  const moves = async (channel, x, y, width, height) => {
    let before;
    await waitFor(`channel ${channel} moves at ${x}, ${y}`, () => {
      const picture = television.workplace.look();
      if (!isNear(picture.at(x + width - 5, Math.floor(y + height * 0.8)), stripes[channel - 1]))
        return false;
      const seen = [0.1, 0.2, 0.3, 0.4, 0.6].map(part =>
        picture.at(Math.floor(x + width * part), Math.floor(y + height * 0.1)));
      before ??= seen;
      return seen.some((colour, place) => !isNear(colour, before[place]));
    });
  };

  it("moves in objects and behind the page, and is another one after zapping", async () => {
    await television.show("live.html", page(channel("left: 200px; top: 160px")));
    await moves(1, 200, 160, 640, 360);
    await television.browser.run(() => objects[0].nextChannel());
    await moves(2, 200, 160, 640, 360);
    await television.show("behind.html", `<!DOCTYPE html><html><body><p>Press the red key</p></body></html>`);
    await moves(2, 0, 0, 1280, 720);
    await television.browser.run(() => { document.body.style.background = "#605020"; });
    await waitFor("the page hides it", () => television.workplace.look().at(1275, 576) === ground);
    await television.browser.run(() => { document.body.style.background = ""; });
    await moves(2, 0, 0, 1280, 720);
  });
});
