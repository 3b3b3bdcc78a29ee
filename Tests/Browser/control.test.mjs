// hbbtv-control as a developer types it, and every command line of the documents.
import assert from "node:assert/strict";
import { execFile } from "node:child_process";
import { mkdirSync, readdirSync, readFileSync, statSync, symlinkSync, writeFileSync } from "node:fs";
import { delimiter, join } from "node:path";
import { after, before, describe, it } from "node:test";
import { startServer } from "../../Tools/Scripts/serve.mjs";
import { build, shell, sourceRoot } from "./Harness/programs.mjs";
import { useWorkplace } from "./Harness/suite.mjs";
import { waitFor } from "./Harness/wait.mjs";

const listening = `<!DOCTYPE html><html><body><div id="verdict" data-verdict="pass"></div><script>
const app = oipfObjectFactory.createApplicationManagerObject().getOwnerApplication(document);
app.privateData.keyset.setValue(1);
addEventListener("keydown", event => console.log("key", event.keyCode));
const video = oipfObjectFactory.createVideoBroadcastObject();
document.body.appendChild(video);
video.bindToCurrentChannel();
video.addStreamEventListener("dvb://current/here", "demo", event => console.log("event", event.text));
console.log("listening");
</script></body></html>`;

// A place with the programs in the PATH of its commands.
function usePrograms() {
  const place = useWorkplace();
  const { env, preload } = place.workplace;
  env.PATH = [...["Shell", "Receiver", "Control"].map(name => join(build, "Host", name)), env.PATH].join(delimiter);
  // Through bash, which starts the shells here.
  Object.assign(env, preload);
  return place;
}

// Runs a line as bash does; { code, out, err }.
function run(workplace, line) {
  return new Promise(resolve => execFile("bash", ["-c", line], { env: workplace.env, cwd: sourceRoot, timeout: 60000 },
    (error, out, err) => resolve({ code: error ? error.code ?? error.signal : 0, out: out.trim(), err: err.trim() })));
}

describe("hbbtv-control", () => {
  const { workplace, server } = usePrograms();
  let television;

  const asked = async line => {
    const { code, out, err } = await run(workplace, `hbbtv-control ${line}`);
    assert.equal(code, 0, `${line}: ${err}`);
    return out;
  };

  before(async () => {
    television = workplace.start(shell(), [server.write("listening.html", listening)]);
    await workplace.says(/LOG listening$/);
  });

  it("sets and tells values as they are typed", async () => {
    for (const [place, value, told = value] of [
      ["locale.country", "FRA"], ["/locale/ui_languages", "fra,deu"], ["clock.utc_offset_seconds", "-3600"],
      ["drm.sas_session_open", "true"], ["broadcast.channels.0.name", "Kanal Eins"],
      ["broadcast.channels.0.name", `'"3"'`, "3"], ["applications.trusted_origins", "'[]'", "[]"],
      ["search", `'{"hours": 5}'`, '{\n  "hours": 5\n}'],
    ]) {
      await asked(`set ${place} ${value}`);
      assert.equal(await asked(`get ${place}`), told);
    }
    await asked("tune 3");
    assert.equal(await asked("get broadcast.current_channel"), "3");
    assert.match(await asked("get state.views.1.url"), /listening\.html$/);
    assert.ok((await asked("places")).split("\n").includes("media.items.0.url"));
    assert.deepEqual([await asked("call GetPreferredAudioLang"), await asked("call SetKeyMask 1")],
      ["('deu,eng',)", "()"]);
  });

  it("presses keys that the key mask lets through, and sends stream events and signals", async () => {
    await asked("press GREEN red");
    await workplace.says(/LOG key 403$/);
    await asked("trigger demo Grüße from a shell");
    await workplace.says(/LOG event Grüße from a shell$/);
    assert.deepEqual(workplace.lines.flatMap(line => /LOG key (\d+)/.exec(line)?.[1] ?? []), ["403"]);
    const follower = workplace.start("hbbtv-control", ["calls", "--follow"]);
    await waitFor("a call that is followed", async () => {
      await asked("call IDAEBrowserAPI.HasCapability +DRM");
      return workplace.lines.includes("IDAEBrowserAPI.HasCapability ('+DRM',)");
    });
    await workplace.stop(follower);
    assert.match(await asked("calls"), /^IDAEBrowserAPI\.SetKeyMask \(1,\)$/m);
    await asked("fail GetCountryID no country today");
    assert.match((await run(workplace, "hbbtv-control call GetCountryID")).err, /no country today$/);
    await asked("reset");
    await asked("emit PluginEvent 400 0");
    await asked("emit DSMCC.FileResponse 1 dvb://x text 4 true");
  });

  it("says in plain words what is wrong", async () => {
    for (const [line, code, reason] of [
      ["", 2, /no command/], ["tun 3", 2, /unknown command tun/], ["tune", 2, /tune CHANNEL/],
      ["set locale.country $'\\xff'", 2, /not UTF-8/], ["set locale '{'", 2, /begins like JSON and is none/], ["delay GetCountryID soon", 2, /not a number: soon/],
      ["emit PluginEvent 400", 2, /PluginEvent event\(i\) plugin_id\(u\)/], ["emit Nothing", 2, /no signal Nothing/],
      ["call Release 1", 2, /is IB.* or /],
      ["tune 99", 1, /no channel with the id 99/], ["press RAD", 1, /no key "VK_RAD"/],
      ["set keys.msk 1", 1, /\/keys\/msk: unknown key/], ["fail Nothing", 1, /no method "Nothing"/],
      ["trigger nothing", 1, /no page listens to the stream event "nothing"/],
      ["--bus unix:path=/nowhere get", 1, /cannot connect/],
    ]) {
      const result = await run(workplace, `hbbtv-control ${line}`);
      assert.equal(result.code, code, line);
      assert.match(result.err, reason);
      assert.doesNotMatch(result.err, /GDBus/);
    }
  });

  it("tells shells apart, and forgets the ones that are gone", async () => {
    const folder = join(workplace.env.XDG_RUNTIME_DIR, "hbbtv-shell");
    const second = workplace.start(shell(), [server.url("/pages/plain.html")]);
    await waitFor("its receiver", async () => (await run(workplace, "hbbtv-control get")).code === 1);
    const { err } = await run(workplace, "hbbtv-control tune 1");
    const [, address] = new RegExp(`--bus (\\S+) +\\(process ${second.pid}\\)`).exec(err) ?? assert.fail(err);
    await waitFor("its page", async () =>
      (await run(workplace, `hbbtv-control --wait 20 --bus ${address} get state.views.1.url`)).out.endsWith("/plain.html"));
    await workplace.stop(second, "SIGKILL");
    assert.equal(await asked("get broadcast.current_channel"), "3");
    assert.deepEqual(readdirSync(folder), [String(television.pid)]);
  });

  it("is completed by bash", async () => {
    const completed = async (...words) => (await run(workplace, `source Host/Control/completion.bash
      COMP_WORDS=(hbbtv-control ${words.map(word => `'${word}'`).join(" ")}) COMP_CWORD=${words.length}
      _hbbtv_control hbbtv-control && echo "\${COMPREPLY[@]}"`)).out;
    assert.deepEqual([await completed("t"), await completed("press", "RED", "GRE"), await completed("set", "locale.c"),
      await completed("--wait", "5", "trigger", "d"), await completed("delay", "IDAEBrowserAPI.GetCou")],
    ["tune trigger", "GREEN", "locale.country", "demo", "IDAEBrowserAPI.GetCountryID"]);
  });

  it("finds nothing when the shell has ended", async () => {
    await workplace.stop(television);
    const { code, err } = await run(workplace, "hbbtv-control tune 1");
    assert.deepEqual([code, err],
      [1, "hbbtv-control: no hbbtv-shell runs, and there is no receiver on the session's bus"]);
  });
});

const table = `<ServiceDiscovery xmlns="urn:dvb:mhp:2009" xmlns:xsi="http://www.w3.org/2001/XMLSchema-instance">
<ApplicationDiscovery DomainName="my.app"><ApplicationList><Application><appName Language="eng">Mine</appName>
<applicationIdentifier><orgId>1</orgId><appId>1</appId></applicationIdentifier>
<applicationDescriptor><type><OtherApp>application/vnd.hbbtv.xhtml+xml</OtherApp></type>
<controlCode>AUTOSTART</controlCode><priority>01</priority></applicationDescriptor>
<applicationTransport xsi:type="HTTPTransportType"><URLBase></URLBase></applicationTransport>
<applicationLocation>index.html</applicationLocation></Application></ApplicationList></ApplicationDiscovery></ServiceDiscovery>`;

// The command lines of all documents, with what is a person's own replaced: the folder and the server of a page.
function documentedCommands() {
  const documents = readdirSync(sourceRoot).filter(name => !/^(\.|build$|node_modules$)/.test(name)).flatMap(name =>
    statSync(join(sourceRoot, name)).isFile() ? name
      : readdirSync(join(sourceRoot, name), { recursive: true }).map(file => join(name, file))).filter(file => file.endsWith(".md"));
  return documents.flatMap(document => {
    const text = readFileSync(join(sourceRoot, document), "utf8").replace(/ *\\\n */g, " ");
    return [...text.matchAll(/^ {4}((?:xvfb-run -a )?hbbtv-(?:control|shell) .*)$/gm)]
      .map(([, line]) => ({ document, line })).filter(({ line }) => !line.includes("[OPTION"));
  });
}

describe("The documents", () => {
  // Each starts a whole shell, one after another.
  const slow = 60000;
  const { workplace } = usePrograms();
  let server;

  before(async () => {
    const folder = join(workplace.env.HOME, "my-app");
    mkdirSync(folder);
    writeFileSync(join(folder, "index.html"), listening);
    writeFileSync(join(folder, "application.aitx"), table);
    symlinkSync(join(sourceRoot, "Examples"), join(workplace.env.HOME, "Examples"));
    server = await startServer(folder, { mounts: { player: join(sourceRoot, "Examples/player") } });
  });

  after(() => server?.close());

  const here = line => line.replace(/https?:\/\/(localhost:8080|example\.org\/my-app)\//, server.url);

  async function showsAPage(line) {
    const start = workplace.lines.length;
    const program = workplace.start("bash", ["-c", `cd "$HOME" && exec ${here(line)}`]);
    await waitFor("a page", async () => (await run(workplace, "hbbtv-control get state.views.1.url")).out, slow);
    await waitFor("its script", () => workplace.lines.slice(start).some(told => /\[bootstrap\]/.test(told)), slow);
    await workplace.stop(program);
    assert.doesNotMatch(workplace.lines.slice(start).join("\n"), /^hbbtv-shell: (?!to look behind)/m, line);
  }

  it("print command lines that work", async () => {
    const all = documentedCommands();
    const shells = all.filter(({ line }) => line.includes("hbbtv-shell"));
    assert.ok(shells.length > 3 && all.length > 30, `${shells.length} of ${all.length}`);
    for (const { document, line } of shells) {
      if (!line.includes("--exit-after-load"))
        await showsAPage(line);
      else
        assert.equal((await run(workplace, `cd "$HOME" && ${here(line)}`)).code, 0, document);
    }
    const television = workplace.start(shell(), [`${server.url}index.html`]);
    await workplace.says(/LOG listening$/, slow);
    for (const { document, line } of all.filter(each => !shells.includes(each))) {
      const endless = line.includes("--follow") ? "timeout 1 " : "";
      const { code, err } = await run(workplace, endless + line);
      assert.equal(code, endless ? 124 : 0, `${document}: ${line}: ${err}`);
    }
    await workplace.stop(television);
  });
});
