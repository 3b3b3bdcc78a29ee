// The DRM agent as an element of a page.
import assert from "node:assert/strict";
import { before, describe, it } from "node:test";
import { useTelevision } from "./Harness/suite.mjs";

const page = `<!DOCTYPE html><html><body><object id="agent" type="application/oipfDrmAgent"></object></body></html>`;

describe("A page that sends messages to DRM systems", () => {
  const television = useTelevision();
  const { browser, receiver } = television;

  before(() => television.show("drm.html", page));

  it("hears the answers to DRM messages as they come, and none from a silent system", async () => {
    await receiver.setWorld("/drm/systems", [
      { id: "slow", result_code: 2, result_message: "at last", reply_ms: 500 },
      { id: "quick", result_code: 0, result_message: "here", reply_ms: 10 },
      { id: "silent", replies: false }
    ]);
    const answers = await browser.runAsync((done) => {
      const heard = [], ids = {};
      agent.onDRMMessageResult = (id, message, code) => {
        heard.push([Object.keys(ids).find(system => ids[system] === id), message, code]);
        if (heard.length === 3)
          done(heard);
      };
      for (const system of ["unknown", "slow", "silent", "quick"])
        ids[system] = agent.sendDRMMessage("text/plain", "hello", system);
    });
    assert.deepEqual(answers, [["unknown", "", 5], ["quick", "here", 0], ["slow", "at last", 2]]);
  });
});
