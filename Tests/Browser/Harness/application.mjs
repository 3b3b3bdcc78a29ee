// An application of Examples/ in a television: steered by the keys that a viewer presses, and looked at.
import assert from "node:assert/strict";
import { waitFor } from "./wait.mjs";

// An application must be the same as either of its two content types.
export const documents = ["index.html", "index.hbbtv.xhtml"];

const typeOf = page => page.includes(".hbbtv.xhtml") ? "application/vnd.hbbtv.xhtml+xml" : "text/html";

// What `look` is given in the page.
const eyes = {
  text: selector => document.querySelector(selector)?.textContent,
  texts: selector => Array.from(document.querySelectorAll(selector), ({ textContent }) => textContent),
  isOpen: selector => !document.querySelector(selector).classList.contains("closed")
};
const eyesText = Object.entries(eyes).map(([name, see]) => `${name}: ${see}`).join(", ");

const hasVerdict = () => document.getElementById("verdict").hasAttribute("data-verdict");

export class Application {
  // `home` is the application's folder on the page server, or a whole address. In the page run `look`, which
  // answers what a viewer sees there, by name, and `isReady`, which tells that it has begun.
  constructor(television, home, look, isReady = hasVerdict) {
    this.television = television;
    this.home = home;
    this.script = `return (${look})({ ${eyesText} });`;
    this.isReady = isReady;
  }

  load = async (page = "index.html") => {
    const { browser, server } = this.television;
    await browser.open(new URL(page, new URL(this.home, server.origin)).href);
    await browser.waitFor("the application has begun", this.isReady);
  };

  // With its own checks passed and a call log that begins now.
  open = async (page = "index.html") => {
    const { browser, receiver } = this.television;
    await this.load(page);
    assert.equal(await browser.run(() => document.contentType), typeOf(page));
    const [verdict, lines] = await browser.run(() => {
      const element = document.getElementById("verdict");
      return [element.getAttribute("data-verdict"), element.textContent];
    });
    assert.notEqual(verdict, "fail", lines);
    await receiver.clearCalls();
  };

  // "DOWN" is VK_DOWN.
  press = async (...keys) => {
    for (const key of keys)
      await this.television.receiver.pressKey(`VK_${key}`);
  };

  // For a key while the receiver is dead, which presses none, or new, which grants none before it is asked.
  pressInPage = key => this.television.browser.run(name => {
    const init = { keyCode: KeyEvent[name], cancelable: true };
    document.dispatchEvent(new KeyboardEvent("keydown", init));
  }, `VK_${key}`);

  look = () => this.television.browser.run(this.script);

  // Waits until the viewer sees all of this: these texts, or texts that match these expressions.
  sees = async expected => {
    let seen;
    await waitFor(`the viewer sees ${JSON.stringify(expected)}`, async () => {
      seen = await this.look();
      return Object.entries(expected).every(([name, value]) =>
        value instanceof RegExp ? value.test(seen[name]) : seen[name] === value);
    }, 15000).catch(error => assert.deepEqual(seen, { ...seen, ...expected }, error.message));
  };
}
