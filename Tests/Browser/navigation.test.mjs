// What a page leaves behind when it goes: nothing.
import assert from "node:assert/strict";
import { describe, it } from "node:test";
import { useTelevision } from "./Harness/suite.mjs";
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
  const search = oipfObjectFactory.createSearchManagerObject().createSearch(1);
  search.setQuery(search.createQuery("Programme.name", 6, "news"));
  search.result.getResults(0, 5);
  // A script that runs on after its frame is gone.
  const frame = root.appendChild(document.createElement("iframe"));
  const late = frame.contentWindow.eval("(object => object.addEventListener('LowMemory', () => object))");
  frame.remove();
  late(window.oipfObjectFactory.createApplicationManagerObject());
};

describe("Navigation", () => {
  const television = useTelevision();
  const { browser, receiver } = television;

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
    await browser.run(() => {
      const script = frames.child.document.createElement("script");
      script.text = `parent.manager.addEventListener("LowMemory", () => { throw Error("mine"); })`;
      frames.child.document.body.appendChild(script);
    });
    await receiver.emit("PluginEvent", "(400, uint32 0)");
    await browser.waitFor("the handler is called", () => window.heard && frames.child.failures.length);
    assert.deepEqual(await browser.run(() => [failures, frames.child.failures]), [[], ["Error: mine"]]);
  });

  it("a hundred times leaves no native object alive", async () => {
    await receiver.setWorld("/search/duration_ms", 600000);
    await television.open("plain.html");
    const baseline = await television.nativeObjectsLeft();
    for (let i = 0; i < 100; ++i) {
      await television.open("plain.html");
      await browser.run(populate);
    }
    const isBack = async () => await television.nativeObjectsLeft() <= baseline;
    await waitFor(`the count is back at ${baseline}`, isBack, 20000);
  });

  it("is not needed for removed elements: ten thousand do not add up, nor what was never inserted", async () => {
    await television.open("plain.html");
    const baseline = await television.nativeObjectsLeft();
    await browser.run(() => {
      window.refs = [];
      window.keepWeakly = element =>
        refs.push(new WeakRef(element), new WeakRef(element.addEventListener && element.__reflected));
    });
    for (let i = 0; i < 100; ++i) {
      await browser.run(() => {
        const types = ["application/oipfApplicationManager", "video/broadcast", "video/mp4"];
        const root = document.getElementById("root");
        root.innerHTML = `<object type="${types[0]}"></object>`.repeat(99);
        for (const type of types) {
          const [loose, touched] = [0, 1].map(() => Object.assign(document.createElement("object"), { type }));
          loose.addEventListener("LowMemory", () => loose);
          root.appendChild(loose);
          keepWeakly(touched);
        }
        for (const element of root.children) {
          element.onLowMemory = element.onPlayStateChange = () => root;
          keepWeakly(element);
        }
        root.innerHTML = "";
      });
    }
    // The latest are still on their way to the observer.
    await browser.waitFor("hardly one of them or their objects is there", () => {
      window.__collectGarbage();
      return refs.filter(each => each.deref()).length <= 40;
    });
    const alive = await television.nativeObjectsLeft();
    assert.ok(alive < baseline + 500, `${alive} are alive, ${baseline} before`);
    assert.deepEqual(await browser.run(() => window.failures), []);
  });
});
