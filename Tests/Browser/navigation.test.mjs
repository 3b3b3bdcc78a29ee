// What a page leaves behind when it goes: nothing.
import assert from "node:assert/strict";
import { after, before, describe, it } from "node:test";
import { Television } from "./Harness/television.mjs";
import { waitFor } from "./Harness/wait.mjs";

const releases = ["IAVEventHandler.ReleasePlayer", "IBroadcastPlayer.Release"];

// Fills the page with objects that have handlers, some of them never in the document.
const populate = () => {
  const root = document.getElementById("root");
  window.managers = [];
  for (let i = 0; i < 10; ++i) {
    const manager = document.createElement("object");
    manager.type = "application/oipfApplicationManager";
    manager.onLowMemory = () => window.managers.push(window.keyset);
    manager.addEventListener("ApplicationLoadError", () => manager.onLowMemory());
    window.keyset = manager.getOwnerApplication(document).privateData.keyset;
    window.managers.push(manager);
    if (i % 2)
      root.appendChild(manager);
  }
  const video = document.createElement("object");
  video.type = "video/broadcast";
  video.onPlayStateChange = () => {};
  root.appendChild(video);
};

describe("Navigation", () => {
  let television, browser, receiver;

  before(async () => {
    television = await Television.start();
    ({ browser, receiver } = television);
  });

  after(() => television?.close());

  it("to another document, and a reload, release players in order", async () => {
    await television.open("plain.html");
    for (const navigate of [() => television.open("application.html"), () => browser.driver.navigate().refresh()]) {
      await receiver.clearCalls();
      await navigate();
      assert.deepEqual(await receiver.callNames(...releases), releases);
    }
  });

  it("within the document, and in a frame, releases nothing and keeps the objects", async () => {
    await television.open("frames.html");
    await browser.run(() => {
      const manager = document.createElement("object");
      manager.type = "application/oipfApplicationManager";
      document.body.appendChild(manager);
      manager.onLowMemory = () => { window.heard = true; };
      window.manager = manager;
      window.reflected = manager.__reflected;
    });
    await receiver.clearCalls();
    await browser.run(() => {
      location.hash = "elsewhere";
      history.pushState({}, "", "?pushed");
      frames.child.location.href = "/pages/application.xhtml";
    });
    await browser.waitFor("the frame shows its new document", () => frames.child.document.contentType
      === "application/xhtml+xml" && frames.child.found);
    assert.deepEqual(await receiver.callNames(...releases), []);
    assert.equal(await browser.run(() => window.manager.__reflected === window.reflected), true);
    await receiver.emit("PluginEvent", "(400, uint32 0)");
    await browser.waitFor("the handler is called", () => window.heard);
  });

  it("a hundred times leaves no native object alive", async () => {
    const collect = () => browser.run(() => window.__collectGarbage?.());
    await television.open("plain.html");
    await television.open("plain.html");
    const baseline = await waitFor("the count is logged", () => television.nativeObjectsAlive());
    for (let i = 0; i < 100; ++i) {
      await television.open("plain.html");
      await browser.run(populate);
    }
    await waitFor(`the count is back at ${baseline}`, async () => {
      await television.open("plain.html");
      await collect();
      return television.nativeObjectsAlive() <= baseline;
    }, 20000);
  });

  it("is not needed for removed elements: ten thousand of them add up to nothing", async () => {
    await television.open("plain.html");
    const baseline = await waitFor("the count is logged", () => television.nativeObjectsAlive());
    await browser.runAsync(done => {
      const root = document.getElementById("root");
      let left = 100;
      const step = () => {
        root.innerHTML = '<object type="application/oipfApplicationManager"></object>'.repeat(100);
        for (const manager of root.children)
          manager.onLowMemory = () => root;
        root.innerHTML = "";
        if (--left)
          setTimeout(step);
        else
          done();
      };
      step();
    });
    await browser.run(() => window.__collectGarbage?.());
    assert.deepEqual(await browser.run(() => window.failures), []);
    await waitFor(`the count is back at ${baseline}`, async () => {
      await television.open("plain.html");
      return television.nativeObjectsAlive() <= baseline;
    }, 20000);
  });
});
