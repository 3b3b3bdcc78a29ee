// Media from the network, really fetched and decoded: Examples/player by the keys that a viewer presses, and
// pages that do what a viewer cannot.
import assert from "node:assert/strict";
import { readFileSync } from "node:fs";
import { after, before, describe, it } from "node:test";
import { join } from "node:path";
import { makeMedia, mediaFolder } from "./Harness/media.mjs";
import { PageServer } from "./Harness/pages.mjs";
import { Picture } from "./Harness/picture.mjs";
import { defaultScenario, shell } from "./Harness/programs.mjs";
import { Television } from "./Harness/television.mjs";
import { waitFor } from "./Harness/wait.mjs";
import { Workplace } from "./Harness/workplace.mjs";

const [playing, paused, finished] = [1, 2, 5];
const audio = 1;
// The rows of its list.
const [film, twoLanguages, tone, hls, dash, broken, missing] = [0, 1, 2, 3, 4, 5, 6];

// What a viewer sees of it.
const look = () => {
  const text = id => document.getElementById(id).textContent;
  const isOpen = id => !document.getElementById(id).classList.contains("closed");
  const row = name => Array.from(document.querySelectorAll("#list li"))
    .findIndex(item => item.classList.contains(name));
  const chosen = document.querySelector("#choices .focused");
  return {
    state: text("state"),
    title: text("title"),
    duration: text("duration"),
    cover: isOpen("cover") ? text("cover-title") : null,
    choice: isOpen("choices") ? chosen.textContent : null,
    current: row("current"),
    failed: row("failed"),
    audio: document.querySelector("#card-audio .value").textContent,
    sound: document.querySelector("#card-sound .value").textContent,
    full: document.body.classList.contains("full")
  };
};

// A page with a film beside a film, each of which notes its states.
const twoFilms = `<!DOCTYPE html><html><head><script src="/pages/watch.js"></script></head><body>
<object id="left" type="video/mp4" data="/media/film.mp4" width="320" height="180"></object>
<object id="right" type="video/mp4" data="/media/two-languages.mp4" width="320" height="180"></object><script>
var films = [document.getElementById("left"), document.getElementById("right")];
films.forEach(function (film) {
  film.heard = [];
  film.onPlayStateChange = function (state) { film.heard.push(state); };
});
</script></body></html>`;

describe("The media player", () => {
  let television, browser, receiver, server;

  before(async () => {
    await makeMedia();
    television = await Television.start();
    ({ browser, receiver, server } = television);
  });

  after(() => television?.close());

  async function press(...keys) {
    for (const key of keys)
      await receiver.pressKey(key);
  }

  // Waits until the viewer sees all of this.
  async function sees(expected) {
    let seen;
    await waitFor(`the viewer sees ${JSON.stringify(expected)}`, async () => {
      seen = await browser.run(look);
      return Object.keys(expected).every(name => seen[name] === expected[name]);
    }, 15000).catch(error => assert.deepEqual(seen, { ...seen, ...expected }, error.message));
  }

  async function open(page = "index.html") {
    await browser.open(server.url(`/examples/player/${page}`));
    await browser.waitFor("the list is shown", () => document.querySelectorAll("#list li").length > 0);
    await receiver.clearCalls();
  }

  // The row of the list plays, with everything told.
  async function play(row, expected = {}) {
    await open();
    await press(...Array(row).fill("VK_DOWN"), "VK_ENTER");
    await sees({ state: "Playing", current: row, failed: -1, ...expected });
  }

  const position = () => browser.run(() => document.getElementById("video").playPosition);
  const positionPasses = milliseconds => browser.waitFor(`it is past ${milliseconds} ms`,
    passed => document.getElementById("video").playPosition > passed, milliseconds);

  // By the key alone; nothing is pressed any more when the end has come.
  async function skipToTheEnd() {
    while (await position() < 10500)
      await press("VK_RIGHT");
    await sees({ state: "The end", cover: "The end", choice: "Play again" });
  }

  async function argumentsOf(method) {
    return (await receiver.calls()).filter(([name]) => name === `IAVEventHandler.${method}`)
      .map(([, args]) => args);
  }

  for (const [page, contentType] of [
    ["index.html", "text/html"],
    ["index.hbbtv.xhtml", "application/vnd.hbbtv.xhtml+xml"]
  ]) {
    it(`plays what is chosen, from an address relative to the page, as ${contentType}`, async () => {
      await open(page);
      assert.equal(await browser.run(() => document.contentType), contentType);
      await sees({ state: "Choose a medium", cover: "Media player", duration: "" });
      await press("VK_ENTER");
      await sees({ state: "Playing", title: "The ball", duration: "0:12", cover: null, current: film });
      await positionPasses(500);
      assert.equal((await argumentsOf("SetData")).pop()[1], server.url("/examples/player/media/film.mp4"));
    });
  }

  for (const [kind, row, expected] of [
    ["MP3", tone, { cover: "\u266b", duration: "0:06" }],
    ["HLS", hls, { cover: null, duration: "0:12" }],
    ["DASH", dash, { cover: null, duration: "0:12" }]
  ]) {
    it(`plays ${kind}`, async () => {
      await play(row, expected);
      await positionPasses(300);
    });
  }

  it("keeps its position while it is paused, and goes on from there", async () => {
    await play(film);
    await positionPasses(300);
    await press("VK_PLAY_PAUSE");
    await sees({ state: "Paused", cover: null });
    const before = await position();
    // The other object of the page runs meanwhile, as the clock of this test.
    await browser.runAsync(done => {
      const other = document.createElement("object");
      other.type = "video/mp4";
      other.data = "media/two-languages.mp4";
      document.body.appendChild(other);
      other.play(1);
      const timer = setInterval(() => {
        if (other.playPosition < 500)
          return;
        clearInterval(timer);
        document.body.removeChild(other);
        done();
      }, 20);
    });
    assert.equal(await position(), before);
    assert.ok(before >= 300, `paused at ${before} ms`);
    assert.equal(await browser.run(() => document.getElementById("video").speed), 0);
    await press("VK_PLAY_PAUSE");
    await sees({ state: "Playing" });
    await positionPasses(before);
    assert.ok(await position() < before + 3000);
  });

  it("seeks step by step, all of quick ones, and not out of the medium", async () => {
    await play(film);
    await press("VK_PAUSE");
    await sees({ state: "Paused" });
    const start = await position();
    await press("VK_RIGHT", "VK_FAST_FWD", "VK_RIGHT");
    await browser.waitFor("it is three steps further",
      from => Math.abs(document.getElementById("video").playPosition - from - 3000) < 100, start);
    await press(...Array(9).fill("VK_LEFT"));
    await browser.waitFor("it is at the start", () => document.getElementById("video").playPosition < 100);
    const wanted = (await argumentsOf("Seek")).map(([, milliseconds]) => milliseconds);
    assert.equal(wanted.length, 12);
    assert.deepEqual(wanted.slice(-4), [0, 0, 0, 0]);
    await sees({ state: "Paused" });
  });

  it("changes the audio track, which goes on playing", async () => {
    await play(twoLanguages, { audio: "Deutsch" });
    await press("VK_GREEN");
    await sees({ audio: "English", state: "Playing" });
    await press("VK_GREEN");
    await sees({ audio: "Deutsch", state: "Playing" });
    await positionPasses(await position() + 300);
    const all = await browser.run(type => {
      const components = document.getElementById("video").getComponents(type);
      return Array.from({ length: components.length }, (_, i) => components[i].pid);
    }, audio);
    assert.equal(all.length, 2);
    assert.deepEqual((await argumentsOf("SelectComponent")).map(args => args.slice(1)),
      [[audio, all[1]], [audio, all[0]]]);
  });

  it("offers the medium again at its end, and the next one", async () => {
    await play(film);
    await skipToTheEnd();
    await press("VK_ENTER");
    await sees({ state: "Playing", title: "The ball", cover: null });
    assert.ok(await position() < 5000);
    await skipToTheEnd();
    await press("VK_RIGHT");
    await sees({ choice: "Next: The ball in two languages" });
    await press("VK_ENTER");
    await sees({ state: "Playing", title: "The ball in two languages", current: twoLanguages });
  });

  it("says in words why a medium is not played, and plays the next choice", async () => {
    await open();
    await press(...Array(missing).fill("VK_DOWN"), "VK_ENTER");
    await sees({ state: "Cannot be played", cover: "Not found", failed: missing, current: -1, duration: "" });
    await press("VK_UP", "VK_ENTER");
    await sees({ state: "Cannot be played", cover: "Damaged", failed: broken });
    await press("VK_STOP");
    await sees({ state: "Choose a medium", cover: "Media player", failed: -1 });
    await press("VK_DOWN", "VK_DOWN", "VK_ENTER");
    await sees({ state: "Playing", title: "The ball", cover: null, failed: -1 });
  });

  it("stops, mutes, and goes full screen and back", async () => {
    await play(film);
    await press("VK_YELLOW", "VK_BLUE");
    await sees({ sound: "off", full: true });
    const lastLayout = async () => (await argumentsOf("UpdateLayout")).pop()?.slice(1).join();
    await waitFor("the picture fills the screen", async () => await lastLayout() === "0,0,1280,720,true");
    await press("VK_BACK", "VK_YELLOW");
    await sees({ sound: "on", full: false, state: "Playing" });
    await waitFor("the picture is beside the list", async () => await lastLayout() === "64,100,640,360,false");
    assert.deepEqual((await argumentsOf("SetVolume")).map(([, volume]) => volume), [0, 100]);
    await press("VK_STOP");
    await sees({ state: "Choose a medium", cover: "Media player", duration: "" });
    assert.equal(await position(), 0);
  });

  it("says so when the server drops the connection in the middle of a film", async () => {
    const path = "/examples/player/media/film.mp4";
    const whole = readFileSync(join(mediaFolder, "film.mp4"));
    const connections = [];
    // Half of the film and no more, for as long as the connection stands.
    server.intercept(path, (request, response) => {
      response.writeHead(200, { "Content-Type": "video/mp4", "Content-Length": whole.length });
      response.write(whole.subarray(0, whole.length / 2));
      connections.push(request.socket);
    });
    try {
      await play(film);
      await positionPasses(300);
      server.intercept(path, request => request.socket.destroy());
      connections.forEach(connection => connection.destroy());
      await sees({ state: "Cannot be played", cover: "No connection", failed: film });
    } finally {
      server.intercept(path, null);
    }
    await press("VK_ENTER");
    await sees({ state: "Playing", failed: -1 });
  });

  it("survives a receiver that dies while it plays, and plays with the next", async () => {
    await play(film);
    await receiver.stop("SIGKILL");
    assert.equal(await position(), 0);
    await receiver.start();
    await open();
    await press("VK_ENTER");
    await sees({ state: "Playing", title: "The ball" });
  });

  it("is silent once the page is left", async () => {
    await play(film);
    await television.open("plain.html");
    assert.deepEqual(await receiver.callNames("IAVEventHandler.ReleasePlayer", "IBroadcastPlayer.Release"),
      ["IAVEventHandler.ReleasePlayer", "IBroadcastPlayer.Release"]);
    assert.deepEqual(await argumentsOf("ReleasePlayer"), [[0]]);
    assert.deepEqual((await receiver.getWorld("/state")).media_players, {});
  });

  it("plays two films on one page, each on its own", async () => {
    await television.show("two.html", twoFilms);
    await browser.waitFor("both are there", () => window.films.every(film => film.play));
    await browser.run(() => window.films.forEach(film => film.play(1)));
    await browser.waitFor("both play", () => window.films.every(film => film.playPosition > 300));
    await browser.run(() => window.films[0].play(0));
    await browser.waitFor("the left one is paused", state => window.films[0].playState === state, paused);
    const [left, right] = await browser.run(() => window.films.map(film => film.playPosition));
    await browser.waitFor("the right one goes on",
      from => window.films[1].playPosition > from + 300, right);
    assert.equal(await browser.run(() => window.films[0].playPosition), left);
    await browser.run(() => {
      window.films[1].seek(11500);
      window.films[0].stop();
    });
    await browser.waitFor("the right one ends", state => window.films[1].playState === state, finished);
    const heard = await browser.run(() => window.films.map(film => film.heard));
    // It may have to connect, and to wait for what it plays next; then it plays again.
    const settled = states => states.filter(state => state !== 3 && state !== 4)
      .filter((state, i, all) => state !== all[i - 1]);
    assert.deepEqual(heard.map(settled), [[playing, paused, 0], [playing, finished]]);
    assert.deepEqual(await browser.run(() => window.failures), []);
  });
});

describe("The picture of the media player", () => {
  // The film is red, and blue from its middle on; decoding rounds the colours.
  const [red, blue] = ["#c02020", "#2040c0"];
  let workplace, server;

  before(async () => {
    await makeMedia();
    workplace = await Workplace.create();
    server = await PageServer.start();
  });

  after(async () => {
    await server?.close();
    await workplace?.close();
  });

  // The shell runs a receiver of its own.
  async function screenOf(url) {
    const path = join(workplace.env.HOME, "screen.png");
    const program = workplace.start(shell(),
      ["--scenario", defaultScenario, "--exit-after-load", "--screenshot", path, url]);
    await program.ended;
    assert.equal(program.exitCode, 0);
    return new Picture(path);
  }

  // A white ball moves over the film, so that one of the places may be something else.
  function assertFilm(picture, color, places) {
    const values = text => [1, 3, 5].map(at => parseInt(text.slice(at, at + 2), 16));
    const seen = places.map(([x, y]) => picture.at(x, y));
    const isClose = text => values(text).every((value, i) => Math.abs(value - values(color)[i]) < 24);
    assert.ok(seen.filter(isClose).length >= places.length - 1, `${seen} instead of ${color}`);
  }

  it("is the frame that was sought, where the page leaves room for it", async () => {
    const picture = await screenOf(server.url("/examples/player/index.html?check"));
    assertFilm(picture, blue, [[80, 116], [680, 120], [384, 140], [680, 440]]);
    // Outside of it is the page.
    for (const [x, y] of [[40, 280], [720, 280], [384, 80]])
      assert.notDeepEqual(picture.at(x, y), picture.at(680, 440));
  });

  it("fills the screen in full-screen mode, beneath the page", async () => {
    const picture = await screenOf(server.write("full.html", `<!DOCTYPE html><html><body>
<object id="film" type="video/mp4" data="/media/film.mp4" style="position: absolute; left: 200px; top: 100px;
width: 320px; height: 180px"></object><p style="position: absolute; left: 600px; top: 300px; width: 80px;
height: 80px; background: #204060"></p><div id="verdict"></div><script>
var film = document.getElementById("film");
film.setFullScreen(true);
film.style.cssText = "position: absolute; left: 0; top: 0; width: 1280px; height: 720px";
film.play(1);
var timer = setInterval(function () {
  if (film.playPosition < 500) return;
  clearInterval(timer);
  document.getElementById("verdict").setAttribute("data-verdict", "pass");
}, 20);
</script></body></html>`));
    assertFilm(picture, red, [[20, 20], [1260, 20], [20, 700], [1260, 700]]);
    assert.equal(picture.at(640, 340), "#204060");
  });
});
