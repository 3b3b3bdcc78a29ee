// The programme guide by the keys that a viewer presses: Examples/epg, its searches, and what it leaves
// behind.
import assert from "node:assert/strict";
import { readFileSync } from "node:fs";
import { beforeEach, describe, it } from "node:test";
import { Application, documents } from "./Harness/application.mjs";
import { defaultScenario } from "./Harness/programs.mjs";
import { useTelevision } from "./Harness/suite.mjs";

const see = ({ text, texts, isOpen }) => ({
  view: isOpen("#guide") ? "guide" : "finder",
  when: text("#detail-when"),
  name: text("#detail-name"),
  channel: text("#detail-channel"),
  age: isOpen("#detail-age") ? text("#detail-age") : null,
  text: text("#detail-text"),
  day: text("#day"),
  rows: texts("#rows .channel").join("|"),
  empty: texts("#rows .empty").join("|"),
  current: texts("#rows .current").join("|"),
  entry: text("#entry"),
  found: text("#found"),
  results: texts("#results .name").join("|"),
  focused: texts("#results .focused .name").join("|"),
  message: isOpen("#message") ? text("#message") : null
});

const firstRows = "1Nordlicht 1|2Nordlicht 2|3Canal Rivage|4Kinderwelle|5Stadion Nordost";

// The titles of the scenario that contain a text, hidden channels left out.
function titlesWith(text) {
  const { broadcast } = JSON.parse(readFileSync(defaultScenario, "utf8"));
  return broadcast.channels.filter(channel => !channel.hidden).flatMap(channel => channel.programmes ?? [])
    .map(programme => programme.name).filter(name => name.toLowerCase().includes(text));
}

describe("The programme guide", () => {
  const television = useTelevision();
  const { receiver } = television;
  const guide = new Application(television, "/examples/epg/", see);
  const { look, open, press, sees } = guide;

  beforeEach(async () => {
    await receiver.resetMethods();
    await receiver.setWorld("/search", { duration_ms: 20, hours: 72 });
    await receiver.setWorld("/broadcast/current_channel", 1);
  });

  const type = text => press(...Array.from(text.toUpperCase(), letter => letter === " " ? "SPACE" : letter));

  const count = async method => (await receiver.argumentsOf(method)).length;
  const searches = method => count(`IMetaDataSearch.${method}`);

  for (const name of documents) {
    it(`shows channels, what is on and its details, as ${name}`, async () => {
      await open(name);
      await sees({ view: "guide", rows: firstRows, current: "1Nordlicht 1", name: "Evening News",
        channel: "1  Nordlicht 1 HD", age: null, text: "The day at home and abroad", day: "Today",
        when: /^\S.*, \d+:\d\d – \d+:\d\d, 45 min$/ });
      await press("DOWN", "DOWN");
      await sees({ name: "Inspector Maren", channel: "3  Canal Rivage HD", age: "from 12" });
      await press("PAGE_DOWN");
      await sees({ name: "Plenary Session", channel: "8  Parlament Live", rows: /8Parlament Live$/ });
    });
  }

  it("moves from programme to programme through the days, and asks for no more than it shows", async () => {
    await open();
    await press("RIGHT", "DOWN", "UP", "LEFT");
    await sees({ name: "Evening News" });
    assert.equal(await searches("SrItemAtIndex"), 0, "what is on the screen is known");
    for (const name of ["Weather and Tides", "The Lighthouse Keeper", "Talk after Nine", "Night Train North",
      "Around the Harbour", "Evening News", "Weather and Tides"]) {
      await press("RIGHT");
      await sees({ name, empty: "" });
    }
    await press("LEFT", "LEFT", "LEFT");
    await sees({ name: "Night Train North" });
    await press("RED");
    await sees({ name: "Evening News", text: "The day at home and abroad" });
    await press("BLUE");
    await sees({ day: "Tomorrow", rows: firstRows, empty: "" });
    await press("BLUE", "BLUE", "BLUE", "BLUE");
    await sees({ empty: Array(5).fill("No information").join("|") });
    await press("YELLOW", "YELLOW", "YELLOW", "YELLOW", "YELLOW");
    await sees({ name: "Evening News" });
  });

  it("tunes to what is on, and tells when the others begin", async () => {
    await open();
    await press("DOWN", "RIGHT", "ENTER");
    await sees({ name: "A Winter in Lisbon", text: /^Begins in \d+ min\.$/ });
    assert.equal(await count("IBroadcastPlayer.SetChannel"), 0);
    await press("LEFT", "ENTER");
    await sees({ name: "The Colour Blue", current: "2Nordlicht 2" });
    assert.equal(await receiver.getWorld("/broadcast/current_channel"), 2);
  });

  it("finds by title exactly what the television has, page by page to the end", async () => {
    await receiver.setWorld("/search/hours", 0);
    await open();
    await press("GREEN");
    await sees({ view: "finder", message: "Enter a part of the title." });
    // "e", by the keyboard on the screen.
    await press("RIGHT", "RIGHT", "RIGHT", "RIGHT", "ENTER");
    const expected = titlesWith("e");
    await sees({ entry: "e", found: `1 – 5 of ${expected.length}` });
    await press("PAGE_DOWN");
    const found = [];
    for (let offset = 0; offset < expected.length; offset += 5) {
      const last = Math.min(offset + 5, expected.length);
      await sees({ found: `${offset + 1} – ${last} of ${expected.length}` });
      found.push(...(await look()).results.split("|"));
      await press("PAGE_DOWN");
    }
    assert.deepEqual([...found].sort(), expected.sort());
    // Past the last result it stays where it is.
    await press("DOWN", "PAGE_DOWN");
    await sees({ focused: found.at(-1) });

    await press("BLUE");
    await sees({ entry: "", found: "", results: "" });
    await type("zzz");
    await sees({ entry: "zzz", message: "No programme has this in its title." });
    await press("RED", "BACK_SPACE", "BLUE");
    await type("chamber");
    await sees({ found: "1 – 1 of 1", results: "Chamber Concert" });
  });

  it("ends a search that runs when the text changes, and shows what the last text finds", async () => {
    await open();
    await press("GREEN");
    await receiver.setWorld("/search/duration_ms", 600000);
    await type("new");
    await sees({ entry: "new", found: "Searching", results: "" });
    assert.equal(await searches("AbortSearch"), 2);
    await receiver.setWorld("/search", { duration_ms: 20, hours: 0 });
    await press("S");
    const expected = titlesWith("news");
    await sees({ entry: "news", found: `1 – ${expected.length} of ${expected.length}` });
    assert.equal(await searches("AbortSearch"), 3);
    assert.deepEqual((await look()).results.split("|").sort(), expected.sort());
    // Back in the guide nobody waits any more.
    await receiver.setWorld("/search/outcome", "never");
    await press("RED");
    await sees({ found: "Searching" });
    await press("BACK");
    await sees({ view: "guide", name: "Evening News" });
    assert.equal(await searches("AbortSearch"), 4);
  });

  it("shows a result in the guide, between what comes before and after it", async () => {
    await open();
    await press("GREEN");
    await type("opera");
    // With fewer letters the results are the same, and go with the next.
    await sees({ entry: "opera", results: Array(5).fill("Opera Evening").join("|") });
    await press("PAGE_DOWN");
    await sees({ focused: "Opera Evening", channel: "102  Klassik Welle" });
    await press("ENTER");
    await sees({ view: "guide", name: "Opera Evening", channel: "102  Klassik Welle", empty: "" });
    await press("LEFT");
    await sees({ name: "Score and Story" });
  });

  it("says that a search failed, and finds again when the television does", async () => {
    await open();
    await press("GREEN");
    await type("film");
    await sees({ entry: "film", message: "No programme has this in its title." });
    await receiver.setWorld("/search/outcome", "failed");
    await press("YELLOW");
    await sees({ entry: "film", message: "The search failed. The yellow key tries again.", found: "" });
    await press("GREEN", "RED");
    await sees({ view: "guide", empty: Array(5).fill("The television could not tell").join("|") });
    await receiver.setWorld("/search/outcome", "found");
    await press("RED");
    await sees({ name: "Evening News", empty: "" });
    await receiver.fail("IMetaDataSearch.MdsAdd", "no more searches");
    await press("GREEN", "YELLOW");
    await sees({ message: "The search failed. The yellow key tries again." });
    await receiver.resetMethods();
    await press("BLUE");
    await type("red harbour");
    await sees({ message: null, results: Array(5).fill("Red Harbour").join("|") });
  });
});
