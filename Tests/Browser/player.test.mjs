// Media from the network, really fetched and decoded: Examples/player by the keys that a viewer presses.
import assert from "node:assert/strict";
import { readFileSync } from "node:fs";
import { before, describe, it } from "node:test";
import { join } from "node:path";
import { Application, documents } from "./Harness/application.mjs";
import { makeMedia, mediaFolder } from "./Harness/media.mjs";
import { Picture } from "./Harness/picture.mjs";
import { defaultScenario, exitAfterLoad, shell } from "./Harness/programs.mjs";
import { useTelevision, useWorkplace } from "./Harness/suite.mjs";
import { slowness, waitFor } from "./Harness/wait.mjs";

const audio = 1;
// The rows of its list.
const [film, twoLanguages, hls, dash] = [0, 1, 3, 4];

const see = ({ text, isOpen }) => {
  const row = name => Array.from(document.querySelectorAll("#list li"))
    .findIndex(item => item.classList.contains(name));
  return {
    state: text("#state"),
    title: text("#title"),
    duration: text("#duration"),
    cover: isOpen("#cover") ? text("#cover-title") : null,
    choice: isOpen("#choices") ? text("#choices .focused") : null,
    current: row("current"),
    failed: row("failed"),
    audio: text("#card-audio .value"),
    sound: text("#card-sound .value"),
    full: document.body.classList.contains("full")
  };
};

describe("The media player", () => {
  const television = useTelevision();
  const { browser, receiver, server } = television;
  const { open, press, sees } = new Application(television, "/examples/player/", see,
    () => document.querySelectorAll("#list li").length > 0);

  before(async () => {
    await makeMedia();
    // A busy machine takes its time, too.
    await receiver.setWorld("/media/connect_limit_ms", 60000);
  });

  // The row of the list plays, with everything told.
  async function play(row, expected = {}) {
    await open();
    await press(...Array(row).fill("DOWN"), "ENTER");
    await sees({ state: "Playing", current: row, failed: -1, ...expected });
  }

  const position = () => browser.run(() => document.getElementById("video").playPosition);
  const positionPasses = milliseconds => browser.waitFor(`it is past ${milliseconds} ms`,
    passed => document.getElementById("video").playPosition > passed, milliseconds);

  const argumentsOf = method => receiver.toldPlayers(`IAVEventHandler.${method}`);

  for (const name of documents) {
    it(`plays what is chosen, from an address relative to the page, as ${name}`, async () => {
      await open(name);
      await sees({ state: "Choose a medium", cover: "Media player", duration: "" });
      await press("ENTER");
      await sees({ state: "Playing", title: "The ball", duration: "0:12", cover: null, current: film });
      await positionPasses(500);
      assert.deepEqual((await argumentsOf("SetData")).at(-1), [server.url("/examples/player/media/film.mp4")]);
    });
  }

  it("seeks step by step while it is paused, all of quick ones, and goes on from there", async () => {
    await play(film);
    await press("PLAY_PAUSE");
    await sees({ state: "Paused", cover: null });
    assert.equal(await browser.run(() => document.getElementById("video").speed), 0);
    const start = await position();
    await press("RIGHT", "FAST_FWD", "RIGHT");
    await browser.waitFor("it is three steps further",
      from => Math.abs(document.getElementById("video").playPosition - from - 3000) < 100, start);
    await press(...Array(9).fill("LEFT"));
    await browser.waitFor("it is at the start", () => document.getElementById("video").playPosition < 100);
    // It is there before the last of the keys has arrived.
    const wanted = async () => (await argumentsOf("Seek")).flat();
    await waitFor("all keys have arrived", async () => (await wanted()).length === 12);
    assert.deepEqual((await wanted()).slice(-4), [0, 0, 0, 0]);
    await sees({ state: "Paused" });
    await press("PLAY_PAUSE");
    await sees({ state: "Playing" });
    await positionPasses(100);
    assert.ok(await position() < 3000);
  });

  it("changes the audio track, which goes on playing", async () => {
    await play(twoLanguages, { audio: "Deutsch" });
    await press("GREEN");
    await sees({ audio: "English 5.1", state: "Playing" });
    await press("GREEN");
    await sees({ audio: "Deutsch", state: "Playing" });
    await positionPasses(await position() + 300);
    const all = await browser.run(type => {
      const components = document.getElementById("video").getComponents(type);
      return Array.from({ length: components.length }, (_, i) => components[i].pid);
    }, audio);
    assert.equal(all.length, 2);
    assert.deepEqual(await argumentsOf("SelectComponent"), [[audio, all[1]], [audio, all[0]]]);
  });

  it("offers the medium again at its end, and the next one", async () => {
    await play(film);
    // By the key alone; nothing is pressed any more when the end has come.
    while (await position() < 10500)
      await press("RIGHT");
    await sees({ state: "The end", cover: "The end", choice: "Play again" });
    await press("RIGHT");
    await sees({ choice: "Next: The ball in two languages" });
    await press("LEFT", "ENTER");
    await sees({ state: "Playing", title: "The ball", cover: null });
    assert.ok(await position() < 5000);
  });

  it("stops, mutes, and goes full screen and back", async () => {
    await play(film);
    await press("YELLOW", "BLUE");
    await sees({ sound: "off", full: true });
    const lastLayout = async () => (await argumentsOf("UpdateLayout")).pop()?.join();
    await waitFor("the picture fills the screen", async () => await lastLayout() === "0,0,1280,720,true");
    await press("BACK", "YELLOW");
    await sees({ sound: "on", full: false, state: "Playing" });
    await waitFor("the picture is beside the list", async () => await lastLayout() === "64,100,640,360,false");
    assert.deepEqual(await argumentsOf("SetVolume"), [[0], [100]]);
    await press("STOP");
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
      const told = line => /^hbbtv-media: cannot play http\S+\/media\/film\.mp4: ./.test(line);
      assert.equal(television.workplace.lines.filter(told).length, 1);
    } finally {
      server.intercept(path, null);
    }
    await press("STOP");
    await sees({ state: "Choose a medium", cover: "Media player", failed: -1 });
    await press("ENTER");
    await sees({ state: "Playing", cover: null });
  });

  it("asks servers for media as the page does, also for segments", async () => {
    await play(hls);
    await play(dash);
    assert.deepEqual([...server.agents], [await browser.run(() => navigator.userAgent)]);
  });
});

describe("The picture of the media player", () => {
  // The film is blue from its middle on; decoding rounds the colours.
  const blue = [0x20, 0x40, 0xc0];
  const { workplace, server } = useWorkplace();

  before(makeMedia);

  it("is the frame that was sought, where the page leaves room for it", async () => {
    const path = join(workplace.env.HOME, "screen.png");
    const url = server.url(`/examples/player/index.html?check=${6 * slowness}`);
    // The shell runs a receiver of its own.
    const args = ["--scenario", defaultScenario, ...exitAfterLoad, "--screenshot", path, url];
    assert.equal((await workplace.run(shell(), args)).code, 0);
    const picture = new Picture(readFileSync(path));
    // A white ball moves over the film, so that one of the places may be something else.
    const seen = [[80, 116], [680, 120], [384, 140], [680, 440]].map(([x, y]) => picture.at(x, y));
    const isBlue = text => blue.every((value, i) =>
      Math.abs(parseInt(text.slice(1 + 2 * i, 3 + 2 * i), 16) - value) < 24);
    assert.ok(seen.filter(isBlue).length >= seen.length - 1, `${seen} instead of ${blue}`);
    // Outside of it is the page.
    for (const [x, y] of [[40, 280], [720, 280], [384, 80]])
      assert.notDeepEqual(picture.at(x, y), picture.at(680, 440));
  });
});
