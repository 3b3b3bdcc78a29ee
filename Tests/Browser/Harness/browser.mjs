// A browser under WebDriver: WebKitWebDriver on a free port, and the browser that it starts.
import { createServer } from "node:net";
import { Executor, HttpClient } from "selenium-webdriver/http/index.js";
import webdriver from "selenium-webdriver";
import { shell } from "./programs.mjs";
import { inTime, slowness, waitFor } from "./wait.mjs";

export async function freePort() {
  const probe = createServer();
  await new Promise(listening => probe.listen(0, "127.0.0.1", listening));
  const { port } = probe.address();
  await new Promise(closed => probe.close(closed));
  return port;
}

async function answers(url) {
  try {
    return (await fetch(`${url}/status`)).ok;
  } catch {
    return false;
  }
}

export async function startDriver(workplace) {
  const port = await freePort();
  const url = `http://127.0.0.1:${port}`;
  const program = workplace.start("WebKitWebDriver", [`--port=${port}`]);
  await waitFor("WebKitWebDriver answers", () => answers(url));
  return { url, program };
}

// `close` ends the session and the driver program; everything else is selenium's WebDriver, as `driver`.
export class Browser {
  constructor(workplace, binary) {
    this.workplace = workplace;
    this.binary = binary;
  }

  async begin(args = []) {
    const { workplace, binary } = this;
    const { url, program } = await startDriver(workplace);
    this.program = program;
    // Not by the driver program's own variables: what is preloaded there keeps it from starting. Other browsers are
    // not ours to examine.
    const preloads = binary === shell() ? Object.entries(workplace.preload).map(pair => pair.join("=")) : [];
    const command = ["/usr/bin/env", ...preloads, binary, "--automation", ...args];
    const capabilities = new webdriver.Capabilities({
      "webkitgtk:browserOptions": { binary: command[0], args: command.slice(1) }
    });
    this.driver = webdriver.WebDriver.createSession(new Executor(new HttpClient(url)), capabilities);
    // The driver program waits for ever for a browser that ended while it started.
    await inTime("the browser starts", this.driver.getSession());
    const limit = 20000 * slowness;
    await this.driver.manage().setTimeouts({ script: limit, pageLoad: limit, implicit: 0 });
  }

  open(url) {
    return this.driver.get(url);
  }

  // Runs the function in the page, with JSON-like arguments.
  run(pageFunction, ...args) {
    return this.driver.executeScript(pageFunction, ...args);
  }

  // Runs the function in the page; it calls its last argument with the result.
  runAsync(pageFunction, ...args) {
    return this.driver.executeAsyncScript(pageFunction, ...args);
  }

  // Waits until the function answers something truthy in the page.
  waitFor(what, pageFunction, ...args) {
    return waitFor(what, () => this.run(pageFunction, ...args));
  }

  async close() {
    await inTime("the browser ends", this.driver?.quit(), 20000).catch(() => {});
    await this.workplace.stop(this.program);
  }
}
