// The fault matrix: every method of the receiver's interfaces, called by a page that uses it, fails, answers late,
// answers when its page is gone, and vanishes with its service. Each time the page goes on as documented, and so
// does the next page, in the same web process, with nothing left behind. Beside it every signal in all wrong forms.
// The results stand in build/logs/fault-matrix.md.
import assert from "node:assert/strict";
import { mkdtempSync, readFileSync, readdirSync, rmSync, writeFileSync } from "node:fs";
import { tmpdir } from "node:os";
import { join, resolve } from "node:path";
import { after, before, beforeEach, describe, it } from "node:test";
import { fileURLToPath } from "node:url";
import { readInterface } from "../../gen/dbus/reference/interfaces.mjs";
import { defaultScenario } from "../Browser/Harness/programs.mjs";
import { Television } from "../Browser/Harness/television.mjs";
import { waitFor } from "../Browser/Harness/wait.mjs";
import { Matrix, writeTables } from "./matrix.mjs";
import { methods } from "./methods.mjs";

const here = fileURLToPath(new URL(".", import.meta.url));
const descriptions = resolve(here, "../../gen/dbus");
const interfaces = readdirSync(descriptions).filter(name => name.endsWith(".xml"))
  .map(name => readInterface(join(descriptions, name)));
const membersOf = kind => interfaces.flatMap(({ name, [kind]: members }) =>
  members.map(member => ({ ...member, name: `${name.split(".").pop()}.${member.name}` })));

const lateMs = 200;
const message = "out of order";

const pageScript = readFileSync(join(here, "page.js"), "utf8");
const page = `<!DOCTYPE html><html><head><script src="/pages/watch.js"></script></head><body><div id="root"></div>
<script>${pageScript}</script></body></html>`;

const megabytes = count => "x".repeat(count << 20);

// The usual world, quicker and smaller, and with long texts in it.
function writeWorld(folder) {
  const world = JSON.parse(readFileSync(defaultScenario, "utf8"));
  world.broadcast.tune_ms = 5;
  world.broadcast.channels = world.broadcast.channels.slice(0, 3);
  world.media.player = "simulated";
  world.media.connect_ms = 5;
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

// The web processes with this session bus, by their ids.
const webProcesses = bus => readdirSync("/proc").filter(pid => {
  try {
    return readFileSync(`/proc/${pid}/comm`, "utf8").startsWith("WebKitWebProces") &&
      readFileSync(`/proc/${pid}/environ`, "utf8").includes(bus);
  } catch {
    return false; // Not a process, or it has ended.
  }
}).join();

describe("Whatever the receiver does", () => {
  const faults = new Matrix(["fails", "late", "page gone", "service gone"]);
  const signals = new Matrix(["wrong type", "argument missing", "argument too many", "extreme values"]);
  let television, browser, receiver, folder, webProcess, baseline, seen;

  before(() => { folder = mkdtempSync(join(tmpdir(), "hbbtv-faults-")); });

  after(async () => {
    await television?.close();
    rmSync(folder, { recursive: true, force: true });
    writeTables(resolve(here, "../../build/logs/fault-matrix.md"), { Methods: faults, Signals: signals });
  });

  const nextPage = () => browser.open(television.server.write("matrix.html", page));
  const checkPage = async () => assert.deepEqual(await browser.runAsync(done =>
    check().then(done, error => done([`${error.name}: ${error.message}`]))), []);

  // How many native objects the page before has left, when the collector was there.
  async function left() {
    const logged = television.countsOfNativeObjects().length;
    await browser.run(() => window.__collectGarbage());
    await television.open("plain.html");
    await waitFor("the count is logged", () => television.countsOfNativeObjects().length > logged);
    return television.countsOfNativeObjects().pop();
  }

  // A television that a failed case may have left in any state is not used for the next one.
  async function start() {
    await television?.close();
    television = undefined;
    television = await Television.start({ scenario: writeWorld(folder) });
    ({ browser, receiver } = television);
    await nextPage();
    await checkPage();
    await left();
    baseline = await left();
    webProcess = webProcesses(television.workplace.env.DBUS_SESSION_BUS_ADDRESS);
    assert.match(webProcess, /^\d+$/);
    await nextPage();
    await checkPage();
  }

  beforeEach(async () => {
    if (!television)
      await start();
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

  // The page, and then the next one, with nothing of the one before.
  async function isWell(warnings = /(?!)/) {
    assert.deepEqual(await browser.run(() => window.failures), []);
    const isBack = async () => await left() <= baseline;
    await waitFor(`the native objects are back at ${baseline}`, isBack);
    await nextPage();
    await checkPage();
    await waitFor(`the web process is ${webProcess}, and no other`,
      () => webProcesses(television.workplace.env.DBUS_SESSION_BUS_ADDRESS) === webProcess);
    assert.deepEqual(lines(/CRITICAL|WARNING \*\*/).filter(line => !warnings.test(line)), []);
  }

  // One case: its outcome is noted, and a bad one costs the television.
  const one = (table, row, column, run) => it(`${row}: ${column}`, { timeout: 60000 }, async () => {
    try {
      table.note(row, column, await run() ?? "good");
    } catch (error) {
      table.note(row, column, `FAILED: ${error.message.split("\n")[0]}`);
      const broken = television;
      television = undefined;
      await broken.close();
      throw error;
    }
  });

  const ways = {
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
      await receiver.resetMethods();
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
      await nextPage();
      await receiver.resetMethods();
      // The last thing that a page did may have been to become independent of the broadcast.
      await receiver.setWorld("/broadcast/related", true);
    },
    async "service gone"(name, row) {
      await receiver.delay(name, 60000);
      const answered = perform(row.does);
      await isCalled(name);
      await receiver.stop("SIGKILL");
      const answer = await answered;
      await receiver.start();
      assert.deepEqual(answer, row.vanishes);
      await waitFor("the new one is heard", () => browser.run(() => {
        try {
          return keys().maximumValue > 0;
        } catch {
          return false;
        }
      }));
      // It knows no player of the one before, and tells no state of it.
      await browser.run(() => { video.playState = 0; });
      await checkPage();
      await works(row);
      return JSON.stringify(answer);
    }
  };

  it("there is a page for each method that the bundle calls", () => {
    const called = membersOf("methods").filter(({ doc }) => !/The bundle does\s+not call it/.test(doc));
    assert.deepEqual(Object.keys(methods).sort(), called.map(({ name }) => name).sort());
  });

  for (const [name, row] of Object.entries(methods)) {
    for (const [way, run] of Object.entries(ways)) {
      one(faults, name, way, async () => {
        await receiver.clearCalls();
        const outcome = await run(name, row);
        await isWell();
        return outcome;
      });
    }
  }

  // ---- Signals ----

  const long = "x".repeat(50000);
  // A value of each type as GVariant text, and the most extreme one.
  const kinds = {
    b: ["true", "true"], d: ["1.0", "-inf"], i: ["1", "-2147483648"], n: ["int16 1", "int16 -32768"],
    u: ["uint32 1", "uint32 4294967295"], s: ["'a'", `'${long}'`], ay: ["[byte 0]", `b'${long}'`]
  };
  const tuple = values => `(${values.join(", ")}${values.length === 1 ? "," : ""})`;
  const usual = types => types.map(type => kinds[type][0]);
  const forms = {
    "wrong type": types => usual(types).map((value, at) => types[at] === "s" ? "uint32 7" : "'seven'"),
    "argument missing": types => usual(types).slice(1),
    "argument too many": types => [...usual(types), "'one more'"],
    "extreme values": types => types.map(type => kinds[type][1])
  };
  const codesIn = ({ doc }) => doc.match(/\b[1-4]\d\d\b|\b1000\b/g) ?? [];
  const allCodes = Array.from(new Set(membersOf("signals").flatMap(codesIn)));
  // Its unpacking as another type is the contract.
  const expected = /PluginEventDrmError|g_variant_get|Dropping signal|the GVariant format string/;

  for (const { name, inputs, outputs } of membersOf("signals")) {
    const types = [...inputs, ...outputs].map(({ type }) => type);
    // There is no way to ask for a signal without any argument.
    for (const [form, make] of Object.entries(forms).filter(([, form]) => form(types).length > 0)) {
      one(signals, name, form, async () => {
        await browser.run(() => listen());
        const values = make(types);
        const isEvent = /PluginEvent/.test(name) && form === "extreme values";
        for (const each of isEvent ? allCodes.map(code => [code, ...values.slice(1)]) : [values])
          await receiver.emit(name, tuple(each));
        await receiver.emit("PluginEvent", "(400, uint32 0)");
        await browser.waitFor("the next signal is heard", () => heard.includes("LowMemory"));
        if (form !== "extreme values")
          await waitFor("it is logged", () => lines(/Dropping signal/).length > 0);
        assert.equal(lines(/Dropping signal/).length, form === "extreme values" ? 0 : 1);
        await checkPage();
        assert.equal(await perform(() => ask(`dvb://3070.3e9.65/small.js?${Math.random()}`)), "loaded");
        await isWell(expected);
      });
    }
  }

  it("texts of megabytes arrive whole", { timeout: 60000 }, async () => {
    assert.deepEqual(await perform(() => Promise.all([
      new Promise(done => {
        const agent = factory.createDrmAgentObject();
        agent.onDRMMessageResult = (id, text) => done(text.length);
        agent.sendDRMMessage("text/plain", "hello", "long");
      }),
      new Promise(done => video.addStreamEventListener("dvb://1.2.3/e", "long", event => done(event.text.length))),
      ask("dvb://3070.3e9.65/long.js")
    ])), [4 << 20, 1 << 20, "loaded"]);
    await isWell();
  });

  it("a receiver that stands still costs a page that is left half a minute at most", { timeout: 120000 }, async () => {
    await browser.driver.manage().setTimeouts({ pageLoad: 60000 });
    await perform(() => { window.kept = Array.from({ length: 66 }, () => Array.from(channels())); });
    receiver.program.kill("SIGSTOP");
    const begun = Date.now();
    await television.open("plain.html");
    const took = Date.now() - begun;
    receiver.program.kill("SIGCONT");
    await waitFor("it answers", () => receiver.getWorld("/keys"), 30000);
    await nextPage();
    await checkPage();
    await isWell();
    assert.ok(took < 30000, `${took} ms`);
  });
});
