// The video/broadcast element on a page: where its picture is, when its handlers hear, what it leaves behind.
import assert from "node:assert/strict";
import { beforeEach, describe, it } from "node:test";
import { useTelevision } from "./Harness/suite.mjs";
import { waitFor } from "./Harness/wait.mjs";

const [unrealized, connecting, presenting] = [0, 1, 2];

// A page with the element at a known place, which notes all that it hears.
const page = style => `<!DOCTYPE html><html><head><script src="/pages/watch.js"></script>
<style>body { margin: 0; height: 3000px } ${style}</style></head><body>
<object id="video" type="video/broadcast"></object><script>
var video = document.getElementById("video");
window.heard = [];
video.onPlayStateChange = function (state) { window.heard.push("state " + state); };
video.onChannelChangeSucceeded = function (channel) { window.heard.push("shown " + (channel && channel.name)); };
video.onChannelChangeError = function (channel, error) { window.heard.push("error " + error); };
</script></body></html>`;

const placed = "#video { position: absolute; left: 100px; top: 50px; width: 320px; height: 180px }";

describe("A video/broadcast element", () => {
  const television = useTelevision();
  const { browser, receiver } = television;

  beforeEach(async () => {
    await television.open("plain.html");
    await receiver.setWorld("/broadcast/current_channel", 1);
    await receiver.setWorld("/broadcast/tune_ms", 100);
    await receiver.clearCalls();
  });

  const argumentsOf = method => receiver.toldPlayers(`IBroadcastPlayer.${method}`);

  async function isAt(...place) {
    let last;
    await waitFor(`the picture is at ${place}`, async () => {
      [last] = (await argumentsOf("UpdateLayout")).slice(-1);
      return last && last.join() === [...place, false].join();
    }).catch(error => assert.deepEqual(last, [...place, false], error.message));
  }

  const present = () => browser.runAsync((state, done) => {
    video.addEventListener("PlayStateChange", event => event.state === state && done(), false);
    video.bindToCurrentChannel();
  }, presenting);

  const presents = service => browser.waitFor(`the service ${service} is shown`,
    sid => video.playState === 2 && video.currentChannel.sid === sid, service);

  it("tells the receiver where the picture is, wherever it goes", async () => {
    await television.show("placed.html", page(placed));
    await isAt(100, 50, 320, 180);
    await browser.run(() => window.scrollTo(0, 30));
    await isAt(100, 20, 320, 180);
    // Above the screen: a negative place, as the wire's unsigned numbers carry it.
    await browser.run(() => window.scrollTo(0, 150));
    await isAt(100, 2 ** 32 - 100, 320, 180);
    await browser.run(() => window.scrollTo(0, 0));
    await isAt(100, 50, 320, 180);
    await browser.run(() => {
      video.style.width = "640px";
      video.style.height = "360px";
    });
    await isAt(100, 50, 640, 360);
    await browser.run(() => {
      const pusher = document.createElement("div");
      video.style.position = "static";
      pusher.style.height = "70px";
      document.body.insertBefore(pusher, video);
    });
    await isAt(0, 70, 640, 360);
    await browser.run(() => { video.style.display = "none"; });
    await isAt(0, 0, 0, 0);
  });

  it("is followed within a box that scrolls, and within a frame", async () => {
    const inner = television.server.write("inner.html", page(placed));
    await television.show("outer.html", `<!DOCTYPE html><html><head><script src="/pages/watch.js"></script>
<style>body { margin: 0 } #box { position: absolute; left: 10px; top: 20px; width: 600px; height: 400px;
overflow: auto } iframe { border: 0; margin-top: 200px; width: 500px; height: 900px }</style></head><body>
<div id="box"><iframe id="frame" src="${inner}"></iframe></div></body></html>`);
    await isAt(110, 270, 320, 180);
    // The second move comes while the first one is looked at.
    await browser.run(() => {
      const box = document.getElementById("box");
      frames[0].document.querySelector("hole").addEventListener("geometrychanged",
        () => { box.scrollTop = 100; }, { once: true });
      box.scrollTop = 80;
    });
    await isAt(110, 170, 320, 180);
    await browser.run(() => frames[0].scrollTo(0, 40));
    await isAt(110, 130, 320, 180);
  });

  it("steps through the channels, stops, comes back and releases", async () => {
    await television.show("steps.html", page(placed));
    await present();
    await browser.run(() => video.nextChannel());
    await presents(102);
    await browser.run(() => video.prevChannel());
    await presents(101);
    await browser.run(() => video.stop());
    await browser.waitFor("it is stopped", () => video.playState === 3);
    await present();
    await browser.run(() => video.release());
    await browser.waitFor("it is released", () => video.playState === 0);
    assert.deepEqual(await argumentsOf("NextOrPrevChannel"), [[true], [false]]);
    assert.deepEqual(await browser.run(() => window.heard), ["state 1", "state 2",
      "state 1", "shown Nordlicht 2", "state 2", "state 1", "shown Nordlicht 1", "state 2",
      "state 3", "state 1", "state 2", "state 0"]);
    assert.equal(await browser.run(() => video.currentChannel), null);
    assert.deepEqual(await browser.run(() => window.failures), []);
  });

  it("that tunes while its page goes is released in order, and the next page hears nothing", async () => {
    const first = television.server.write("first.html", page(placed));
    const second = television.server.write("second.html", page(placed));
    await browser.open(first);
    await receiver.setWorld("/broadcast/tune_ms", 1500);
    await present();
    await browser.run(() => {
      video.setChannel(video.getChannelConfig().channelList[2], false);
    });
    await receiver.clearCalls();
    await browser.open(second);
    await isAt(100, 50, 320, 180);
    const order = ["IAVEventHandler.ReleasePlayer", "IBroadcastPlayer.Release",
      "IBroadcastPlayer.UpdateLayout"];
    assert.deepEqual(await receiver.callNames(...order), order);
    // It began to tune later than the former page, which would be through by now.
    await present();
    assert.deepEqual(await browser.run(() => window.heard), [`state ${connecting}`, `state ${presenting}`]);
    assert.equal(await receiver.getWorld("/broadcast/current_channel"), 1);
    const players = Object.values(await receiver.getWorld("/state/broadcast_players"));
    assert.deepEqual(players.map(({ state }) => state).filter(state => state !== unrealized), [presenting]);
    assert.deepEqual(await browser.run(() => window.failures), []);
  });

  it("that is bound again while its page goes, or goes with its frame, keeps no player", async () => {
    const isFree = () => waitFor("no player is held", async () =>
      Object.values(await receiver.getWorld("/state/broadcast_players")).every(({ state }) => state === unrealized));
    await television.show("again.html", page(placed));
    await present();
    await browser.run(() => {
      video.onPlayStateChange = state => state === 0 && video.bindToCurrentChannel();
      addEventListener("unload", () => video.bindToCurrentChannel());
    });
    await receiver.clearCalls();
    const isBound = async times => (await argumentsOf("BindToCurrentChannel")).length >= times;
    await television.leaveWhen("it is bound again", () => isBound(1));
    assert.ok(await isBound(2), "and once more as it goes");
    await isFree();
    for (const leave of [() => document.querySelector("iframe").remove(),
      () => { document.querySelector("iframe").src = "/pages/plain.html"; }]) {
      await television.show("outer.html", '<iframe src="/pages/application.html"></iframe>');
      await browser.run(() => frames[0].eval(
        "window.tv = PrivateObjectFactory.createVideoBroadcastObject(); tv.onPlayStateChange = () => {}; "
        + "tv.bindToCurrentChannel(); tv.addStreamEventListener('dvb://other/1', 'tick', () => {})"));
      await browser.waitFor("it presents", state => frames[0].tv.playState === state, presenting);
      await browser.run(leave);
      await isFree();
      await waitFor("its subscription has ended", async () =>
        (await receiver.getWorld("/state")).stream_event_subscriptions === 0);
    }
  });
});
