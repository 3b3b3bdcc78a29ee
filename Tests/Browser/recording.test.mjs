// hbbtv-shell --record: what is in the page that it writes, and the page as people use it, in WebKit.
import assert from "node:assert/strict";
import { execFile } from "node:child_process";
import { existsSync, readFileSync } from "node:fs";
import { join } from "node:path";
import { afterEach, before, describe, it } from "node:test";
import { promisify } from "node:util";
import { Key } from "selenium-webdriver";
import { Application } from "./Harness/application.mjs";
import { Browser } from "./Harness/browser.mjs";
import { miniBrowser, shell } from "./Harness/programs.mjs";
import { useTelevision } from "./Harness/suite.mjs";
import { waitFor } from "./Harness/wait.mjs";

const hostile = "</script><script>window.broken = true</script><img src=x onerror='broken = true'>\"\\ \u2028 <!--";

describe("A recording", () => {
  const television = useTelevision();
  const { receiver, server, workplace } = television;
  const zapper = new Application(television, "/examples/zapper/", ({ text }) =>
    ({ state: text("#state"), channel: text("#channel-number") }));
  const browser = new Browser(workplace, miniBrowser());

  // Opens what a shell that has ended has recorded.
  async function openRecording(file) {
    await waitFor("the page is written", () => existsSync(file) && readFileSync(file, "utf8").trimEnd().endsWith("</html>"), 60000);
    await browser.begin();
    await browser.open(`file://${file}`);
  }

  // What of the entries are shown in which all the words are.
  async function find(words) {
    const input = await browser.driver.findElement({ id: "find" });
    await input.clear();
    await input.sendKeys(words);
    return browser.run(() => shown.map(({ kind, name, args, result, error }) => ({ kind, name, args, result, error })));
  }

  const details = () => browser.run(() => document.getElementById("details").innerText);

  before(() => { workplace.env.HBBTV_LOG_LEVEL = "warning"; });
  afterEach(() => browser.close());

  it("has a zap, from the key to the handler, what failed, and what a page says, which stays text", async () => {
    const file = join(workplace.env.HOME, "zap.html");
    await television.startShell(["--record", file]);
    await zapper.open();
    await zapper.press("DOWN");
    await zapper.sees({ state: "Watching", channel: "2" });
    await receiver.fail("IBroadcastPlayer.Stop", "no brakes");
    await television.browser.run(text => {
      document.getElementById("video").stop();
      document.getElementById("video").addStreamEventListener(text, "any", () => {});
      console.error(text);
    }, hostile);
    await workplace.says(/CONSOLE ERROR/);
    await television.browser.close();
    await openRecording(file);

    const [zap] = await find("bus setchannel sid=102");
    assert.equal(zap.name, "org.vantrel.hbbtv.IBroadcastPlayer.SetChannel");
    await browser.driver.findElement({ id: "find" }).sendKeys(Key.ENTER);
    assert.match(await details(), /IBroadcastPlayer\.SetChannel[^]+onid=12400\n[^]+result[^]+Within\nOipfVideoBroadcast\.(next|set)Channel/);
    const order = await browser.run(() => {
      const at = (kind, name) => entries.find(entry => entry.kind === kind && entry.name.includes(name)).start;
      return [at("shell", "DOWN"), at("bus", "SetChannel"), at("handler", "ChannelChangeSucceeded")];
    });
    assert.deepEqual(order, [...order].sort((a, b) => a - b));
    const isWithin = await browser.run(() =>
      entries.find(entry => entry.kind === "handler").parent.kind);
    assert.equal(isWithin, "signal");

    const failed = await find("ibroadcastplayer.stop no brakes");
    assert.deepEqual(failed.map(({ name }) => name.split(".").pop()), ["Stop"]);
    assert.match(failed[0].error, /no brakes/);

    for (const kind of ["console", "bus streameventsubscribe", "call addstreameventlistener"])
      assert.ok((await find(`${kind} window.broken`)).length > 0, kind);
    await browser.driver.findElement({ id: "find" }).sendKeys(Key.ENTER);
    assert.ok((await details()).includes("</script><script>window.broken = true</script><img"));
    assert.deepEqual(await browser.run(() => [window.broken, document.images.length, document.scripts.length]), [null, 0, 2]);
  });

  it("is written when the shell is told to end, with what was not over", async () => {
    const file = join(workplace.env.HOME, "hangs.html");
    const program = workplace.start(shell(), ["--quiet", "--session-bus", "--record", file, server.write("hangs.html",
      `<object id="video" type="video/broadcast"></object><script>
        video.onPlayStateChange = () => {
          console.log("hangs");
          const request = new XMLHttpRequest();
          request.open("GET", "/hangs", false);
          request.send();
          for (;;);
        };
        video.bindToCurrentChannel();
      </script>`)]);
    await waitFor("the handler runs", () => server.requested.has("/hangs"));
    await workplace.stop(program);
    await openRecording(file);
    const unfinished = await find("not over");
    assert.deepEqual(unfinished.map(({ kind }) => kind), ["signal", "handler"]);
    assert.deepEqual((await find("console log hangs")).map(({ args }) => args), ["hangs"]);
    assert.ok(!workplace.lines.some(line => line.includes("CONSOLE LOG hangs")));
  });

  it("has what a web process did until it crashed, the crash, and the next page", async () => {
    const file = join(workplace.env.HOME, "crash.html");
    const page = server.write("crash.html", `<object id="video" type="video/broadcast"></object><script>
      video.bindToCurrentChannel();
      console.log("runs");
    </script>`);
    const program = workplace.start(shell(), ["--session-bus", "--record", file, page]);
    const runs = () => workplace.lines.filter(line => line.endsWith("CONSOLE LOG runs")).length;
    await waitFor("the page runs", () => runs() === 1);
    const { stdout: child } = await promisify(execFile)("pgrep", ["-P", program.pid, "WebKitWebProces"]);
    workplace.isKilling = true;
    process.kill(Number(child), "SIGKILL");
    await workplace.says(/the web process crashed/);
    await waitFor("Ctrl+R", async () => {
      await workplace.pressOnScreen("ctrl+r");
      return runs() > 1;
    });
    await workplace.stop(program);
    await openRecording(file);
    const kinds = await browser.run(() => {
      const at = (list, text) => list.findIndex(({ kind, name, args }) => `${kind} ${name} ${args}`.includes(text));
      const crash = at(entries, "the web process crashed");
      return [entries.slice(0, crash), entries.slice(crash)].map(part => at(part, "bindToCurrentChannel") >= 0);
    });
    assert.deepEqual(kinds, [true, true]);
  });

  it("keeps the newest of very many, which are found, walked through and zoomed into all the same", async () => {
    const file = join(workplace.env.HOME, "many.html");
    await workplace.run(shell(), ["--session-bus", "--record", file, "--exit-after-load", server.write("many.html",
      `<div id="verdict"></div><object id="video" type="video/broadcast"></object><script>
        for (let i = 0; i < 110000; ++i)
          video.playState;
        video.addStreamEventListener("last", "one", () => {});
        verdict.dataset.verdict = "pass";
      </script>`)]);
    await openRecording(file);
    assert.match(await browser.run(() => document.getElementById("summary").textContent), /^(99,9..|100,000) entries .* oldest are gone/);

    assert.equal((await find("bus streameventsubscribe last")).length, 1);
    const list = await browser.driver.findElement({ id: "list" });
    await browser.driver.findElement({ id: "find" }).sendKeys(Key.ESCAPE);
    const rows = () => browser.run(() => [document.querySelectorAll(".row").length, document.querySelector(".row.selected .name")?.textContent]);
    await browser.run(() => { document.getElementById("list").scrollTop = 1e9; });
    await list.sendKeys(Key.ARROW_UP);
    const [count, chosen] = await rows();
    assert.ok(count > 5 && count < 100, `${count} rows`);
    assert.ok(chosen);
    await list.sendKeys("z");
    const [from, at, to, all] = await browser.run(() => [timeline.from, list.selected.start, timeline.to, recording.end]);
    assert.ok(from < at && at < to && to - from < all / 10, `${from} ${at} ${to} of ${all}`);
    const drawn = () => browser.runAsync(done =>
      requestAnimationFrame(() => requestAnimationFrame(() => done(document.getElementById("timeline").toDataURL()))));
    const close = await drawn();
    await list.sendKeys("0");
    assert.notEqual(await drawn(), close);
  });
});
