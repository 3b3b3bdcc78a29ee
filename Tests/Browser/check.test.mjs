// hbbtv-check-middleware: what it says of a receiver that is right, of one in part, and of broken ones.
import assert from "node:assert/strict";
import { readFileSync } from "node:fs";
import { join } from "node:path";
import { describe, it } from "node:test";
import { checker, shell, sourceRoot } from "./Harness/programs.mjs";
import { Receiver } from "./Harness/receiver.mjs";
import { useWorkplace } from "./Harness/suite.mjs";
import { slowness, waitFor } from "./Harness/wait.mjs";

describe("The check of a middleware", () => {
  const claimed = ["IDAEBrowserAPI", "IBroadcastPlayer", "IJSChannelCache"];
  // Of the default scenario.
  const told = ["--media", "http://media.invalid/short.mp4", "--stream-event", "demo@dvb://current/check",
    "--file", "dvb://3070.3e9.65/zapper/zapper.js"];
  const { workplace } = useWorkplace();

  // Exit code, and the lines by verdict, as "name: reason".
  async function check(...args) {
    const { code, lines } = await workplace.run(checker(), args);
    const told = { code, PASS: [], FAIL: [], SKIP: [] };
    for (const line of lines) {
      const found = /^ {2}(PASS|FAIL|SKIP) {2}(.*?) {2,}(.*)$/.exec(line);
      if (found)
        told[found[1]].push(`${found[2]}: ${found[3]}`);
    }
    return told;
  }

  async function withMiddleware(program, args, look) {
    const start = workplace.lines.length;
    const middleware = workplace.start(join(sourceRoot, program), args);
    await waitFor("its names", () =>
      workplace.lines.slice(start).filter(line => /^middleware: org/.test(line)).length === claimed.length);
    await look().finally(() => workplace.stop(middleware));
  }

  it("passes the receiver, writes it down, and names the methods that fail or are late", async t => {
    const receiver = new Receiver(workplace);
    t.after(() => receiver.stop());
    await receiver.start();
    const [junit, html] = ["check.xml", "check.html"].map(name => join(workplace.env.HOME, name));
    const world = pointer => receiver.getWorld(pointer);
    const before = [await world("/broadcast/current_channel"), await world("/keys/mask")];
    const { code, PASS, FAIL, SKIP } = await check(...told, "--shell", shell(), "--junit", junit, "--html", html);
    assert.deepEqual([code, FAIL], [0, []]);
    // Signals that nothing in a check causes.
    assert.deepEqual(SKIP.map(line => line.split(":")[0]),
      ["IDAEBrowserAPI.PluginEvent", "IDAEBrowserAPI.PluginEventDrmError", "IDAEBrowserAPI.SASMessage"]);
    assert.equal(PASS.filter(line => /^A page sees /.test(line)).length, 9, PASS.join("\n"));
    assert.deepEqual([await world("/broadcast/current_channel"), await world("/keys/mask")], before, "all is as it was");
    const cases = readFileSync(junit, "utf8").match(/<testcase /g).length;
    assert.equal(cases, PASS.length + SKIP.length);
    assert.ok(cases > 121, "every method is a case of its own");
    assert.match(readFileSync(html, "utf8"), /<code>IMetaDataSearch\.PcGet<\/code><td class=n>\d+<td class=n>[\d.]+ ms/);

    await receiver.fail("IDAEBrowserAPI.GetCountryID", "no </message> & none");
    await receiver.delay("IMetaDataSearch.QcRetain", 1500 * slowness);
    const broken = await check("--junit", junit, "--html", html, "--limit", String(slowness), "--shell", "/bin/false");
    assert.equal(broken.code, 1);
    assert.ok(broken.FAIL.includes("A page is shown: it says nothing"));
    const names = broken.FAIL.map(line => line.split(":")[0]);
    assert.deepEqual(names.filter(name => name.includes(".")), ["IDAEBrowserAPI.GetCountryID", "IMetaDataSearch.QcRetain"]);
    assert.ok(broken.FAIL.every(line => /no <\/message>|QcRetain.*no answer within|says nothing/.test(line)), broken.FAIL.join("\n"));
    assert.match(readFileSync(junit, "utf8"), /name="IDAEBrowserAPI.GetCountryID"[^>]*><failure message="[^"]*no &lt;\/message&gt; &amp; none"/);
  });

  it("passes what the middleware in Python claims, and misses what it does not", () =>
    withMiddleware("Examples/middleware/middleware.py", [], async () => {
      const { code, PASS, FAIL } = await check(...claimed.flatMap(name => ["--only", name]));
      assert.deepEqual([code, FAIL], [0, []]);
      assert.ok(PASS.some(line => line.startsWith("A zap is told and presented: to channel")), PASS.join("\n"));
      assert.ok(!PASS.some(line => /odd ones answered with an error/.test(line)), PASS.join("\n"));
      const all = await check("--limit", "1");
      assert.equal(all.code, 1);
      assert.deepEqual(all.FAIL.map(line => line.split(":")[0]), ["IAVEventHandler", "IMetaDataSearch", "DSMCC"]);
    }));

  for (const [fault, expected] of Object.entries({
    "signal-type": /IDAEBrowserAPI\.PluginEventData: PluginEventData\(101, \d+, 1\) is \(iui\), not \(iuii\)/,
    "signal-order": /A zap is told and presented: PluginEventData\(101, \d+, 1, 1000\) came, which does not belong there[^]*A page sees a bind: expected .* heard .*PlayStateChange 1 undefined$/m,
    "unknown-channel": /A failed zap is told: PluginEventData\(100, \d+, \*, \*\) did not come/,
    "crash": /^IDAEBrowserAPI\.HasCapability: \(\d+ bytes\): the middleware has left the bus$/,
    "capabilities": /Capabilities are XML for a script: GetXmlCapabilities has a quotation mark/
  })) {
    it(`names what is wrong with ${fault}`, () => withMiddleware("Tests/Browser/broken-middleware.py", [fault], async () => {
      const { code, FAIL } = await check("--only", claimed.join(), "--limit", "2", ...fault === "signal-order" ? ["--shell", shell()] : []);
      assert.equal(code, 1);
      assert.match(FAIL.join("\n"), expected);
    }));
  }

  it("refuses a bad command line, a file that it cannot write, and a bus that is not there", async () => {
    for (const args of [["--only", "Nothing"], ["--limit", "0"], ["--html", "/no/such/file"], ["--stream-event", "x"], ["x"]])
      assert.equal((await check(...args)).code, 2, args.join(" "));
    const bus = workplace.env.DBUS_SESSION_BUS_ADDRESS;
    workplace.env.DBUS_SESSION_BUS_ADDRESS = "unix:path=/nowhere";
    assert.equal((await check()).code, 2);
    workplace.env.DBUS_SESSION_BUS_ADDRESS = bus;
  });
});
