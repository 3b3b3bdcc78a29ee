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
  // A script that runs on after its frame is gone.
  const frame = root.appendChild(document.createElement("iframe"));
  const late = frame.contentWindow.eval("(object => object.addEventListener('LowMemory', () => object))");
  frame.remove();
  late(window.oipfObjectFactory.createApplicationManagerObject());
};

describe("Navigation", () => {
  const television = useTelevision();
  const { browser, receiver } = television;

  // The bundle logs its count when a page begins; what only waits for the collector is collected before.
  async function aliveAfterNavigation() {
    await browser.run(() => window.__collectGarbage());
    const logged = television.countsOfNativeObjects().length;
    await television.open("plain.html");
    await waitFor("the count is logged", () => television.countsOfNativeObjects().length > logged);
    return television.countsOfNativeObjects()[logged];
  }

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

  const leaves = {
    "of a frame": () => { frames.child.location.href = "/pages/plain.html"; },
    "by the removal of a frame": () => document.querySelector("iframe").remove()
  };
  for (const [how, leave] of Object.entries(leaves)) {
    it(`${how} takes its own handlers along, and no others`, async () => {
      await television.open("frames.html");
      await browser.run(() => {
        window.heard = [];
        const manager = document.createElement("object");
        manager.type = "application/oipfApplicationManager";
        const theirs = frames.child.PrivateObjectFactory.createApplicationManagerObject();
        const managers = window.managers = [document.body.appendChild(manager), theirs];
        managers[1].onLowMemory = () => window.heard.push("of the page");
        const script = frames.child.document.createElement("script");
        script.text = `parent.managers.forEach(each => {
          each.addEventListener("LowMemory", () => { parent.heard.push("of the frame"); throw Error("mine"); });
        })`;
        frames.child.document.body.appendChild(script);
        managers[0].onLowMemory = () => window.heard.push("of the page");
      });
      const hear = async () => {
        await receiver.emit("PluginEvent", "(400, uint32 0)");
        await browser.waitFor("the page hears", () => window.heard.filter(who => who === "of the page").length === 2);
        return browser.run(() => window.heard.splice(0).filter(who => who === "of the frame").length);
      };
      assert.equal(await hear(), 2);
      assert.deepEqual(await browser.run(() => [failures, frames.child.failures]),
        [[], ["Error: mine", "Error: mine"]]);
      assert.ok(television.workplace.lines.some(line => /- Error: mine \(.+application.html:\d+\)/.test(line)));
      await browser.run(leave);
      await browser.waitFor("it has left", () => !frames.child?.found);
      assert.equal(await hear(), 0);
    });
  }

  it("a hundred times leaves no native object alive", async () => {
    await television.open("plain.html");
    const baseline = await aliveAfterNavigation();
    for (let i = 0; i < 100; ++i) {
      await television.open("plain.html");
      await browser.run(populate);
    }
    const isBack = async () => await aliveAfterNavigation() <= baseline;
    await waitFor(`the count is back at ${baseline}`, isBack, 20000);
  });

  it("is not needed for removed elements: ten thousand of them do not add up", async () => {
    await television.open("plain.html");
    const baseline = await aliveAfterNavigation();
    for (let i = 0; i < 100; ++i) {
      await browser.run(() => {
        const root = document.getElementById("root");
        root.innerHTML = '<object type="application/oipfApplicationManager"></object>'.repeat(99);
        const loose = document.createElement("object");
        loose.type = "application/oipfApplicationManager";
        loose.addEventListener("LowMemory", () => loose);
        root.appendChild(loose);
        for (const manager of root.children)
          manager.onLowMemory = () => root;
        root.innerHTML = "";
      });
    }
    const alive = await aliveAfterNavigation();
    assert.ok(alive < baseline + 500, `${alive} are alive, ${baseline} before`);
    assert.deepEqual(await browser.run(() => window.failures), []);
  });
});
