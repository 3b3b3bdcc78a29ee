// Pages go on when the receiver does not.
import assert from "node:assert/strict";
import { after, before, describe, it } from "node:test";
import { shell } from "./Harness/programs.mjs";
import { Receiver } from "./Harness/receiver.mjs";
import { Television } from "./Harness/television.mjs";
import { inTime, waitFor } from "./Harness/wait.mjs";
import { Workplace } from "./Harness/workplace.mjs";

// Uses a bit of everything; what a page sees when nobody answers is null, 0 or nothing, never an exception.
const useEverything = () => {
  const manager = document.createElement("object");
  manager.type = "application/oipfApplicationManager";
  document.getElementById("root").appendChild(manager);
  const owner = manager.getOwnerApplication(document);
  owner.show();
  owner.hide();
  const { keyset, currentChannel } = owner.privateData;
  const seen = {
    set: keyset.setValue(Keyset.RED),
    value: keyset.value,
    channel: currentChannel === null ? null : "a channel",
    child: owner.createApplication("http://refused.invalid/", false)
  };
  owner.show();
  return seen;
};

const unanswered = { set: 0, value: 0, channel: null, child: null };

describe("Without a receiver", () => {
  let television;

  before(async () => {
    television = await Television.start({ receiver: false });
  });

  after(() => television?.close());

  it("a page loads and gets the failure values; with one it works, without being loaded again", async () => {
    const { browser } = television;
    await television.open("plain.html");
    assert.deepEqual(await browser.run(useEverything), unanswered);
    television.receiver = await Receiver.start(television.workplace);
    await waitFor("the receiver is heard", async () => (await browser.run(useEverything)).set === 1);
    assert.deepEqual(await browser.run(() => window.failures), []);
  });
});

describe("A scenario that the receiver refuses", () => {
  let workplace;

  before(async () => {
    workplace = await Workplace.create();
  });

  after(() => workplace?.close());

  it("ends the shell with its reason, as every bad argument does", async () => {
    const started = workplace.start(shell(), ["--scenario", "/nowhere.json", "about:blank"]);
    await inTime("the shell ends", started.ended, 30000);
    assert.equal(started.exitCode, 2);
    await waitFor("the reason is told", () => workplace.lines.some(line =>
      line.includes("/nowhere.json: cannot open it: No such file or directory")));
  });
});
