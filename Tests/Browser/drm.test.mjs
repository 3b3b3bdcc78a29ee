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
      { id: "slow", result_code: 2, result_message: "at last", reply_ms: 150 },
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
      for (const system of ["slow", "silent", "quick", "unknown"])
        ids[system] = agent.sendDRMMessage("text/plain", "hello", system);
    });
    assert.deepEqual(answers, [["unknown", "", 5], ["quick", "here", 0], ["slow", "at last", 2]]);

    // What modules answer and say by themselves comes as bytes; broken ones are not heard.
    const id = await browser.run(() => {
      window.said = [];
      agent.onDRMMessageResult = (...result) => window.said.push(result);
      agent.addEventListener("DRMSystemMessage", ({ msg, DRMSystemID }) => window.said.push([msg, DRMSystemID]));
      return agent.sendDRMMessage("text/plain", "hello", "silent");
    });
    assert.equal(typeof id, "string");
    const idBytes = [24, 16, 8, 0].map(shift => Number(id) >>> shift & 0xff);
    for (const bytes of [[], [5, 0x4b], [2, 0x4b, 0x13, ...idBytes, 2, 8, 0, 1, 3, 1, 0, 2, 0x4f, 0x4b],
      [5, 0x4b, 0x13, 0, 0, 0, 0, 1, 1, 0, 1, 0x21]])
      await receiver.emit("SASMessage", `(@ay [${bytes.join(", ")}],)`);
    await browser.waitFor("the module is heard", () => window.said.length === 2);
    assert.deepEqual(await browser.run(() => window.said),
      [[id, "OK", 3], ["!", "urn:dvb:casystemid:19219"]]);
  });
});
