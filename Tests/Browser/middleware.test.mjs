// Somebody else's middleware: the example in Python, without the receiver and its control interface.
import assert from "node:assert/strict";
import { join } from "node:path";
import { describe, it } from "node:test";
import { Application } from "./Harness/application.mjs";
import { sourceRoot } from "./Harness/programs.mjs";
import { useTelevision } from "./Harness/suite.mjs";
import { waitFor } from "./Harness/wait.mjs";

// Uses a bit of everything; what a page sees when nobody answers is null, 0 or nothing, never an exception.
const useEverything = () => {
  const owner = oipfObjectFactory.createApplicationManagerObject().getOwnerApplication(document);
  owner.show();
  owner.hide();
  const { keyset, currentChannel } = owner.privateData;
  const set = keyset.setValue(Keyset.RED);
  const child = owner.createApplication("http://refused.invalid/", false);
  owner.show();
  return { set, value: keyset.value, channel: currentChannel, child };
};

describe("The middleware in Python", () => {
  const television = useTelevision({ receiver: false });
  const { browser, workplace } = television;
  const zapper = new Application(television, "/examples/zapper/", ({ text, isOpen }) => ({
    state: text("#state"),
    channel: text("#channel-name"),
    trouble: isOpen("#trouble") ? text("#trouble-title") : null,
    now: text("#now-name"),
    audio: text("#card-audio .value"),
    verdict: document.getElementById("verdict").dataset.verdict
  }));

  it("may come later than a page, which gets the failure values until then and need not be loaded again", async () => {
    await television.open("plain.html");
    assert.deepEqual(await browser.run(useEverything), { set: 0, value: 0, channel: null, child: null });
    workplace.start(join(sourceRoot, "Examples/middleware/middleware.py"), []);
    await waitFor("its names", () => workplace.lines.filter(line => /^middleware: org/.test(line)).length === 3);
    await waitFor("it is heard", async () => (await browser.run(useEverything)).set === 1);
    assert.deepEqual(await browser.run(() => window.failures), []);
  });

  it("lets the zapper zap", async () => {
    workplace.lines.length = 0;
    await zapper.load();
    await zapper.sees({ state: "Watching", channel: "Harbour HD", now: "Harbour 0", audio: "English", verdict: "pass" });
    await zapper.pressInPage("GREEN");
    await zapper.sees({ audio: "Deutsch" });
    await zapper.pressInPage("CHANNEL_UP");
    await zapper.sees({ state: "Watching", channel: "Hills HD", now: "Hills 0", trouble: null });
    await zapper.pressInPage("DOWN");
    await zapper.sees({ trouble: "No signal" });
    await zapper.pressInPage("DOWN");
    await zapper.sees({ state: "Watching", channel: "Harbour HD", trouble: null });
    assert.doesNotMatch(workplace.lines.join("\n"), /(DAEBrowserAPI|BroadcastPlayer|ChannelCache)WK::.* failed/);
  });
});
