// A television for one test program: home, bus and display, page server, receiver, and the shell with the
// bundle under WebDriver.
import assert from "node:assert/strict";
import { Browser } from "./browser.mjs";
import { PageServer } from "./pages.mjs";
import { shell } from "./programs.mjs";
import { Receiver } from "./receiver.mjs";
import { waitFor } from "./wait.mjs";
import { Workplace } from "./workplace.mjs";

export class Television {
  // Options: `shell`, more arguments of the shell; `receiver: false`, no receiver on the bus yet; `scenario`, the
  // receiver's own; `environment`, more variables for all programs; `wayland: true`, the shell's window on Wayland.
  constructor(options = {}) {
    this.options = options;
    this.workplace = new Workplace();
    Object.assign(this.workplace.env, options.environment);
    this.server = new PageServer();
    this.receiver = new Receiver(this.workplace, options.scenario);
    this.browser = new Browser(this.workplace, shell());
  }

  static async start(options) {
    const television = new Television(options);
    try {
      await television.begin();
    } catch (error) {
      await television.close();
      throw error;
    }
    return television;
  }

  async begin() {
    const { shell: args = [], receiver = true, wayland = false } = this.options;
    await this.workplace.begin();
    if (wayland)
      await this.workplace.startCompositor();
    await this.server.begin();
    if (receiver)
      await this.receiver.start();
    await this.startShell([...args, ...(receiver ? [] : ["--no-receiver"])]);
  }

  async startShell(args) {
    await this.browser.close();
    await this.browser.begin(["--session-bus", ...args]);
  }

  // Opens a page of Tests/Browser/pages.
  open(page) {
    return this.browser.open(this.server.url(`/pages/${page}`));
  }

  // Goes on to plain.html, which comes when the fact is true: until then the page that is left runs.
  async leaveWhen(what, fact) {
    this.server.intercept("/pages/plain.html", (request, response, serve) => waitFor(what, fact).finally(serve));
    await this.open("plain.html").finally(() => this.server.intercept("/pages/plain.html", null));
  }

  // Shows a page that is written in the test.
  show(name, body) {
    return this.browser.open(this.server.write(name, body));
  }

  // How many native objects were alive, one entry a page that began.
  countsOfNativeObjects() {
    return this.workplace.lines.map(line => /native objects alive: (\d+)/.exec(line)).filter(Boolean)
      .map(found => Number(found[1]));
  }

  // Starts an application from the page that is shown, and goes on in its window.
  async enterApplication(address) {
    const { driver } = this.browser;
    const windows = await driver.getAllWindowHandles();
    assert.equal(await this.browser.run(url => oipfObjectFactory.createApplicationManagerObject()
      .getOwnerApplication(document).createApplication(url, false) !== null, address), true);
    await driver.switchTo().window(await waitFor("the application has a window", async () =>
      (await driver.getAllWindowHandles()).find(handle => !windows.includes(handle))));
  }

  // Goes on to plain.html, and answers how many native objects are alive then. The bundle logs its count when a page
  // begins; what only waits for the collector is collected before.
  async nativeObjectsLeft() {
    await this.browser.run(() => window.__collectGarbage());
    const logged = this.countsOfNativeObjects().length;
    await this.open("plain.html");
    await waitFor("the count is logged", () => this.countsOfNativeObjects().length > logged);
    return this.countsOfNativeObjects()[logged];
  }

  async close() {
    await this.browser.close();
    await this.receiver.stop();
    await this.server.close();
    await this.workplace.close();
  }
}
