// Pages of the object carousel, each file of which comes through the bundle, and what becomes of a page when
// the carousel does not do as it should.
import assert from "node:assert/strict";
import { mkdirSync, mkdtempSync, rmSync, writeFileSync } from "node:fs";
import { tmpdir } from "node:os";
import { dirname, join } from "node:path";
import { after, afterEach, before, describe, it } from "node:test";
import { useTelevision } from "./Harness/suite.mjs";
import { waitFor } from "./Harness/wait.mjs";

const service = "dvb://3070.3e9.65";
const fileRequest = "DSMCC.FileRequest";

// Long enough for a slow machine, short enough to wait for.
const limitSeconds = 3;
const never = 600000;

const square = color => `<svg xmlns="http://www.w3.org/2000/svg" width="8" height="4">
  <rect width="8" height="4" fill="${color}"/></svg>`;

// What a page finds out about an address by asking for it.
const ask = (address, done) => {
  const request = new XMLHttpRequest();
  request.onload = () => done([request.status, request.responseText]);
  request.onerror = () => done(["error", request.responseText]);
  request.open("GET", address);
  request.send();
};

// And while its script waits.
const askWaiting = address => {
  const request = new XMLHttpRequest();
  request.open("GET", address, false);
  try {
    request.send();
    return [request.status, request.responseText];
  } catch (error) {
    return [error.name];
  }
};

describe("The object carousel", () => {
  const television = useTelevision({ shell: ["--carousel-limit", String(limitSeconds)] });
  const { browser, receiver } = television;
  const folder = mkdtempSync(join(tmpdir(), "hbbtv-carousel-"));

  before(async () => {
    await receiver.setWorld("/carousel/folder", folder);
    await receiver.setWorld("/carousel/reply_ms", 0);
    put("plain.html", "<title>plain</title>");
  });

  after(() => rmSync(folder, { recursive: true, force: true }));

  afterEach(async () => {
    await receiver.setWorld("/carousel/reply_ms", 0);
    await receiver.resetMethods();
  });

  function put(name, content) {
    mkdirSync(dirname(join(folder, name)), { recursive: true });
    writeFileSync(join(folder, name), content);
  }

  const title = () => browser.driver.getTitle();

  // The files that were asked for, as [handle, address].
  const requests = () => receiver.argumentsOf(fileRequest);

  // Waits until a file is asked for, and answers its handle and address.
  function requestOf(name) {
    return waitFor(`${name} is asked for`, async () =>
      (await requests()).find(([, url]) => url === `${service}/${name}`));
  }

  // Lets a page ask for a file that does not come by itself; likewise.
  async function unanswered(name, ask = go) {
    await browser.open(`${service}/plain.html`);
    await receiver.setWorld("/carousel/reply_ms", never);
    await receiver.clearCalls();
    await ask(`${service}/${name}`);
    return requestOf(name);
  }

  const respond = (handle, url, bytes, length, status = true) =>
    receiver.emit("DSMCC.FileResponse", `(uint32 ${handle}, '${url}', @ay [${bytes.join(", ")}], ` +
      `uint32 ${length}, ${status})`);

  // Goes there without waiting, as a page does.
  const go = address => browser.run(to => { setTimeout(() => { location.href = to; }); }, address);

  const errorText = () => browser.run(() => document.querySelector("h1 + p")?.textContent);

  async function failsWith(words) {
    await waitFor(`the error page says ${words}`, async () => (await errorText())?.includes(words))
      .catch(async error => assert.fail(`${error.message}; the page says ${await errorText()}`));
    assert.equal(await title(), "The application cannot be shown");
  }

  it("carries a page with all that its relative links name, at any depth", async () => {
    put("app/index.html", `<!DOCTYPE html><title>index</title><link rel="stylesheet" href="look/look.css?v=2">
      <img id="image" src="look/a%20square.svg"><script src="../shared.js#x"></script>
      <script type="module" src="module.mjs"></script><iframe id="frame" src="deep/er/frame.html"></iframe>
      <a id="link" href="deep/er/second.html?from=index#part">next</a><p id="text">text</p>`);
    put("app/look/look.css", `p { color: rgb(1, 2, 3); background: url("../../b.svg") }`);
    put("app/look/a square.svg", square("red"));
    put("b.svg", square("blue"));
    put("shared.js", "window.shared = document.currentScript.src;");
    put("app/module.mjs", "import { value } from './deep/value.mjs'; window.module = value;");
    put("app/deep/value.mjs", "export const value = 'imported';");
    put("app/deep/er/frame.html", "<script>parent.framed = location.pathname;</script>");
    put("app/deep/er/second.html", "<!DOCTYPE html><title>second</title><a href='../../index.html'>back</a>");

    await browser.open(`${service}/app/`);
    assert.equal(await title(), "index");
    await browser.waitFor("the module has run", () => window.module === "imported");
    assert.deepEqual(await browser.run(() => ({
      origin: location.origin,
      image: document.getElementById("image").naturalWidth,
      color: getComputedStyle(document.getElementById("text")).color,
      shared: window.shared,
      framed: window.framed,
      sameOrigin: document.getElementById("frame").contentDocument !== null
    })), { origin: service, image: 8, color: "rgb(1, 2, 3)", shared: `${service}/shared.js#x`,
      framed: "/app/deep/er/frame.html", sameOrigin: true });
    const asked = (await requests()).map(([, url]) => url);
    assert.ok(asked.includes(`${service}/b.svg`), "the style's image");
    assert.equal(asked.filter(url => url === `${service}/shared.js`).length, 1, "read ahead, not read again");

    await browser.run(() => document.getElementById("link").click());
    await waitFor("the link is followed", async () => await title() === "second");
    assert.equal(await browser.run(() => location.search + location.hash), "?from=index#part");
    assert.ok(await requestOf("app/deep/er/second.html?from=index"), "without the fragment");
    await browser.driver.navigate().back();
    await waitFor("back leads back", async () => await title() === "index");
  });

  it("gives the page the television's objects, also as the type of an application", async () => {
    const body = `<object id="video" type="video/broadcast"></object>`;
    put("objects.html", `<!DOCTYPE html><title>objects</title>${body}`);
    put("objects.hbbtv", `<html xmlns="http://www.w3.org/1999/xhtml"><head><title>objects</title></head>
      <body>${body}</body></html>`);
    for (const [name, type] of [["objects.html", "text/html"], ["objects.hbbtv", "application/vnd.hbbtv.xhtml+xml"]]) {
      await browser.open(`${service}/${name}`);
      assert.deepEqual(await browser.run(() => {
        const { currentChannel } = oipfObjectFactory.createApplicationManagerObject().getOwnerApplication(document)
          .privateData;
        return [document.contentType, typeof document.getElementById("video").setChannel, currentChannel.name];
      }), [type, "function", "Nordlicht 1"]);
    }
    await receiver.clearCalls();
    await browser.open(`${service}/plain.html`);
    const releases = ["IAVEventHandler.ReleasePlayer", "IBroadcastPlayer.Release"];
    assert.deepEqual(await receiver.callNames(...releases), releases);
  });

  it("is read by scripts of its own origin alone, asynchronously and while they wait", async () => {
    put("data.json", "{\"answer\": 42}");
    await browser.open(`${service}/plain.html`);
    assert.deepEqual(await browser.runAsync(ask, "data.json"), [200, "{\"answer\": 42}"]);
    assert.deepEqual(await browser.run(askWaiting, "data.json"), [200, "{\"answer\": 42}"]);
    for (const elsewhere of ["dvb://1.2.3/plain.html", "dvb:/plain.html", television.server.url("/pages/plain.html")]) {
      await browser.open(elsewhere);
      assert.deepEqual(await browser.runAsync(ask, `${service}/data.json`), ["error", ""], elsewhere);
      assert.deepEqual(await browser.run(askWaiting, `${service}/data.json`), ["NetworkError"], elsewhere);
    }
    await browser.open("dvb:/plain.html");
    assert.equal((await browser.runAsync(ask, "data.json"))[0], 200);
    assert.deepEqual(await browser.run(askWaiting, "/data.json"), [200, "{\"answer\": 42}"]);
  });

  it("calls a file what the server of the examples calls it", async () => {
    const types = { html: "text/html", hbbtv: "application/vnd.hbbtv.xhtml+xml", css: "text/css", js: "text/javascript",
      mp4: "video/mp4", mpd: "application/dash+xml", aitx: "application/vnd.dvb.ait+xml", json: "application/json" };
    for (const name of ["plain.html", ...Object.keys(types).map(ending => `typed.${ending}`)]) {
      put(name, "<title>plain</title>");
      television.server.write(name, "x");
    }
    for (const base of [service, television.server.url("/written")]) {
      await browser.open(`${base}/plain.html`);
      assert.deepEqual(await browser.runAsync((endings, done) => Promise.all(endings.map(ending =>
        fetch(`typed.${ending}`).then(response => response.blob().then(({ type }) =>
          [response.headers.get("content-type"), type].map(text => text.split(";")[0]))))).then(done),
      Object.keys(types)), Object.values(types).map(type => [type, type]), base);
    }
  });

  it("shows what it holds now", async () => {
    put("news.html", "<title>one</title>");
    await browser.open(`${service}/news.html`);
    put("news.html", "<title>two</title>");
    await browser.driver.navigate().refresh();
    assert.equal(await title(), "two");
  });

  it("delivers many files at once, each to whom it belongs", async () => {
    const count = 60;
    for (let i = 0; i < count; ++i)
      put(`many/${i}.txt`, `file ${i} `.repeat(1000 * (i % 7)));
    await receiver.setWorld("/carousel/reply_ms", 200);
    await browser.open(`${service}/plain.html`);
    const wrong = await browser.runAsync((number, done) => {
      const read = i => fetch(`many/${i}.txt`).then(response => response.text())
        .then(text => text === `file ${i} `.repeat(1000 * (i % 7)));
      Promise.all(Array.from({ length: number }, (_, i) => read(i))).then(all =>
        done(all.filter(right => !right).length));
    }, count);
    assert.equal(wrong, 0);
    const handles = (await requests()).map(([handle]) => handle);
    assert.equal(new Set(handles).size, handles.length, "no handle is used twice");
  });

  it("goes on to the network and back, and starts as an application", async () => {
    await television.open("plain.html");
    await go(`${service}/plain.html`);
    await waitFor("the carousel's page is there", async () => await title() === "plain");
    await go(television.server.url("/pages/application.html"));
    await browser.waitFor("the network's page is there", () => location.protocol === "http:");
    const first = await browser.driver.getWindowHandle();
    await television.enterApplication(`${service}/plain.html`);
    await waitFor("it is shown", async () => await title() === "plain");
    assert.equal(await browser.run(() => location.href), `${service}/plain.html`);
    await browser.driver.close();
    await browser.driver.switchTo().window(first);
  });

  it("tells a page of a missing file with status 404, and a viewer in words", async () => {
    await browser.open(`${service}/plain.html`);
    const [status] = await browser.runAsync(ask, "none.html");
    assert.equal(status, 404);
    await go(`${service}/none.html`);
    await failsWith("The object carousel has no such file");
    // Nothing leads out of the folder, whatever WebKit has made of the address.
    for (const address of ["/%2e%2e/%2e%2e/etc/passwd", "/..%2f..%2fetc%2fpasswd", "//etc/passwd", "/app"]) {
      await browser.open(`${service}/plain.html`);
      assert.equal((await browser.runAsync(ask, `${service}${address}`))[0], 404, address);
    }
  });

  it("may hold empty files", async () => {
    for (const name of ["empty.html", "empty.js", "empty.css"])
      put(name, "");
    put("around.html", "<title>around</title><script src='empty.js'></script><link rel='stylesheet' href='empty.css'>");
    await browser.open(`${service}/around.html`);
    assert.equal(await title(), "around");
    assert.deepEqual(await browser.runAsync(ask, "empty.js"), [200, ""]);
    await browser.open(`${service}/empty.html`);
    assert.deepEqual(await browser.run(() => [location.pathname, document.body.childNodes.length]),
      ["/empty.html", 0]);
  });

  it("is not believed when it claims more than it carries", async () => {
    const [handle, url] = await unanswered("claims.html");
    await respond(handle, url, [0x41], 1000);
    await failsWith("delivered only a part of the file");
  });

  it("has a time limit, after which another page can be shown", async () => {
    const [handle, url] = await unanswered("late.html");
    await failsWith(`did not deliver the file within ${limitSeconds} s`);
    await respond(handle, url, [0x41], 1);
    await receiver.setWorld("/carousel/reply_ms", 300);
    await browser.open(`${service}/plain.html`);
    assert.equal(await title(), "plain");
  });

  it("may be given up for another page while it is slow", async () => {
    put("slow.html", "<title>slow</title>");
    const other = television.server.write("other.html", "<title>other</title>");
    // A WebDriver would wait for the slow page; a viewer presses a key.
    const [handle, url] = await unanswered("slow.html", address => browser.run((slow, other) => {
      oipfObjectFactory.createApplicationManagerObject().getOwnerApplication(document).privateData.keyset
        .setValue(Keyset.RED);
      addEventListener("keydown", () => { location.href = other; });
      setTimeout(() => { location.href = slow; });
    }, address, other));
    await receiver.pressKey("VK_RED");
    await waitFor("the other page is asked for", () => television.server.requested.has("/written/other.html"));
    await respond(handle, url, [0x41], 1);
    await waitFor("the other page is there", async () => await title() === "other");
    await receiver.setWorld("/carousel/reply_ms", 0);
    await browser.open(`${service}/slow.html`);
    assert.equal(await title(), "slow");
  });

  it("may be refused", async () => {
    await browser.open(`${service}/plain.html`);
    await receiver.fail(fileRequest, "out of order");
    assert.deepEqual(await browser.runAsync(ask, "plain.html"), ["error", ""]);
    await go(`${service}/refused.html`);
    await failsWith("The receiver has no object carousel for this address");
  });
});

describe("Without the bundle", () => {
  const television = useTelevision({ environment: { HBBTV_BUNDLE: "" } });

  it("there is no carousel, which the page says", async () => {
    await television.open("plain.html");
    await television.browser.run(to => { setTimeout(() => { location.href = to; }); }, `${service}/a.html`);
    await television.browser.waitFor("the error page says so", () =>
      document.querySelector("h1 + p")?.textContent.includes("runs without one"));
  });
});
