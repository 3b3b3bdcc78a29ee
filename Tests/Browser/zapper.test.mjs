// A real application under a remote control: Examples/zapper, by the keys that a viewer presses.
import assert from "node:assert/strict";
import { after, before, describe, it } from "node:test";
import { Television } from "./Harness/television.mjs";
import { waitFor } from "./Harness/wait.mjs";

const presenting = 2;
const [audio, subtitle] = [1, 2];

// What a viewer sees of it.
const look = () => {
  const text = id => document.getElementById(id).textContent;
  const isOpen = id => !document.getElementById(id).classList.contains("closed");
  const marked = document.querySelector("#channels li.current, #channels li.failed");
  return {
    state: text("state"),
    channel: `${text("channel-number")} ${text("channel-name")}`,
    marked: marked && marked.className,
    now: text("now-name"),
    trouble: isOpen("trouble") ? text("trouble-title") : null,
    audio: document.querySelector("#card-audio .value").textContent,
    subtitles: document.querySelector("#card-subtitles .value").textContent,
    message: isOpen("message") ? text("message-text") : null,
    notice: isOpen("notice"),
    full: document.body.classList.contains("full")
  };
};

describe("The zapper", () => {
  let television, browser, receiver;

  before(async () => {
    television = await Television.start();
    ({ browser, receiver } = television);
  });

  after(() => television?.close());

  // On channel 1, with its verdict given and a call log that begins now.
  async function open(page = "index.html") {
    await receiver.setWorld("/broadcast/current_channel", 1);
    await browser.open(television.server.url(`/examples/zapper/${page}`));
    const verdict = await browser.waitFor("the verdict is given",
      () => document.getElementById("verdict").getAttribute("data-verdict"));
    assert.equal(verdict, "pass", await browser.run(() => document.getElementById("verdict").textContent));
    await receiver.clearCalls();
  }

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
    }).catch(error => assert.deepEqual(seen, { ...seen, ...expected }, error.message));
  }

  async function argumentsOf(method) {
    return (await receiver.calls()).filter(([name]) => name === `IBroadcastPlayer.${method}`)
      .map(([, [, ...rest]]) => rest);
  }

  for (const [page, contentType] of [
    ["index.html", "text/html"],
    ["index.hbbtv.xhtml", "application/vnd.hbbtv.xhtml+xml"]
  ]) {
    it(`shows the channel, what is on and all channels as ${contentType}`, async () => {
      await open(page);
      assert.equal(await browser.run(() => document.contentType), contentType);
      await sees({ state: "Watching", channel: "1 Nordlicht 1 HD", marked: "current", now: "Evening News",
        trouble: null, audio: "Deutsch", subtitles: "off" });
      const rows = await browser.run(() =>
        Array.from(document.querySelectorAll("#channels li"), row => row.textContent));
      assert.deepEqual(rows, ["1Nordlicht 1", "2Nordlicht 2", "3Canal Rivage", "4Kinderwelle",
        "5Stadion Nordost", "6Lichtspielkanalencrypted", "7Mitternacht TVlocked", "8Parlament Live"]);
      await press("VK_DOWN");
      await sees({ state: "Watching", channel: "2 Nordlicht 2 HD", now: "The Colour Blue" });
    });
  }

  it("zaps to the next and the previous channel, around the ends, past hidden ones", async () => {
    await open();
    for (const [key, channel] of [
      ["VK_CHANNEL_UP", "2 Nordlicht 2 HD"], ["VK_DOWN", "3 Canal Rivage HD"], ["VK_UP", "2 Nordlicht 2 HD"],
      ["VK_CHANNEL_DOWN", "1 Nordlicht 1 HD"], ["VK_CHANNEL_DOWN", "102 Klassik Welle"]
    ]) {
      await press(key);
      await sees({ state: "Watching", channel });
    }
    // The kind of network, text, three numbers and the receiver's own id.
    assert.deepEqual(await argumentsOf("SetChannel"), [
      [16, "", 12400, 1001, 102, 2], [16, "", 12400, 1002, 103, 3], [16, "", 12400, 1001, 102, 2],
      [16, "", 12400, 1001, 101, 1], [16, "", 12400, 1004, 202, 12]
    ]);
  });

  it("ends at the last of many quick key presses, and nowhere in between", async () => {
    await open();
    await browser.run(() => {
      window.shown = [];
      document.getElementById("video").addEventListener("ChannelChangeSucceeded",
        event => window.shown.push(event.channel.name), false);
    });
    await receiver.setWorld("/broadcast/tune_ms", 2000);
    await press("VK_DOWN", "VK_DOWN", "VK_DOWN", "VK_DOWN");
    await sees({ state: "Watching", channel: "5 Stadion Nordost HD" });
    await receiver.setWorld("/broadcast/tune_ms", 300);
    assert.deepEqual(await browser.run(() => window.shown), ["Stadion Nordost"]);
    assert.equal(await receiver.getWorld("/broadcast/current_channel"), 5);
  });

  it("zaps by digits: three at once, with Enter, or after a moment", async () => {
    await open();
    for (const [keys, channel] of [
      [["1", "0", "1"], "101 Radio Brise"], [["3", "VK_ENTER"], "3 Canal Rivage HD"],
      [["2", "0"], "20 Stream Eins"]
    ]) {
      await press(...keys.map(key => key.length === 1 ? `VK_${key}` : key));
      await sees({ state: "Watching", channel });
    }
    await receiver.clearCalls();
    await press("VK_5", "VK_5", "VK_ENTER");
    await sees({ state: "There is no channel 55", channel: "20 Stream Eins", trouble: null });
    assert.deepEqual(await argumentsOf("SetChannel"), []);
  });

  it("says why a channel cannot be shown, and zaps on from there", async () => {
    await open();
    for (const [number, state] of [["9", "No signal"], ["6", "Encrypted"], ["7", "Locked"]]) {
      await press(`VK_${number}`, "VK_ENTER");
      await sees({ state, trouble: state, marked: "failed", now: "" });
    }
    await press("VK_CHANNEL_UP");
    await sees({ state: "Watching", channel: "8 Parlament Live", trouble: null, marked: "current" });
  });

  it("chooses audio and subtitles among the components", async () => {
    await open();
    await press("VK_GREEN");
    await sees({ audio: "English" });
    await press("VK_YELLOW");
    await sees({ subtitles: "Deutsch HI" });
    await press("VK_YELLOW");
    await sees({ subtitles: "off" });
    assert.deepEqual(await argumentsOf("SelectComponent"), [[audio, 258], [subtitle, 260]]);
    assert.deepEqual(await argumentsOf("UnselectComponent"), [[subtitle, 260]]);
    await press("VK_GREEN", "VK_GREEN");
    await sees({ audio: "Deutsch" });
  });

  it("announces a stream event once, and shows it on the red key", async () => {
    await receiver.setWorld("/stream_events/0/text", "first news");
    await open();
    await sees({ notice: true, message: null });
    await press("VK_RED");
    await sees({ notice: false, message: "first news" });
    await press("VK_BACK");
    await sees({ notice: false, message: null });
    await receiver.setWorld("/stream_events/0/text", "second news, with Grüße");
    await sees({ notice: true });
    await press("VK_RED");
    await sees({ message: "second news, with Grüße" });
  });

  it("goes full screen and back, and the receiver hears where the picture is", async () => {
    await open();
    await press("VK_BLUE");
    const layouts = () => argumentsOf("UpdateLayout");
    await waitFor("the picture fills the screen", async () => {
      const [last] = (await layouts()).slice(-1);
      return last && last.join() === "0,0,1280,720,true";
    });
    await sees({ full: true });
    await press("VK_BACK");
    await waitFor("the picture is beside the list again", async () =>
      (await layouts()).slice(-1)[0].join() === "64,100,640,360,false");
    await sees({ full: false });
  });

  it("survives a receiver that dies while it presents, and works with the next", async () => {
    await open();
    // A dead receiver presses no keys, and a new one grants none before it is asked.
    const pressDown = () => browser.run(() =>
      document.dispatchEvent(new KeyboardEvent("keydown", { keyCode: KeyEvent.VK_DOWN, cancelable: true })));
    await receiver.stop("SIGKILL");
    await pressDown();
    const dead = await browser.run(() => {
      const video = document.getElementById("video");
      return [video.currentChannel, video.programmes, video.playState];
    });
    assert.deepEqual(dead, [null, null, presenting]);
    await receiver.start();
    await waitFor("zapping works again", async () => {
      await pressDown();
      return (await argumentsOf("SetChannel")).length > 0;
    });
    await sees({ state: "Watching" });
    const name = await browser.run(() => document.getElementById("video").currentChannel.longName);
    assert.equal((await browser.run(look)).channel.endsWith(name), true, name);
  });
});
