// What the developer of an application reads on the terminal: hbbtv-shell as a program, its words and exit codes.
import assert from "node:assert/strict";
import { execFile } from "node:child_process";
import { mkdirSync, readFileSync, symlinkSync, writeFileSync } from "node:fs";
import { createServer } from "node:https";
import { join } from "node:path";
import { before, describe, it } from "node:test";
import { isDeepStrictEqual, promisify } from "node:util";
import WebSocket from "ws";
import { freePort } from "./Harness/browser.mjs";
import { exitAfterLoad, shell } from "./Harness/programs.mjs";
import { useTelevision, useWorkplace } from "./Harness/suite.mjs";
import { inTime, waitFor } from "./Harness/wait.mjs";

const forbidden = "http://127.0.0.1:1/";
const closed = "http://127.0.0.1:2/";

const faulty = `<!DOCTYPE html><html><body><div id="verdict"></div><img src="${closed}"><script src="missing.js"></script>
<script>
console.log("first", 2, ["third", 4], "\\u00e4");
console.error("so", "bad");
const gone = fetch("gone.json");
setTimeout(() => { throw new TypeError("too late"); });
addEventListener("load", () => setTimeout(() => Promise.reject(new Error("broken promise"))));
addEventListener("unhandledrejection",
  () => gone.then(() => { document.getElementById("verdict").dataset.verdict = "pass"; }));
</script></body></html>`;

describe("The terminal", () => {
  const { workplace, server } = useWorkplace();

  before(() => {
    delete workplace.env.HBBTV_LOG_LEVEL;
    server.intercept("/app.bin", (_, response) =>
      response.writeHead(200, { "Content-Type": "application/x-thing" }).end("thing"));
  });

  // Runs the shell to its end.
  async function run(...args) {
    const { code, lines } = await workplace.run(shell(), args);
    return { code, text: lines.join("\n") };
  }

  it("shows the console, what was not caught and what was not loaded", async () => {
    const url = server.write("faulty.html", faulty);
    const { code, text } = await run(...exitAfterLoad, url);
    assert.equal(code, 0, text);
    for (const pattern of [
      /faulty\.html:3:12: CONSOLE LOG first 2 third,4 ä$/m,
      /faulty\.html:4:14: CONSOLE ERROR so bad$/m,
      /faulty\.html:6:\d+: CONSOLE JS ERROR TypeError: too late$/m,
      /CONSOLE JS ERROR Unhandled Promise Rejection: Error: broken promise$/m,
      /^hbbtv-shell: cannot load http:\S+\/written\/missing\.js: HTTP status 404 \(Not Found\)$/m,
      /^hbbtv-shell: cannot load http:\S+\/written\/gone\.json: HTTP status 404 \(Not Found\)$/m,
      new RegExp(`^hbbtv-shell: cannot load ${closed}: .+`, "m")
    ])
      assert.match(text, pattern);
    assert.doesNotMatch(text, /\[bootstrap\]|user-script|dbus-daemon|at-spi/i);

    const quiet = await run("--quiet", ...exitAfterLoad, url);
    assert.equal(quiet.code, 0);
    assert.doesNotMatch(quiet.text, /CONSOLE|cannot load/);

    const broken = await run(...exitAfterLoad, server.write("broken.hbbtv", "<html><p></html>"));
    assert.match(broken.text,
      /^CONSOLE ERROR http:\S+broken\.hbbtv is not well-formed: error on line 1 .* mismatch: p /m);
  });

  it("has nothing more to say when the shell ends while its page listens to the receiver", async () => {
    const program = workplace.start(shell(), [server.write("listens.html", `<object id="video" type="video/broadcast"></object><script>
      video.bindToCurrentChannel();
      video.addStreamEventListener("dvb://current/ticker", "demo", () => {});
      console.log("listens");
    </script>`)]);
    await workplace.says(/CONSOLE LOG listens$/);
    const start = workplace.lines.length;
    await workplace.stop(program);
    assert.deepEqual(workplace.lines.slice(start), []);
  });

  it("tells why a page is not shown, with exit code 1", async () => {
    const starts = server.write("starts.html", `<!DOCTYPE html><html><body><div id="verdict"></div><script>
      oipfObjectFactory.createApplicationManagerObject().getOwnerApplication(document)
        .createApplication("${server.url("/gone.html")}", false);
    </script></body></html>`);
    for (const [url, reason, shown = url, view = 1] of [
      [starts, /HTTP status 404/, server.url("/gone.html"), 2],
      [server.url("/nowhere.html"), /HTTP status 404 \(Not Found\)/],
      [server.url("/app.bin"), /no page: application\/x-thing/],
      [forbidden, /forbids its port/],
      ["localhost:2/a?b", /Connection refused/, "http://localhost:2/a?b"],
      ["nowhere.html", /No such file/, `file://${process.cwd()}/nowhere.html`],
      [closed, /Connection refused/]
    ]) {
      const { code, text } = await run(...exitAfterLoad, url);
      assert.equal(code, 1, url);
      const line = text.split("\n").find(each => each.startsWith(`hbbtv-shell: view ${view}: cannot show ${shown}: `));
      assert.match(line ?? text, reason);
    }
  });
});

describe("An option", () => {
  const { workplace, server } = useWorkplace();

  const judged = condition => `<!DOCTYPE html><html><body><div id="verdict"></div><script>
document.getElementById("verdict").dataset.verdict = (${condition}) ? "pass" : "fail";</script></body></html>`;

  // The exit code of a shell that leaves when the page has given its verdict.
  const verdict = async (url, ...args) =>
    (await workplace.run(shell(), ["--quiet", "--no-receiver", ...exitAfterLoad, ...args, url])).code;

  it("may be a file, which is an application by its name, or no folder, or no scenario", async () => {
    const file = join(workplace.env.HOME, "local.hbbtv");
    writeFileSync(join(workplace.env.HOME, "local.js"), "var local = true;");
    writeFileSync(file, `<html xmlns="http://www.w3.org/1999/xhtml"><body><div id="verdict"/><script src="local.js"/><script>
      document.getElementById("verdict").setAttribute("data-verdict", local &amp;&amp; location.search + location.hash === "?a#b" &amp;&amp;
        document.contentType === "application/vnd.hbbtv.xhtml+xml" ? "pass" : "fail");</script></body></html>`);
    assert.equal(await verdict(`file://${file}?a#b`), 0);
    for (const option of ["--reload=/no/such", "--profile-dir=/dev/null/below"])
      assert.equal(await verdict("about:blank", option), 2);
    const { code, lines } = await workplace.run(shell(), ["--scenario", "/nowhere.json", "about:blank"]);
    assert.equal(code, 2);
    assert.match(lines.join("\n"), /\/nowhere\.json: cannot open it: No such file or directory/);
  });

  it("gives the user agent, and takes a certificate as it is", async () => {
    const [key, cert] = ["key.pem", "cert.pem"].map(name => join(workplace.env.HOME, name));
    await promisify(execFile)("openssl", ["req", "-x509", "-newkey", "ec", "-pkeyopt", "ec_paramgen_curve:P-256",
      "-nodes", "-subj", "/CN=localhost", "-keyout", key, "-out", cert]);
    const secure = createServer({ key: readFileSync(key), cert: readFileSync(cert) }, (_, response) =>
      response.writeHead(200, { "Content-Type": "text/html" }).end(judged("navigator.userAgent === 'Mine HbbTV/1.5.1'")));
    await new Promise(listening => secure.listen(0, "127.0.0.1", listening));
    const url = `https://127.0.0.1:${secure.address().port}/`;
    assert.equal(await verdict(url, "--user-agent", "Mine HbbTV/1.5.1"), 1);
    assert.match(workplace.lines.join("\n"), /cannot show https:.*TLS certificate/);
    assert.equal(await verdict(url, "--user-agent=Mine HbbTV/1.5.1", "--ignore-tls-errors"), 0);
    secure.close();
  });

  it("serves a folder, and nothing that lies outside", async () => {
    const folder = join(workplace.env.HOME, "served");
    mkdirSync(join(folder, "pages"), { recursive: true });
    writeFileSync(join(folder, "..", "secret.txt"), "secret");
    symlinkSync("../secret.txt", join(folder, "link.txt"));
    writeFileSync(join(folder, "50% done.txt"), "0123456789");
    writeFileSync(join(folder, "pages/index.html"), "page");
    writeFileSync(join(folder, "index.hbbtv"), "<html xmlns='http://www.w3.org/1999/xhtml'/>");
    writeFileSync(join(folder, "index.html"), `<!DOCTYPE html><html><body><div id="verdict"></div><script>
const ask = (path, options) => fetch(path, options).then(async answer =>
  [answer.status, answer.headers.get("Content-Type"), await answer.text(), answer.url, answer.headers.get("Accept-Ranges")]);
Promise.all([ask("50%25%20done.txt"), ask("50%25%20done.txt", { headers: { Range: "bytes=2-4" } }), ask("pages"), ask("index.hbbtv"),
  ask("link.txt"), ask("..%2fsecret.txt"), ask("missing"), ask("index.html", { method: "POST" })]).then(answers => {
    console.log(JSON.stringify(answers.map(([status, type, text, ...rest]) => status < 300 && [status, type, text.slice(0, 10), ...rest])));
    console.log(JSON.stringify(answers.map(([status]) => status)));
    document.getElementById("verdict").dataset.verdict = location.search === "?now" ? "pass" : "fail";
  });</script></body></html>`);
    const { code, lines } = await workplace.run(shell(),
      ["--no-receiver", ...exitAfterLoad, "--serve", folder, "index.html?now"]);
    assert.equal(code, 0);
    const told = lines.map(line => line.match(/CONSOLE LOG (\[.*\])$/)?.[1]).filter(Boolean).map(JSON.parse);
    assert.deepEqual(told[1], [200, 206, 200, 200, 404, 400, 404, 405]);
    const base = told[0][0][3].replace(/[^/]*$/, "");
    assert.match(base, /^http:\/\/127\.0\.0\.1:\d+\/$/);
    assert.deepEqual(told[0].filter(Boolean), [
      [200, "text/plain; charset=utf-8", "0123456789", `${base}50%25%20done.txt`, "bytes"],
      [206, "text/plain; charset=utf-8", "234", `${base}50%25%20done.txt`, "bytes"],
      [200, "text/html; charset=utf-8", "page", `${base}pages/`, "bytes"],
      [200, "application/vnd.hbbtv.xhtml+xml; charset=utf-8", "<html xmln", `${base}index.hbbtv`, "bytes"]
    ]);

    const missing = await workplace.run(shell(), ["--serve", join(folder, "nowhere")]);
    assert.equal(missing.code, 2);
    assert.match(missing.lines.join("\n"), /not a folder: \S+nowhere/);
  });

  it("shows an example by its name", async () => {
    for (const [name, code] of [["demo", 0], ["carousel", 0], ["nothing", 2]]) {
      const args = ["--example", name, ...exitAfterLoad, "--require-verdict"];
      assert.equal((await workplace.run(shell(), args)).code, code, name);
    }
  });

  it("gives the screen its size, and a key the remote control to the mouse", async () => {
    const program = workplace.start(shell(), ["--no-receiver", "--zoom", "0.5", server.write("keys.html", `<script>
console.log("size", innerWidth, innerHeight);
addEventListener("keydown", event => console.log("key", event.keyCode));</script>`)]);
    const told = (text, count = 1) => waitFor(text, () =>
      workplace.lines.filter(line => line.endsWith(`CONSOLE LOG ${text}`)).length === count);
    const boxOf = async name => {
      const found = await waitFor(name, () =>
        workplace.xdotool("search", "--name", name, "getwindowgeometry", "--shell").catch(() => ""));
      return Object.fromEntries(found.split("\n").map(line => line.split("=")));
    };
    await told("size 1280 720");
    const { WIDTH, HEIGHT } = await boxOf("^HbbTV$");
    assert.deepEqual([WIDTH, HEIGHT], ["640", "360"]);

    await workplace.pressOnScreen("shift+F2");
    const panel = await boxOf("^Remote control$");
    const click = (row, column) => workplace.xdotool("mousemove", Math.round(+panel.X + panel.WIDTH * (column + 0.5) / 4),
      Math.round(+panel.Y + panel.HEIGHT * (row + 0.5) / 9), "click", 1);
    await click(6, 1);
    await told("key 13");
    await click(4, 0);
    await told("key 403");
    await click(7, 2);
    await told("size 1280 720", 2);
    await workplace.stop(program);
  });

  it("keeps what a page stores", async () => {
    const url = server.write("stores.html", judged(`[localStorage.kept, document.cookie].join() === "yes,kept=yes"
      || (localStorage.kept = "yes", document.cookie = "kept=yes; max-age=3600", false)`));
    const folder = join(workplace.env.HOME, "profile");
    assert.deepEqual([await verdict(url, "--profile-dir", folder), await verdict(url, "--profile-dir", folder),
      await verdict(url)], [1, 0, 1]);
  });

  it("loads a page anew when a file beside it changes, also one that could not be shown", async () => {
    const folder = join(workplace.env.HOME, "page");
    mkdirSync(join(folder, "scripts"), { recursive: true });
    const program = workplace.start(shell(), ["--no-receiver", "--reload", folder, `file://${folder}/index.html`]);
    await workplace.says(/No such file or directory$/);
    writeFileSync(join(folder, "scripts/a.js"), "console.log('round 1');");
    writeFileSync(join(folder, "index.html"), "<script src='scripts/a.js'></script>");
    await workplace.says(/LOG round 1$/);
    writeFileSync(join(folder, "scripts/a.js"), "console.log('round 2');");
    await workplace.says(/LOG round 2$/);
    await workplace.stop(program);
  });
});

describe("A second shell", () => {
  const television = useTelevision();

  const starts = `<!DOCTYPE html><script>oipfObjectFactory.createApplicationManagerObject().getOwnerApplication(document)
    .createApplication("/pages/plain.html", false);</script>`;

  it("has a bus of its own, or else views of its own", async () => {
    const { browser, receiver, server, workplace } = television;
    await television.open("plain.html");
    const views = async () => Object.entries((await receiver.getWorld("/state/views"))).map(([id, { url }]) => [id, url]);
    const first = ["1", server.url("/pages/plain.html")];
    const url = server.write("starts.html", starts);
    const alone = workplace.start(shell(), [url]);
    await waitFor("it loads", () => server.requested.has("/written/starts.html"));
    assert.deepEqual(await views(), [first]);
    await workplace.stop(alone);

    const second = workplace.start(shell(), ["--session-bus", url]);
    const expected = [first, ["1001", url], ["1002", first[1]]];
    await waitFor("its views", async () => isDeepStrictEqual(await views(), expected)).catch(async error =>
      assert.deepEqual(await views(), expected, error.message));
    assert.equal((await browser.driver.getAllWindowHandles()).length, 1);
    await workplace.stop(second);
  });
});

describe("A developer", () => {
  const television = useTelevision();

  const words = () => television.browser.run(() => document.body.innerText);

  it("reads why an application is not shown, the first one and one that it starts", async () => {
    const { browser, server, workplace } = television;
    await browser.open(server.url("/nowhere.html")).catch(() => {});
    await waitFor("the words of the first", async () => (await words()).includes("HTTP status 404 (Not Found)"));

    await television.open("plain.html");
    await television.enterApplication("/nothing.html");
    await waitFor("the words of the second", async () => (await words()).includes("HTTP status 404 (Not Found)"));
    assert.ok(workplace.lines.some(line => /^hbbtv-shell: view 2: cannot show .*nothing\.html: HTTP/.test(line)));
  });

  it("looks into the page from elsewhere", async () => {
    const { server, workplace } = television;
    const address = `127.0.0.1:${await freePort()}`;
    workplace.env.WEBKIT_INSPECTOR_HTTP_SERVER = address;
    const program = workplace.start(shell(), ["--no-receiver", server.url("/pages/plain.html")]);
    delete workplace.env.WEBKIT_INSPECTOR_HTTP_SERVER;
    const path = await waitFor("the page is listed", async () => {
      const list = await fetch(`http://${address}/`).then(reply => reply.text(), () => "");
      return list.includes("plain.html") && /\/socket\/[^']+/.exec(list)?.[0];
    });
    const socket = new WebSocket(`ws://${address}${path}`);
    const answer = await inTime("the page answers", new Promise((resolve, reject) => {
      socket.on("error", reject).on("message", data => {
        const { method, params } = JSON.parse(data);
        if (method === "Target.targetCreated")
          socket.send(JSON.stringify({ id: 1, method: "Target.sendMessageToTarget", params: {
            targetId: params.targetInfo.targetId,
            message: JSON.stringify({ id: 2, method: "Runtime.evaluate", params: { expression: "innerWidth + location.pathname" } })
          } }));
        else if (method === "Target.dispatchMessageFromTarget" && JSON.parse(params.message).id === 2)
          resolve(JSON.parse(params.message).result.result.value);
      });
    }));
    assert.equal(answer, "1280/pages/plain.html");
    socket.close();
    await workplace.stop(program);
  });

  // The last one: the inspector may still find keys to do.
  it("has the inspector in a window of its own, with its keyboard", async () => {
    const { browser, workplace } = television;
    await television.open("plain.html");
    await browser.run(() => { window.former = true; });
    await workplace.pressOnScreen("F12");
    const inspector = await waitFor("the window", () =>
      workplace.xdotool("search", "--name", "Web Inspector").catch(() => ""));
    await workplace.xdotool("windowfocus", inspector);
    await waitFor("its Ctrl+R has loaded the page anew", async () => {
      await workplace.xdotool("key", "ctrl+r");
      return browser.run(() => !window.former);
    }, 30000);
    assert.equal(await browser.run(() => innerHeight), 720);
  });
});
