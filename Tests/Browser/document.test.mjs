// What a page finds in its documents and frames, and how it finds its application.
import assert from "node:assert/strict";
import { afterEach, describe, it } from "node:test";
import { useTelevision } from "./Harness/suite.mjs";
import { waitFor } from "./Harness/wait.mjs";

const everyWay = [0, 0];
const everyGlobal = {
  PrivateObjectFactory: "object", KeyEvent: 403, Keyset: 1, Channel: "function", debug: "function",
  oipfObjectFactory: "object", foreign: ["oipfObjectFactory"]
};

describe("A document", () => {
  const television = useTelevision();
  const { browser } = television;

  afterEach(async () => assert.deepEqual(await browser.run(() => window.failures), []));

  it("of each type, also in a frame, has the globals before its first script, and then its application", async () => {
    await television.open("frames.html");
    const seen = await browser.run(() => {
      const inner = frames.nest.frames.inner;
      const all = [window, frames.child, frames.nest, inner];
      const factories = new Set(all.map(one => one.PrivateObjectFactory));
      const elements = [frames.child, inner].map(({ document, HTMLObjectElement }) =>
        [document.contentType, document.createElement("object") instanceof HTMLObjectElement]);
      return { globals: all.map(one => one.globals), own: factories.size, elements,
        found: [frames.child.found, inner.found] };
    });
    for (const globals of seen.globals) {
      // A constructor object is a function or an object, as the engine likes.
      assert.deepEqual({ ...globals, Channel: "function" }, everyGlobal);
      assert.notEqual(globals.Channel, "undefined");
    }
    assert.equal(seen.own, 4);
    assert.deepEqual(seen.elements, [["text/html", true], ["application/xhtml+xml", true]]);
    assert.deepEqual(seen.found, [everyWay, everyWay]);

    await television.open("application.hbbtv");
    assert.deepEqual(await browser.run(() =>
      [window.found, document.createElement("object") instanceof HTMLObjectElement]), [everyWay, true]);
  });

  it("gets all its objects though its scripts have replaced every built-in, and nobody uses what they put there",
    async () => {
      await television.receiver.setWorld("/media/items", [{ url: "*", duration_ms: 600000 }]);
      await television.receiver.clearCalls();
      await television.open("hostile.html");
      await waitFor("the page is done", () => television.server.requested.has("/pages/done"));
      const { used, ...result } = await browser.run(() => window.result);
      assert.deepEqual([...new Set(used)], []);
      // Listeners of one event are called in the order of their addresses.
      result.heard.splice(1, 2, ...result.heard.slice(1, 3).sort());
      assert.deepEqual(result, {
        failed: null, own: ["own text", true, null, 1], logs: true, keys: 0, supported: true, size: "320x200", shown: "hole", again: "div", copied: 0,
        data: television.server.url("/pages/other.mp4"), bound: true, configured: "string",
        heard: ["handler 3", "listener 3", "object 3", "handler 1", "listener 1", "handler 0", "listener 0"]
      });
      const calls = (await television.receiver.calls()).map(([name, args]) => [name.split(".")[1], ...args]);
      const film = calls.find(([name]) => name === "GetPlayer")[1];
      const given = calls.filter(([name, id]) => name === "SetAttribute" && id === film)
        .map(([, , name, value]) => [name, value]);
      assert.deepEqual(Object.fromEntries(given),
        { data: "film.mp4", height: "200", type: "video/mp4", width: "320px" });
      const play = calls.findIndex(([name]) => name === "Play");
      const names = ofFilm => ofFilm.filter(([, id]) => id === film).map(([name]) => name);
      assert.deepEqual(names(calls.slice(0, play)).filter(name => name === "UpdateLayout"), []);
      assert.deepEqual(names(calls.slice(play)).filter(name => /^(Stop|ReleasePlayer)$/.test(name)),
        ["Stop", "ReleasePlayer"]);
    });
});

describe("A document of an old profile, where nobody listens", () => {
  const television = useTelevision({ shell: ["--profile", "1.1.1"], environment: { HBBTV_LOG_LEVEL: "warning" } });

  it("supports what the profile has, and says nothing", async () => {
    await television.open("plain.html");
    const types = ["application/oipfApplicationManager", "video/broadcast", "application/oipfDrmAgent"];
    const seen = await television.browser.run(mimes => ({
      offered: mimes.filter(type => oipfObjectFactory.isObjectSupported(type)),
      logs: window._hbbtv_vantrel_logs,
      failures: window.failures
    }), types);
    assert.deepEqual(seen, { offered: types.slice(0, 2), logs: false, failures: [] });
  });
});
