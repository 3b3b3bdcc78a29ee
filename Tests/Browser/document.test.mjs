// What a page finds in its documents and frames, and how it finds its application.
import assert from "node:assert/strict";
import { after, afterEach, before, describe, it } from "node:test";
import { Television } from "./Harness/television.mjs";

const everyWay = { markup: true, innerHtml: true, appendChild: true, beforeInsertion: true, factory: true };
const everyGlobal = {
  PrivateObjectFactory: "object", KeyEvent: 403, Keyset: 1, Channel: "function", debug: "function",
  oipfObjectFactory: "object", foreign: ["oipfObjectFactory"]
};

describe("A document", () => {
  let television, browser;

  before(async () => {
    television = await Television.start();
    browser = television.browser;
  });

  after(() => television?.close());
  afterEach(async () => assert.deepEqual(await browser.run(() => window.failures), []));

  it("has the native globals before its first script, as has every frame in it", async () => {
    await television.open("frames.html");
    const seen = await browser.run(() => {
      const inner = frames.nest.frames.inner;
      const all = [window, frames.child, frames.nest, inner];
      const factories = new Set(all.map(one => one.PrivateObjectFactory));
      return { globals: all.map(one => one.globals), own: factories.size };
    });
    for (const globals of seen.globals) {
      // A constructor object is a function or an object, as the engine likes.
      assert.deepEqual({ ...globals, Channel: "function" }, everyGlobal);
      assert.notEqual(globals.Channel, "undefined");
    }
    assert.equal(seen.own, 4);
  });

  for (const [page, contentType] of [
    ["application.html", "text/html"],
    ["application.xhtml", "application/xhtml+xml"],
    ["application.hbbtv", undefined]
  ]) {
    it(`finds its application in each way, in the task that inserts the element: ${page}`, async () => {
      await television.open(page);
      assert.deepEqual(await browser.run(() => window.found), everyWay);
      if (contentType)
        assert.equal(await browser.run(() => document.contentType), contentType);
      const made = await browser.run(() => document.createElement("object") instanceof HTMLObjectElement);
      assert.equal(made, true);
    });
  }

  it("finds it in frames too", async () => {
    await television.open("frames.html");
    const found = await browser.run(() => [frames.child.found, frames.nest.frames.inner.found]);
    assert.deepEqual(found, [everyWay, everyWay]);
  });

  it("may be strict, have a debug function of its own, and elements of any supported kind", async () => {
    await television.open("strict.html");
    const seen = await browser.run(() => window.seen);
    assert.deepEqual(seen,
      { handler: true, cleared: null, ownThing: 1, debug: "own text", application: true });
  });
});

describe("The user agent's profile decides", () => {
  let television;

  before(async () => {
    television = await Television.start({ shell: ["--profile", "none"] });
  });

  after(() => television?.close());

  const types = ["application/oipfApplicationManager", "video/broadcast", "application/oipfDrmAgent",
    "application/dash+xml", "video/vnd.ms-playready.media.pyv"];

  for (const [profile, supported] of [["none", 0], ["1.1.1", 2], ["1.2.1", 4]]) {
    it(`what is supported: ${profile}`, async () => {
      if (profile !== "none")
        await television.startShell(["--profile", profile]);
      const { browser } = television;
      await television.open("plain.html");
      const seen = await browser.runAsync((mimes, done) => {
        const root = document.getElementById("root");
        root.innerHTML = mimes.map(type => `<object type="${type}"></object>`).join("");
        const manager = root.firstChild;
        const touched = typeof manager.getOwnerApplication;
        setTimeout(() => done({
          offered: mimes.filter(type => oipfObjectFactory.isObjectSupported(type)),
          touched,
          upgraded: "__reflected" in manager,
          failures: window.failures
        }));
      }, types);
      const upgraded = profile !== "none";
      const touched = upgraded ? "function" : "undefined";
      assert.deepEqual(seen, { offered: types.slice(0, supported), touched, upgraded, failures: [] });
    });
  }
});
