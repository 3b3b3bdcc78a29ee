// Somebody else's middleware: the example in Python, without the receiver and its control interface.
import assert from "node:assert/strict";
import { join } from "node:path";
import { describe, it } from "node:test";
import { Application } from "./Harness/application.mjs";
import { sourceRoot } from "./Harness/programs.mjs";
import { useTelevision } from "./Harness/suite.mjs";
import { waitFor } from "./Harness/wait.mjs";

describe("The middleware in Python", () => {
  const television = useTelevision({ receiver: false });
  const { workplace } = television;
  const zapper = new Application(television, "/examples/zapper/", ({ text, isOpen }) => ({
    state: text("#state"),
    channel: text("#channel-name"),
    trouble: isOpen("#trouble") ? text("#trouble-title") : null,
    now: text("#now-name"),
    audio: text("#card-audio .value"),
    verdict: document.getElementById("verdict").dataset.verdict
  }));

  it("lets the zapper zap", async () => {
    workplace.start(join(sourceRoot, "Examples/middleware/middleware.py"), []);
    await waitFor("its names", () => workplace.lines.filter(line => /^middleware: org/.test(line)).length === 3);
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
