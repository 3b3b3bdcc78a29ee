// What a driver does in the shell: its keys are the remote control's, and the examples of the guide run as printed.
import assert from "node:assert/strict";
import { readFileSync, symlinkSync, writeFileSync } from "node:fs";
import { delimiter, join } from "node:path";
import { before, describe, it } from "node:test";
import webdriver from "selenium-webdriver";
import { startDriver } from "./Harness/browser.mjs";
import { build, shell, sourceRoot } from "./Harness/programs.mjs";
import { useTelevision } from "./Harness/suite.mjs";

const { Key } = webdriver;
const [red, navigation, everything] = [0x1, 0x10, 0x7ff];

const page = `<!DOCTYPE html><html><body><input id="field"><script>
var heard = [], owner = oipfObjectFactory.createApplicationManagerObject().getOwnerApplication(document);
for (const type of ["keydown", "keyup"])
  addEventListener(type, event => heard.push((type === "keyup" ? "-" : "") + event.keyCode));
</script></body></html>`;

describe("A driver", () => {
  const television = useTelevision();
  const { browser } = television;

  before(() => television.show("keys.html", page));

  // What the page has heard when the driver says that it is done.
  async function pressed(mask, ...keys) {
    await browser.run(value => {
      heard = [];
      owner.privateData.keyset.setValue(value);
    }, mask);
    await browser.driver.actions().sendKeys(...keys).perform();
    return browser.run(() => heard.join(" "));
  }

  it("presses keys of the remote control, through the key mask", async () => {
    assert.equal(await pressed(red | navigation, Key.F1, Key.F2, Key.ARROW_UP, Key.ESCAPE, "7", "a", " "),
      "403 -403 38 -38 461 -461");
    assert.ok(television.workplace.lines.some(line => line.endsWith(
      "the page does not get the key 404: its group, 0x2, is not in the key mask, 0x11")));
    assert.equal(await pressed(everything, Key.F2, Key.NUMPAD7, "7", Key.SPACE, Key.ADD, Key.TAB),
      "404 -404 55 -55 55 -55 32 -32 427 -427 9 -9");
  });

  it("types into an element what the key mask lets through", async () => {
    const field = await browser.driver.findElement({ id: "field" });
    await browser.run(value => owner.privateData.keyset.setValue(value), 0x100);
    await field.sendKeys("a7b8");
    assert.equal(await field.getAttribute("value"), "78");
  });

  it("runs the examples of the guide", async () => {
    const { workplace, server } = television;
    await browser.close();
    const guide = readFileSync(join(sourceRoot, "Docs/automated-tests.md"), "utf8");
    symlinkSync(join(sourceRoot, "node_modules"), join(workplace.env.HOME, "node_modules"));
    // What the shell is started with, its driver must not have.
    const preloads = Object.entries(workplace.preload).map(pair => pair.join("="));
    writeFileSync(join(workplace.env.HOME, "hbbtv-shell"), `#!/bin/sh\nexec env ${preloads.join(" ")} "${shell()}" "$@"\n`,
      { mode: 0o755 });
    workplace.env.PATH = [workplace.env.HOME, join(build, "Host/Control"), workplace.env.PATH].join(delimiter);
    workplace.env.DRIVER = (await startDriver(workplace)).url;
    delete workplace.env.HBBTV_LOG_LEVEL;
    for (const [language, program, name] of [["js", process.execPath, "zap.mjs"], ["python", "/usr/bin/python3", "zap.py"]]) {
      const path = join(workplace.env.HOME, name);
      writeFileSync(path, new RegExp("```" + language + "\n([^]*?)```").exec(guide)[1]);
      const { code, lines } = await workplace.run(program, [path, server.url("/examples/zapper/index.html")]);
      assert.equal(code, 0, lines.join("\n"));
      assert.ok(lines.includes("passed"));
    }
  });
});
