// The A/V control element on a page, with the receiver's simulated player behind it: what the player is told
// and when, what the page hears, and what is left when element or page go.
import assert from "node:assert/strict";
import { beforeEach, describe, it } from "node:test";
import { useTelevision } from "./Harness/suite.mjs";
import { waitFor } from "./Harness/wait.mjs";

const [stopped, playing, connecting] = [0, 1, 3];
const noError = 1000;

const components = [
  { type: "video", encoding: "H264", pid: 1, tag: 1, aspect_ratio: 178 },
  { type: "audio", encoding: "HEAAC", pid: 2, tag: 2, language: "deu", channels: 2 },
  { type: "audio", encoding: "HEAAC", pid: 3, tag: 3, language: "eng", channels: 6 }
];
// The player simulates what the world describes, and only that.
const items = [
  { url: "*/missing*", error: 1 },
  { url: "*", duration_ms: 600000, components }
];

const page = (body, head = "") => `<!DOCTYPE html><html><head><script src="/pages/watch.js"></script>${head}
<style>body { margin: 0 }</style></head><body>${body}</body></html>`;

const element = (attributes, children = "") => `<object id="film" ${attributes}>${children}</object><script>
var film = document.getElementById("film");
window.heard = [];
film.onPlayStateChange = function (state, error) { window.heard.push([state, error]); };
</script>`;

const film = 'type="video/mp4" data="film.mp4" width="640" height="360"';

describe("An A/V control element", () => {
  const television = useTelevision();
  const { browser, receiver, server } = television;

  beforeEach(async () => {
    await television.open("plain.html");
    await receiver.setWorld("/media/items", items);
    await receiver.setWorld("/media/connect_ms", 50);
    await receiver.setWorld("/media/maximum_players", 4);
    await receiver.clearCalls();
  });

  // The calls to the media player so far, as ["Play", id, 1].
  async function mediaCalls() {
    return (await receiver.calls()).filter(([name]) => name.startsWith("IAVEventHandler."))
      .map(([name, args]) => [name.split(".")[1], ...args]);
  }

  const argumentsOf = method => receiver.toldPlayers(`IAVEventHandler.${method}`);

  const inState = state => browser.waitFor(`the state is ${state}`, value => film.playState === value, state);

  it("plays what its markup names, in the task in which it was parsed", async () => {
    const markup = element(film, '<param name="quality" value="high"></param>');
    const attributes = [["data", "film.mp4"], ["height", "360"], ["id", "film"], ["quality", "high"],
      ["type", "video/mp4"], ["width", "640"]];
    const body = `${markup}<script>window.played = film.play(1);</script>`;
    const root = '<html xmlns="http://www.w3.org/1999/xhtml">';
    const wellFormed = page(body).replace("<!DOCTYPE html><html>", root);
    for (const [name, text] of [["first.html", page(body)], ["first.hbbtv", wellFormed]]) {
      await receiver.clearCalls();
      await television.show(name, text);
      await inState(playing);
      assert.deepEqual(await browser.run(() => [window.played, window.heard]),
        [true, [[connecting, noError], [playing, noError]]]);
      const calls = await mediaCalls();
      const from = calls.findIndex(([method]) => method === "FlagPlayerActive");
      const id = calls[from]?.[1];
      assert.deepEqual(calls.slice(from, from + 6 + attributes.length), [
        ["FlagPlayerActive", id],
        ["GetPlayer", id],
        ["SetLocation", id, server.url(`/written/${name}`)],
        ["SetData", id, server.url("/written/film.mp4")],
        ["SetMimeType", id, "video/mp4"],
        ...attributes.map(pair => ["SetAttribute", id, ...pair]),
        ["Play", id, 1]
      ]);
      const read = await browser.run(() =>
        [film.data, film.type, film.playTime, film.speed, film.nrTracks]);
      assert.deepEqual(read, [server.url("/written/film.mp4"), "video/mp4", 600000, 1, 1]);
      assert.deepEqual(await browser.run(() => window.failures), []);
    }
  });

  it("completes every address from the document's base", async () => {
    await television.show("base.html", page(element(film), '<base href="/media/deep/">'));
    await browser.run(() => {
      film.setAttribute("data", "../up.mp4");
      film.data = "/root film.mp4";
      film.data = "?part=2";
      film.data = "http://other.example/a.mp4";
      film.data = "";
      film.queue("queued.mp4");
    });
    const url = path => server.url(path);
    assert.deepEqual((await argumentsOf("SetData")).map(([data]) => data), [
      url("/media/deep/film.mp4"), url("/media/up.mp4"), url("/root%20film.mp4"), url("/media/deep/?part=2"),
      "http://other.example/a.mp4", "", url("/media/deep/queued.mp4")
    ]);
    assert.deepEqual(await argumentsOf("SetLocation"), [[url("/written/base.html")]]);
    await inState(playing);
    await browser.run(() => [film.queue("next.mp4"), film.queue(null)]);
    assert.deepEqual(await argumentsOf("Queue"), [[url("/media/deep/next.mp4")], [""]]);
  });

  it("in full screen refuses another size, without an error in the page", async () => {
    await television.show("changes.html", page(element(film)));
    assert.equal(await browser.run(() => {
      film.setFullScreen(true);
      film.setAttribute("width", "7");
      return film.width;
    }), 640);
    assert.deepEqual(await browser.run(() => window.failures), []);
  });

  it("that plays again while its page goes leaves nothing playing", async () => {
    const silent = () => waitFor("it is silent", async () =>
      Object.values(await receiver.getWorld("/state/media_players")).every(({ state }) => state === stopped));
    const again = () => {
      film.onPlayStateChange = state => state === 0 && film.play(1);
      addEventListener("unload", () => film.play(1));
      film.play(1);
    };
    const leaves = {
      navigation: () => television.leaveWhen("it plays again", async () =>
        (await argumentsOf("GetPlayer")).length > 0),
      reload: () => browser.driver.navigate().refresh()
    };
    for (const [how, leave] of Object.entries(leaves)) {
      await television.show("again.html", page(element(film)));
      await browser.run(again);
      await inState(playing);
      await receiver.clearCalls();
      await leave();
      await silent();
      const [end] = (await mediaCalls()).filter(([name]) => /^(Stop|ReleasePlayer)$/.test(name));
      assert.deepEqual(end, ["ReleasePlayer", 0], how);
      assert.deepEqual(await browser.run(() => [window.failures, window.heard ?? []]), [[], []], how);
    }
  });

  // The picture is the receiver's; one of the browser's own would play everything twice, and cover the hole.
  it("is left to the receiver by the browser, which plays HTML's own video element", async () => {
    const types = ["video/mp4", "audio/mpeg", "video/mpeg", "application/dash+xml",
      "application/vnd.apple.mpegurl"];
    const names = ["film.mp4", "song.mp3", "list.mpd", "stream"];
    const objects = types.flatMap((type, i) =>
      names.map(name => `<object type="${type}" data="/own/${i}/${name}"></object>`));
    const video = '<video src="/own/html.mp4" preload="auto"></video>';
    server.requested.clear();
    await television.show("own.html", page(objects.join("") + video));
    await waitFor("the video element loads", () => server.requested.has("/own/html.mp4"));
    assert.equal(await browser.run(() => document.querySelectorAll("object > div").length),
      objects.length);
    assert.deepEqual([...server.requested].filter(path => path.startsWith("/own/")), ["/own/html.mp4"]);
    assert.equal(await browser.run(() => frames.length), 0);
  });
});
