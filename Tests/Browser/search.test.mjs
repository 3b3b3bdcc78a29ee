// The search manager and the DRM agent as elements of a page: objects that wait for the receiver, and leave
// nothing there when their page goes.
import assert from "node:assert/strict";
import { after, before, beforeEach, describe, it } from "node:test";
import { Television } from "./Harness/television.mjs";
import { waitFor } from "./Harness/wait.mjs";

const [finished, idle, failed] = [0, 3, 4];

const page = `<!DOCTYPE html><html><head><script src="/pages/watch.js"></script></head><body>
<object id="manager" type="application/oipfSearchManager"></object>
<object id="agent" type="application/oipfDrmAgent"></object><script>
var manager = document.getElementById("manager"), agent = document.getElementById("agent");
window.heard = [];
manager.onMetadataSearch = function (search, state) { window.heard.push([search === window.search, state]); };
function searchFor(text) {
  window.search = manager.createSearch(1);
  search.setQuery(search.createQuery("Programme.name", 6, text));
  return search;
}
</script></body></html>`;

describe("A page that searches", () => {
  let television, browser, receiver;

  before(async () => {
    television = await Television.start();
    ({ browser, receiver } = television);
  });

  after(() => television?.close());

  beforeEach(async () => {
    await receiver.setWorld("/search", { duration_ms: 20 });
    await television.show("search.html", page);
    await receiver.clearCalls();
  });

  const hears = (...states) => browser.waitFor(`states ${states}`,
    wanted => window.heard.map(([, state]) => state).join() === wanted, states.join());

  const count = async method => (await receiver.argumentsOf(`IMetaDataSearch.${method}`)).length;

  it("finds programmes through the element, by title and by channel", async () => {
    await browser.run(() => {
      searchFor("news").result.getResults(0, 10);
      manager.addEventListener("MetadataSearch",
        event => window.heard.push([event.search === search, event.state]));
    });
    await hears(finished, finished);
    assert.deepEqual(await browser.run(() => window.heard), [[true, finished], [true, finished]]);
    const titles = await browser.run(() => Array.from(search.result, programme => programme.name));
    assert.ok(titles.length > 0 && titles.every(title => /news/i.test(title)), titles.join());
    assert.equal(await browser.run(() => search.result[search.result.length]), null);

    const ccid = await browser.run(() => {
      window.heard = [];
      const channel = manager.getChannelConfig().channelList.item(0);
      search.findProgrammesFromStream(channel, null, 2);
      search.result.getResults(0, 10);
      return channel.ccid;
    });
    await hears(idle, idle, finished, finished);
    assert.deepEqual(await browser.run(() => Array.from(search.result, ({ channelID }) => channelID)),
      [ccid, ccid]);
    assert.ok(await browser.run(() => search.result[0].startTime < search.result[1].startTime));
  });

  it("takes nothing along when it leaves in the middle of a search", async () => {
    await receiver.setWorld("/search/duration_ms", 600000);
    await browser.run(() => searchFor("news").result.getResults(0, 10));
    await waitFor("the receiver is asked", async () => (await count("SrQueryResults")) > 0);
    await television.open("plain.html");
    await waitFor("all is released", async () => (await count("MdsRelease")) > 0);
    assert.equal(await count("CancelSearch"), 1);
    for (const cache of ["Mds", "Qc", "Sr"])
      assert.equal(await count(`${cache}Retain`), await count(`${cache}Release`), cache);
    const state = await receiver.getWorld("/state");
    assert.deepEqual([state.searches, state.queries, state.search_results], [0, 0, 0]);
  });

  it("tells a handler that came late of the end, of a failure and of the next success", async () => {
    await browser.run(() => {
      window.handler = manager.onMetadataSearch;
      manager.onMetadataSearch = null;
      searchFor("news").result.getResults(0, 1);
      manager.onMetadataSearch = window.handler;
    });
    await hears(finished);
    await receiver.setWorld("/search/outcome", "failed");
    await browser.run(() => search.setQuery(search.createQuery("Programme.name", 6, "ferry")));
    await browser.run(() => search.result.getResults(0, 5));
    await hears(finished, idle, failed);
    assert.deepEqual(await browser.run(() => [search.result.length, search.result.totalSize,
      search.result[0] === undefined]), [0, 0, true]);
    await receiver.setWorld("/search/outcome", "found");
    await browser.run(() => search.result.getResults(0, 5));
    await hears(finished, idle, failed, finished);
    assert.deepEqual(await browser.run(() => Array.from(search.result, ({ name }) => name)), ["The Last Ferry"]);
    await browser.run(() => search.result.getResults(5, 5));
    await hears(finished, idle, failed, finished, finished);
    assert.deepEqual(await browser.run(() => [search.result.length, search.result.offset,
      search.result.totalSize, search.result.item(0) === undefined]), [0, 5, 1, true]);
  });

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
