// The fault matrix: every method of the receiver's interfaces, called by a page that uses it, fails, answers late,
// answers when its page is gone, and vanishes with its service. Each time the page goes on as documented, and so
// does the next page, in the same web process, and nothing is left behind. Beside it every signal of a wrong type and
// oversized. The results stand in build/logs/fault-matrix.md. Two televisions share the work.
import assert from "node:assert/strict";
import { mkdirSync, mkdtempSync, readFileSync, readdirSync, rmSync, writeFileSync } from "node:fs";
import { tmpdir } from "node:os";
import { dirname, join, resolve } from "node:path";
import { after, before, beforeEach, describe, it } from "node:test";
import { fileURLToPath } from "node:url";
import { readInterface } from "../../gen/dbus/reference/interfaces.mjs";
import { defaultScenario } from "../Browser/Harness/programs.mjs";
import { Television } from "../Browser/Harness/television.mjs";
import { waitFor } from "../Browser/Harness/wait.mjs";
import { methods } from "./methods.mjs";

const here = fileURLToPath(new URL(".", import.meta.url));
const descriptions = resolve(here, "../../gen/dbus");
const interfaces = readdirSync(descriptions).filter(name => name.endsWith(".xml"))
  .map(name => readInterface(join(descriptions, name)));
const membersOf = kind => interfaces.flatMap(({ name, [kind]: members }) =>
  members.map(member => ({ ...member, name: `${name.split(".").pop()}.${member.name}` })));
const signals = membersOf("signals");

const lateMs = 200;
const message = "out of order";

const pageScript = readFileSync(join(here, "page.js"), "utf8");
const page = `<!DOCTYPE html><html><head><script src="/pages/watch.js"></script></head><body><div id="root"></div>
<script>${pageScript}</script></body></html>`;

const megabytes = count => "x".repeat(count << 20);

// The usual world, quicker and smaller, and with long texts in it.
function writeWorld(folder) {
  const world = JSON.parse(readFileSync(defaultScenario, "utf8"));
  Object.assign(world.broadcast, { tune_ms: 5, channels: world.broadcast.channels.slice(0, 3) });
  Object.assign(world.media, { player: "simulated", connect_ms: 5 });
  world.drm.sas_session_open = true;
  world.drm.systems.push({ id: "long", result_code: 0, result_message: megabytes(4), reply_ms: 0 });
  world.stream_events = [{ url: "dvb://*", name: "quick", event_id: 8, period_ms: 20, text: "now" },
    { url: "dvb://*", name: "long", event_id: 9, period_ms: 300, text: megabytes(1) }];
  world.search.duration_ms = 1;
  world.carousel = { folder, reply_ms: 0 };
  writeFileSync(join(folder, "small.js"), "");
  writeFileSync(join(folder, "long.js"), `//${megabytes(8)}`);
  writeFileSync(join(folder, "world.json"), JSON.stringify(world));
  return join(folder, "world.json");
}

// The most extreme value of each type, as GVariant text.
const long = "x".repeat(50000);
const kinds = {
  b: "true", d: "-inf", i: "-2147483648", n: "int16 -32768", u: "uint32 4294967295", s: `'${long}'`, ay: `b'${long}'`
};
const forms = {
  "wrong type": types => types.map(type => type === "s" ? "uint32 7" : "'seven'"),
  oversized: types => types.map(type => kinds[type])
};
const allCodes = Array.from(new Set(signals.flatMap(({ doc }) => doc.match(/\b[1-4]\d\d\b|\b1000\b/g) ?? [])));

const ways = ["fails", "late", "page gone", "service gone"];

const report = resolve(here, "../../build/logs/fault-matrix.md");
mkdirSync(dirname(report), { recursive: true });

// What became of each row under each column, as people read it.
const outcomes = { Methods: {}, Signals: {} };
function tell([title, rows]) {
  const columns = [...title === "Methods" ? ways : Object.keys(forms), "afterwards"];
  const line = (name, say) => `| ${[name, ...columns.map(say)].join(" | ")} |`;
  const count = isFailed => column => Object.values(rows)
    .filter(({ [column]: outcome }) => outcome?.startsWith("FAILED") === isFailed).length;
  return [`# ${title}\n`, line("", column => column), line("---", () => "---"),
    ...Object.keys(rows).sort().map(name => line(name, column => rows[name][column] ?? "")),
    line("**good**", count(false)), line("**failed**", count(true)), ""].join("\n");
}

// One of the two televisions, and what becomes of pages on it.
function tries(turn) {
  const mine = all => all.filter((_, at) => at % 2 === turn);
  let television, browser, receiver, folder, baseline, seen;

  before(() => { folder = mkdtempSync(join(tmpdir(), "hbbtv-faults-")); });

  after(async () => {
    await television?.close();
    rmSync(folder, { recursive: true, force: true });
  });

  const checkPage = async () => assert.deepEqual(await browser.runAsync(done =>
    check().then(done, error => done([`${error.name}: ${error.message}`]))), []);

  // The page that is left has noticed nothing.
  const noticesNothing = async () => assert.deepEqual(await browser.run(() => window.failures ?? []), []);

  async function open(path) {
    await noticesNothing();
    await browser.open(television.server.url(path));
  }

  // How many native objects the page before has left.
  async function left() {
    await noticesNothing();
    return television.nativeObjectsLeft();
  }

  // The last thing that a page did may have been to become independent of the broadcast, and a channel that its player
  // was still tuning to goes with the player: the viewer chooses one again.
  async function nextPage() {
    await receiver.setWorld("/broadcast/current_channel", 1);
    await receiver.setWorld("/broadcast/related", true);
    await open(television.server.write("matrix.html", page));
    await checkPage();
  }

  // A television that a failed case may have left in any state is not used for the next one.
  beforeEach(async () => {
    if (baseline === undefined) {
      await television?.close();
      television = await Television.start({ scenario: writeWorld(folder) });
      ({ browser, receiver } = television);
      await nextPage();
      await left();
      baseline = await left();
      await nextPage();
    }
    seen = television.workplace.lines.length;
  });

  const lines = pattern => television.workplace.lines.slice(seen).filter(line => pattern.test(line));
  const perform = action => browser.runAsync((text, done) => perform(eval(`(${text})`)).then(done), `${action}`);

  async function callsOf(method) {
    const names = (await receiver.calls()).map(([name]) => name);
    assert.deepEqual(names.filter(name => !(name in methods)), [], "the description says that it is not called");
    return names.filter(name => name === method).length;
  }
  const isCalled = method => waitFor(`${method} is called`, () => callsOf(method));

  async function works({ does, works: expected }) {
    const answer = await perform(does);
    if (typeof expected === "function")
      await browser.waitFor(`it is so: ${expected}`, expected);
    else
      assert.deepEqual(answer, expected, "when it works");
  }

  // Nothing is left of the page, and the next one works. That a web process has ended is a warning of the shell.
  async function isWell(warnings = /(?!)/) {
    await waitFor(`the native objects are back at ${baseline}`, async () => await left() <= baseline);
    await nextPage();
    assert.deepEqual(lines(/CRITICAL|WARNING \*\*/).filter(line => !warnings.test(line)), []);
  }

  // What is tried one after the other, each on a new page, and what became of it; what fails costs the television.
  const one = (table, row, steps) => it(row, { timeout: 120000 }, async () => {
    const noted = table[row] = {};
    for (const [column, run] of Object.entries(steps)) {
      try {
        noted[column] = await run() ?? "good";
        if (column !== "afterwards")
          await nextPage();
      } catch (error) {
        noted[column] = `FAILED: ${error.message.split("\n")[0]}`;
        baseline = undefined;
        error.message = `${column}: ${error.message}`;
        throw error;
      } finally {
        writeFileSync(report, Object.entries(outcomes).map(tell).join("\n"));
      }
    }
  });

  const faults = {
    async fails(name, row) {
      await receiver.fail(name, message);
      const answer = await perform(row.does);
      await isCalled(name);
      assert.deepEqual(answer, row.fails);
      await receiver.resetMethods();
      const calls = await callsOf(name);
      await waitFor("each failure is logged", () => lines(new RegExp(message)).length >= calls);
      assert.equal(lines(new RegExp(message)).length, calls, "each failure is one line");
      await works(row);
      return JSON.stringify(answer);
    },
    async late(name, row) {
      await receiver.delay(name, lateMs);
      await works(row);
      await isCalled(name);
    },
    // Leaves while the page waits, which asks once more as it goes.
    async "page gone"(name, row) {
      await receiver.delay(name, lateMs);
      await browser.run(text => {
        const action = () => perform(eval(`(${text})`));
        setTimeout(action);
        window.addEventListener("pagehide", action);
      }, `${row.does}`);
      await isCalled(name);
      await open("/pages/plain.html");
    },
    async "service gone"(name, row) {
      await receiver.delay(name, 60000);
      const answered = perform(row.does);
      await isCalled(name);
      await receiver.stop("SIGKILL");
      const answer = await answered;
      await receiver.start();
      assert.deepEqual(answer, row.vanishes);
      await waitFor("the new one is heard", async () => await perform(() => keys().maximumValue) > 0);
      // It knows no player of the one before, and tells no state of it.
      await browser.run(() => { video.playState = 0; });
      await checkPage();
      await works(row);
      return JSON.stringify(answer);
    }
  };

  for (const { name, inputs, outputs } of mine(signals)) {
    const steps = Object.entries(forms).map(([form, make]) => [form, async () => {
      await browser.run(() => listen());
      const [first, ...rest] = make([...inputs, ...outputs].map(({ type }) => type));
      for (const each of form === "oversized" && /PluginEvent/.test(name) ? allCodes : [first])
        await receiver.emit(name, `(${each}, ${rest.join(", ")})`);
      await receiver.emit("PluginEvent", "(400, uint32 0)");
      await browser.waitFor("the next signal is heard", () => heard.includes("LowMemory"));
      await checkPage();
      assert.equal(await perform(() => ask(`dvb://3070.3e9.65/small.js?${Math.random()}`)), "loaded");
      await waitFor("one of them is refused", () => lines(/ refused: /).length === 1);
    }]);
    // Its unpacking as another type is the contract.
    const afterwards = () => isWell(/PluginEventDrmError|g_variant_get|the GVariant format string/);
    one(outcomes.Signals, name, { ...Object.fromEntries(steps), afterwards });
  }

  for (const [name, row] of mine(Object.entries(methods))) {
    one(outcomes.Methods, name, {
      ...Object.fromEntries(ways.map(way => [way, async () => {
        await receiver.clearCalls();
        const outcome = await faults[way](name, row);
        await receiver.resetMethods();
        return outcome;
      }])),
      afterwards: () => isWell()
    });
  }

  if (turn !== 0)
    return;

  it("texts of a megabyte and files of more arrive whole, longer texts not at all", { timeout: 60000 }, async () => {
    assert.deepEqual(await perform(() => {
      factory.createDrmAgentObject().sendDRMMessage("text/plain", "hello", "long");
      return Promise.all([ask("dvb://3070.3e9.65/long.js"), new Promise(done =>
        video.addStreamEventListener("dvb://1.2.3/e", "long", event => done(event.text.length)))]);
    }), ["loaded", 1 << 20]);
    await waitFor("the refusal is logged", () => lines(/ refused: a text of 4194304 bytes/).length === 1);
    await isWell();
  });

  it("a receiver that stands still costs a page that is left half a minute at most", { timeout: 120000 }, async () => {
    await browser.driver.manage().setTimeouts({ pageLoad: 60000 });
    await perform(() => { window.kept = Array.from({ length: 66 }, () => Array.from(channels())); });
    receiver.program.kill("SIGSTOP");
    const begun = Date.now();
    await open("/pages/plain.html");
    const took = Date.now() - begun;
    receiver.program.kill("SIGCONT");
    await waitFor("it answers", () => receiver.getWorld("/keys"), 30000);
    await nextPage();
    await isWell();
    assert.ok(took < 30000, `${took} ms`);
  });
}

describe("Whatever the receiver does", { concurrency: 2 }, () => {
  it("there is a page for each method that the bundle calls", () => {
    const called = membersOf("methods").filter(({ doc }) => !/The bundle does\s+not call it/.test(doc));
    assert.deepEqual(Object.keys(methods).sort(), called.map(({ name }) => name).sort());
  });

  for (const turn of [0, 1])
    describe(`pages go on, ${turn + 1} of 2`, { concurrency: 1 }, () => tries(turn));
});
