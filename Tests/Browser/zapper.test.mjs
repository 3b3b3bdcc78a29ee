// A real application under a remote control: Examples/zapper, by the keys that a viewer presses.
import assert from "node:assert/strict";
import { beforeEach, describe, it } from "node:test";
import { Application, documents } from "./Harness/application.mjs";
import { useTelevision } from "./Harness/suite.mjs";
import { waitFor } from "./Harness/wait.mjs";

const presenting = 2;
const [audio, subtitle] = [1, 2];

const see = ({ text, isOpen }) => ({
  state: text("#state"),
  channel: `${text("#channel-number")} ${text("#channel-name")}`,
  marked: document.querySelector("#channels li.current, #channels li.failed")?.className,
  now: text("#now-name"),
  trouble: isOpen("#trouble") ? text("#trouble-title") : null,
  audio: text("#card-audio .value"),
  subtitles: text("#card-subtitles .value"),
  message: isOpen("#message") ? text("#message-text") : null,
  notice: isOpen("#notice"),
  full: document.body.classList.contains("full")
});

describe("The zapper", () => {
  const television = useTelevision();
  const { browser, receiver } = television;
  const zapper = new Application(television, "/examples/zapper/", see);
  const { open, press, sees } = zapper;

  beforeEach(() => receiver.setWorld("/broadcast/current_channel", 1));

  const argumentsOf = method => receiver.toldPlayers(`IBroadcastPlayer.${method}`);

  for (const name of documents) {
    it(`shows the channel, what is on and all channels, as ${name}`, async () => {
      await open(name);
      await sees({ state: "Watching", channel: "1 Nordlicht 1 HD", marked: "current", now: "Evening News",
        trouble: null, audio: "Deutsch", subtitles: "off" });
      const rows = await browser.run(() =>
        Array.from(document.querySelectorAll("#channels li"), row => row.textContent));
      assert.deepEqual(rows, ["1Nordlicht 1", "2Nordlicht 2", "3Canal Rivage", "4Kinderwelle",
        "5Stadion Nordost", "6Lichtspielkanalencrypted", "7Mitternacht TVlocked", "8Parlament Live"]);
      await press("DOWN");
      await sees({ state: "Watching", channel: "2 Nordlicht 2 HD", now: "The Colour Blue" });
    });
  }

  it("zaps to the next and the previous channel, around the ends, and by number", async () => {
    await open();
    for (const [keys, channel] of [
      [["CHANNEL_UP"], "2 Nordlicht 2 HD"], [["DOWN"], "3 Canal Rivage HD"], [["UP"], "2 Nordlicht 2 HD"],
      [["CHANNEL_DOWN"], "1 Nordlicht 1 HD"], [["CHANNEL_DOWN"], "102 Klassik Welle"],
      [["1", "0", "1"], "101 Radio Brise"], [["2", "0"], "20 Stream Eins"]
    ]) {
      await press(...keys);
      await sees({ state: "Watching", channel });
    }
    // The kind of network, text, three numbers and the receiver's own id.
    assert.deepEqual((await argumentsOf("SetChannel")).slice(0, 5), [
      [16, "", 12400, 1001, 102, 2], [16, "", 12400, 1002, 103, 3], [16, "", 12400, 1001, 102, 2],
      [16, "", 12400, 1001, 101, 1], [16, "", 12400, 1004, 202, 12]
    ]);
    await receiver.clearCalls();
    await press("5", "5", "ENTER");
    await sees({ state: "There is no channel 55", channel: "20 Stream Eins", trouble: null });
    assert.deepEqual(await argumentsOf("SetChannel"), []);
  });

  it("ends at the last of many quick key presses, and nowhere in between", async () => {
    await open();
    await browser.run(() => {
      window.shown = [];
      document.getElementById("video").addEventListener("ChannelChangeSucceeded",
        event => window.shown.push(event.channel.name), false);
    });
    await receiver.setWorld("/broadcast/tune_ms", 2000);
    await press("DOWN", "DOWN", "DOWN", "DOWN");
    await sees({ state: "Watching", channel: "5 Stadion Nordost HD" });
    await receiver.setWorld("/broadcast/tune_ms", 300);
    assert.deepEqual(await browser.run(() => window.shown), ["Stadion Nordost"]);
    assert.equal(await receiver.getWorld("/broadcast/current_channel"), 5);
  });

  it("says why a channel cannot be shown, and zaps on from there", async () => {
    await open();
    for (const [number, state] of [["9", "No signal"], ["6", "Encrypted"], ["7", "Locked"]]) {
      await press(number, "ENTER");
      await sees({ state, trouble: state, marked: "failed", now: "" });
    }
    await press("CHANNEL_UP");
    await sees({ state: "Watching", channel: "8 Parlament Live", trouble: null, marked: "current" });
  });

  it("chooses audio and subtitles among the components", async () => {
    await open();
    await press("GREEN");
    await sees({ audio: "English" });
    await press("YELLOW");
    await sees({ subtitles: "Deutsch HI" });
    await press("YELLOW");
    await sees({ subtitles: "off" });
    assert.deepEqual(await argumentsOf("SelectComponent"), [[audio, 258], [subtitle, 260]]);
    assert.deepEqual(await argumentsOf("UnselectComponent"), [[subtitle, 260]]);
    await press("GREEN", "GREEN");
    await sees({ audio: "Deutsch" });
  });

  it("announces a stream event once, and shows it on the red key", async () => {
    await receiver.setWorld("/stream_events/0/text", "first news");
    await open();
    await sees({ notice: true, message: null });
    await press("RED");
    await sees({ notice: false, message: "first news" });
    await press("BACK");
    await sees({ notice: false, message: null });
    await receiver.setWorld("/stream_events/0/text", "second news, with Grüße");
    await sees({ notice: true });
    await press("RED");
    await sees({ message: "second news, with Grüße" });
  });

  it("goes full screen and back, and the receiver hears where the picture is", async () => {
    await open();
    const isAt = place => waitFor(`the picture is at ${place}`, async () =>
      (await argumentsOf("UpdateLayout")).at(-1)?.join() === place);
    await press("BLUE");
    await isAt("0,0,1280,720,true");
    await sees({ full: true });
    await press("BACK");
    await isAt("64,100,640,360,false");
    await sees({ full: false });
  });

  it("survives a receiver that dies while it presents, and works with the next", async () => {
    await open();
    await receiver.stop("SIGKILL");
    await zapper.pressInPage("DOWN");
    const dead = await browser.run(() => {
      const video = document.getElementById("video");
      return [video.currentChannel, video.programmes, video.playState];
    });
    assert.deepEqual(dead, [null, null, presenting]);
    await receiver.start();
    await waitFor("zapping works again", async () => {
      await zapper.pressInPage("DOWN");
      return (await argumentsOf("SetChannel")).length > 0;
    });
    await sees({ state: "Watching" });
    const name = await browser.run(() => document.getElementById("video").currentChannel.longName);
    assert.equal((await zapper.look()).channel.endsWith(name), true, name);
  });
});
