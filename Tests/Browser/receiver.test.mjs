// Pages go on when the receiver does not.
import assert from "node:assert/strict";
import { describe, it } from "node:test";
import { shell } from "./Harness/programs.mjs";
import { useTelevision, useWorkplace } from "./Harness/suite.mjs";
import { inTime, waitFor } from "./Harness/wait.mjs";

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
  const television = useTelevision({ receiver: false });

  it("a page loads and gets the failure values; with one it works, without being loaded again", async () => {
    const { browser } = television;
    await television.open("plain.html");
    assert.deepEqual(await browser.run(useEverything), unanswered);
    await television.receiver.start();
    await waitFor("the receiver is heard", async () => (await browser.run(useEverything)).set === 1);
    assert.deepEqual(await browser.run(() => window.failures), []);
  });
});

describe("A scenario that the receiver refuses", () => {
  const { workplace } = useWorkplace();

  it("ends the shell with its reason, as every bad argument does", async () => {
    const ended = workplace.run(shell(), ["--scenario", "/nowhere.json", "about:blank"]);
    const { code, lines } = await inTime("the shell ends", ended, 30000);
    assert.equal(code, 2);
    assert.match(lines.join("\n"), /\/nowhere\.json: cannot open it: No such file or directory/);
  });
});
