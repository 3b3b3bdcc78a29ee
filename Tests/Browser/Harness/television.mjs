// A television for one test program: home, bus and display, page server, receiver, and the shell with the
// bundle under WebDriver.
import { Browser } from "./browser.mjs";
import { PageServer } from "./pages.mjs";
import { shell } from "./programs.mjs";
import { Receiver } from "./receiver.mjs";
import { waitFor } from "./wait.mjs";
import { Workplace } from "./workplace.mjs";

export class Television {
  // Options: `shell`, more arguments of the shell; `receiver: false`, no receiver on the bus; `scenario`, the
  // receiver's own; `environment`, more variables for all programs; `wayland: true`, the shell's window on Wayland.
  static async start({ shell: args = [], receiver = true, scenario, environment = {}, wayland = false } = {}) {
    const television = new Television();
    try {
      television.workplace = await Workplace.create();
      Object.assign(television.workplace.env, environment);
      if (wayland)
        await television.workplace.startCompositor();
      television.server = await PageServer.start();
      television.receiver = receiver ? await Receiver.start(television.workplace, scenario) : undefined;
      await television.startShell([...args, ...(receiver ? [] : ["--no-receiver"])]);
    } catch (error) {
      await television.close();
      throw error;
    }
    return television;
  }

  async startShell(args) {
    await this.browser?.close();
    this.browser = await Browser.start(this.workplace, shell(), ["--automation", "--session-bus", ...args]);
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

  async close() {
    await this.browser?.close();
    await this.receiver?.stop();
    await this.server?.close();
    await this.workplace?.close();
  }
}
