// The application manager, applications and keys, as a page in the television uses them.
import assert from "node:assert/strict";
import { afterEach, beforeEach, describe, it } from "node:test";
import { exitAfterLoad, shell } from "./Harness/programs.mjs";
import { useTelevision } from "./Harness/suite.mjs";
import { waitFor } from "./Harness/wait.mjs";

describe("An application", () => {
  const television = useTelevision();
  const { browser, receiver } = television;

  beforeEach(async () => {
    await receiver.resetMethods();
    await television.open("plain.html");
  });

  afterEach(async () => assert.deepEqual(await browser.run(() => window.failures), []));

  it("hears from before its element comes and while that moves, not when it is removed; one that returns starts anew",
    async () => {
      await browser.run(() => {
        window.heard = [];
        const makeManager = name => {
          const manager = document.createElement("object");
          manager.onLowMemory = () => window.heard.push(name + " handler");
          manager.setAttribute("type", "application/oipfApplicationManager");
          manager.addEventListener("LowMemory", event => window.heard.push(name + " " + event.type), false);
          return manager;
        };
        const root = document.getElementById("root");
        const moved = root.appendChild(makeManager("moved"));
        const removed = root.appendChild(makeManager("removed"));
        const returning = root.appendChild(makeManager("returning"));
        const before = moved.__reflected;
        setTimeout(() => {
          document.body.appendChild(moved);
          root.removeChild(removed);
          root.removeChild(returning);
          setTimeout(() => {
            root.appendChild(returning);
            returning.onLowMemory = () => window.heard.push("new handler");
            window.changed = [moved.__reflected === before, removed.__reflected, removed.getOwnerApplication,
              Object.keys(removed)];
          });
        });
      });
      const changed = await browser.waitFor("the elements are in place", () => window.changed);
      assert.deepEqual(changed, [true, null, null, []]);
      await receiver.emit("PluginEvent", "(400, uint32 0)");
      await browser.waitFor("the others were called", () => window.heard.length >= 3);
      const heard = await browser.run(() => window.heard);
      assert.deepEqual(heard.filter(who => who !== "new handler"), ["moved handler", "moved LowMemory"]);
      assert.equal(heard.length, 3);
    });

  describe("gets keys", () => {
    it("by their bare names, which a page may take for its own things", async () => {
      await television.show("bare.html", `<!DOCTYPE html><html><body><script src="/pages/watch.js"></script>
        <script>window.bare = [VK_UP, VK_RED, VK_0];</script>
        <script>const VK_DOWN = "mine"; function VK_LEFT() {} var VK_BLUE = 7; window.own = [VK_DOWN, VK_BLUE];</script>`);
      assert.deepEqual(await browser.run(() => [bare, own, typeof VK_LEFT, Object.keys(window).includes("VK_UP")]),
        [[38, 403, 48], ["mine", 7], "function", false]);
    });

    it("as far as the receiver lets it", async () => {
      const maximum = await receiver.getWorld("/keys/maximum");
      await receiver.setWorld("/keys/maximum", 31);
      const values = await browser.run(() => {
        const manager = oipfObjectFactory.createApplicationManagerObject();
        const { keyset } = manager.getOwnerApplication(document).privateData;
        return [keyset.maximumValue, keyset.setValue(2047), keyset.value, keyset.setValue(NaN)];
      });
      const mask = await receiver.getWorld("/keys/mask");
      assert.deepEqual(values, [31, mask, mask, null]);
      assert.equal(mask & ~31, 0);
      await receiver.setWorld("/keys/maximum", maximum);
    });
  });

  describe("starts others", () => {
    const create = (...args) => browser.run((...given) => {
      window.owner = oipfObjectFactory.createApplicationManagerObject().getOwnerApplication(document);
      window.child = owner.createApplication(...given);
      return window.child === null ? null : String(window.child);
    }, ...args);

    // As ["Show", [7]], of these methods of the browser interface.
    const callsOf = async (...methods) => (await receiver.calls())
      .map(([method, args]) => [method.replace("IDAEBrowserAPI.", ""), args])
      .filter(([method]) => methods.includes(method));

    it("by an address relative to its own, in a view that it can hide, show and destroy", async () => {
      assert.equal(await create("application.html?child", true), "[object Application]");
      const { server } = television;
      const [[, [url, parent]]] = (await callsOf("CreateApplication")).slice(-1);
      assert.equal(url, server.url("/pages/application.html?child"));
      await waitFor("the child's page is loaded", () => server.requested.has("/pages/application.html"));
      await receiver.clearCalls();
      await browser.run(() => {
        child.hide();
        child.show();
        child.destroyApplication();
      });
      const view = [parent + 1];
      assert.deepEqual(await callsOf("Hide", "Show", "DestroyApplication"),
        [["Hide", view], ["Show", view], ["DestroyApplication", view]]);
    });

    it("unless the receiver refuses: null, and no exception", async () => {
      assert.equal(await create("http://refused.invalid/index.html", false), null);
    });
  });

  it("hears of each application that cannot be loaded: of its own ones, and of those that no page has created", async () => {
    const { server, workplace } = television;
    await browser.run(() => {
      window.failed = 0;
      window.named = [];
      window.manager = oipfObjectFactory.createApplicationManagerObject();
      window.owner = manager.getOwnerApplication(document);
      // Named by an application without a view.
      manager.onApplicationLoadError = application => {
        application.hide();
        application.show();
        named.push(String(application));
      };
      manager.addEventListener("ApplicationLoadError", ({ app }) => {
        ++failed;
        named.push(typeof app.hide);
      });
    });
    await receiver.clearCalls();
    const failed = count => browser.waitFor(`${count} have failed`, expected => failed >= expected, count);
    const faulty = [server.url("/nowhere.html"), "http://127.0.0.1:2/", "http://127.0.0.1:1/", server.write("empty.aitx",
      "<ServiceDiscovery/>")];
    for (const [index, url] of faulty.entries()) {
      await browser.run(address => owner.createApplication(address, false), url);
      await failed(index + 1);
    }
    // What the application itself does later is its own affair.
    await browser.run(address => owner.createApplication(address, false), server.write("leaves.html",
      `<script>onload = () => setTimeout(() => { location = "${faulty[0]}"; });</script>`));
    await waitFor("it has left", () => workplace.lines.filter(line => line.includes(`cannot show ${faulty[0]}`)).length === 2);
    await workplace.run(shell(), ["--session-bus", ...exitAfterLoad, faulty[0]]);
    await failed(5);
    assert.equal(await browser.run(() => failed), 5);
    assert.deepEqual(await browser.run(() => named), Array(5).fill(["[object Application]", "function"]).flat());
    assert.deepEqual(await receiver.callNames("IDAEBrowserAPI.Hide", "IDAEBrowserAPI.Show"), []);
  });

  it("learns how much memory is free", async () => {
    const free = await browser.run(() => oipfObjectFactory.createApplicationManagerObject()
      .getOwnerApplication(document).privateData.getFreeMem());
    assert.ok(Number.isInteger(free) && free > 0, `${free}`);
  });
});
