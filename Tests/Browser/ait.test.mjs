// Applications that are signalled by a table: the broadcast's own, with the keys of the keyboard, and others.
import assert from "node:assert/strict";
import { writeFileSync } from "node:fs";
import { join } from "node:path";
import { afterEach, before, describe, it } from "node:test";
import { exitAfterLoad, shell } from "./Harness/programs.mjs";
import { Receiver } from "./Harness/receiver.mjs";
import { useWorkplace } from "./Harness/suite.mjs";
import { waitFor } from "./Harness/wait.mjs";

const application = (id, control, location, { profile = "0", version = "2", boundary = "", base = "" } = {}) => `<mhp:Application>
<mhp:appName Language="eng">Number ${id}</mhp:appName>
<mhp:applicationIdentifier><mhp:orgId>19</mhp:orgId><mhp:appId>${id}</mhp:appId></mhp:applicationIdentifier>
<mhp:applicationDescriptor><mhp:type><mhp:OtherApp>application/vnd.hbbtv.xhtml+xml</mhp:OtherApp></mhp:type>
<mhp:controlCode>${control}</mhp:controlCode><mhp:priority>0A</mhp:priority>
<mhp:mhpVersion><mhp:profile>${profile}</mhp:profile><mhp:versionMajor>1</mhp:versionMajor>
<mhp:versionMinor>${version}</mhp:versionMinor><mhp:versionMicro>1</mhp:versionMicro></mhp:mhpVersion>
</mhp:applicationDescriptor>
<mhp:applicationTransport xsi:type="mhp:HTTPTransportType"><mhp:URLBase>${base}</mhp:URLBase></mhp:applicationTransport>
<mhp:applicationLocation>${location}</mhp:applicationLocation>
${boundary && `<mhp:applicationBoundary><mhp:BoundaryExtension>${boundary}</mhp:BoundaryExtension></mhp:applicationBoundary>`}
</mhp:Application>`;

const table = (...applications) => `<?xml version="1.0" encoding="UTF-8"?>
<mhp:ServiceDiscovery xmlns:mhp="urn:dvb:mhp:2009" xmlns:xsi="http://www.w3.org/2001/XMLSchema-instance">
<mhp:ApplicationDiscovery DomainName="test.invalid"><mhp:ApplicationList>${applications.join("")}
</mhp:ApplicationList></mhp:ApplicationDiscovery></mhp:ServiceDiscovery>`;

// Red starts another application; tells on the terminal where it is, once it would hear the key.
const page = `<!DOCTYPE html><html><head><script>
var owner = oipfObjectFactory.createApplicationManagerObject().getOwnerApplication(document);
owner.privateData.keyset.setValue(1);
document.addEventListener("keydown", function () { owner.createApplication("/written/other.aitx?c#d", false); });
console.log("runs " + location);
</script></head><body></body></html>`;

describe("An application of a table", () => {
  const { workplace, server } = useWorkplace();
  const receiver = new Receiver(workplace);
  let program;

  before(() => {
    for (const name of ["auto", "present", "other"])
      server.write(`${name}.html`, page);
  });

  afterEach(() => workplace.stop(program));

  const run = (...args) => {
    workplace.lines.length = 0;
    program = workplace.start(shell(), ["--session-bus", ...args]);
  };
  // The addresses at which applications have begun, in order.
  const begun = () => workplace.lines.map(line => /CONSOLE LOG runs (.*)$/.exec(line)?.[1]).filter(Boolean);
  const begins = async (...paths) => {
    const expected = paths.map(path => server.url(`/written/${path}`));
    // A shell may have to start first.
    await waitFor(`begun: ${expected}`, () => begun().length >= expected.length, 60000)
      .catch(error => assert.deepEqual(begun(), expected, error.message));
    assert.deepEqual(begun(), expected);
  };

  it("begins by itself, starts another one by its table, and begins again with EXIT", async () => {
    const allowed = "https://allowed.invalid/x/";
    server.write("other.aitx", table(application(7, "PRESENT", "other.html?b", { base: `${server.origin}/written/`, boundary: allowed })));
    run("--profile", "1.2.1+PVR", "--ait", server.write("broadcast.aitx", table(
      application(1, "AUTOSTART", "new.html", { version: "3" }), application(2, "PRESENT", "present.html"),
      application(3, "AUTOSTART", "new.html", { profile: "0003" }),
      application(31, "AUTOSTART", "auto.html?a#x", { profile: "0002" }))));
    await begins("auto.html?a#x");
    assert.ok(workplace.lines.some(line => /13\.1 \(Number 1\) does not run: it is for .* 1\.3\.1/.test(line)));
    assert.ok(workplace.lines.some(line => /13\.3 .*: it is for the profile 3 of .* is of 1\.2\.1\+PVR/.test(line)));
    assert.deepEqual((await receiver.getWorld("/applications/broadcast")).map(({ id }) => id), ["13.1f", "13.2"]);

    await workplace.pressOnScreen("F1");
    await begins("auto.html?a#x", "other.html?b&c#d");
    assert.deepEqual(await receiver.getWorld("/applications/boundary_origins"), ["https://allowed.invalid:443"]);

    await workplace.pressOnScreen("shift+Escape");
    await begins("auto.html?a#x", "other.html?b&c#d", "auto.html?a#x");
    assert.deepEqual(Object.keys(await receiver.getWorld("/state/views")), ["1"]);
    assert.deepEqual(await receiver.getWorld("/applications/boundary_origins"), []);
  });

  it("waits for the red key where it is only present, once more after EXIT", async () => {
    const scenario = join(workplace.env.HOME, "bare.json");
    writeFileSync(scenario, "{}");
    run("--scenario", scenario, "--ait", server.write("present.xml", table(application(2, "PRESENT", "present.html"))));
    await waitFor("red starts it", async () => {
      await workplace.pressOnScreen("F1");
      return begun().length > 0;
    }, 60000);
    await workplace.pressOnScreen("shift+Escape");
    await waitFor("red starts it again", async () => {
      await workplace.pressOnScreen("F1");
      return begun().length === 2;
    });
    await begins("present.html", "present.html");
    assert.deepEqual(workplace.lines.filter(line => line.includes("the receiver refused")), []);
  });

  it("is no use where the television has another profile, or the table is none", async () => {
    for (const [name, body, words, ...option] of [
      ["none.aitx", table(application(1, "AUTOSTART", "new.html", { version: "3" })),
        /none\.aitx: .*13\.1 .*this television is of 1\.2\.1/],
      ["none.aitx", table(), /none\.aitx: .*the AIT is empty/],
      ["none.aitx", "<html>", /none\.aitx: .*this is no AIT/],
      ["none.aitx", table(application(1, "PRESENT", "present.html")),
        /none\.aitx: .*no application has AUTOSTART/, "--ait"],
      ["page.html", "<script>console.log('runs as a page');</script>",
        /page\.html: this is no AIT but a page: text\/html/, "--ait"],
      ["gone.aitx", table(application(1, "AUTOSTART", "nowhere.html")), /nowhere\.html: .*404/, "--ait"]
    ]) {
      workplace.lines.length = 0;
      const args = ["--session-bus", ...exitAfterLoad, ...option, server.write(name, body)];
      const { code, lines } = await workplace.run(shell(), args);
      assert.equal(code, 1);
      assert.match(lines.find(line => line.startsWith("hbbtv-shell: view 1: cannot show http:")) ?? "", words);
      assert.deepEqual(begun(), []);
    }
    const file = join(workplace.env.HOME, "old.aitx");
    writeFileSync(file, table(application(1, "PRESENT", server.url("/written/auto.html"))));
    assert.equal((await workplace.run(shell(), ["--session-bus", ...exitAfterLoad, file])).code, 0);
    await begins("auto.html");
  });
});
