// Examples/carousel, an application that lives in the object carousel, by the keys that a viewer presses.
import assert from "node:assert/strict";
import { cpSync, mkdtempSync, rmSync, writeFileSync } from "node:fs";
import { tmpdir } from "node:os";
import { dirname, join } from "node:path";
import { after, before, describe, it } from "node:test";
import { defaultScenario } from "./Harness/programs.mjs";
import { Television } from "./Harness/television.mjs";
import { waitFor } from "./Harness/wait.mjs";

const home = "dvb://3070.3e9.65/carousel/";
const examples = dirname(dirname(defaultScenario));

const look = () => {
  const text = id => document.getElementById(id)?.textContent;
  const video = document.getElementById("video")?.getBoundingClientRect();
  return {
    path: location.pathname + location.search,
    section: document.querySelector("#sections .focused")?.id.replace("section-", ""),
    headline: text("headline"),
    note: text("note"),
    trouble: document.getElementById("note")?.classList.contains("trouble"),
    picture: document.getElementById("picture")?.getAttribute("src"),
    rows: document.querySelectorAll("#rows div").length,
    ticker: text("ticker"),
    video: video && `${video.width}x${video.height}`
  };
};

describe("Digital text", () => {
  let television, browser, receiver, folder;

  before(async () => {
    folder = mkdtempSync(join(tmpdir(), "hbbtv-digital-text-"));
    for (const part of ["carousel", "shared"])
      cpSync(join(examples, part), join(folder, part), { recursive: true });
    television = await Television.start();
    ({ browser, receiver } = television);
  });

  after(async () => {
    await television?.close();
    rmSync(folder, { recursive: true, force: true });
  });

  async function open(address = home) {
    await browser.open(address);
    return browser.waitFor("the verdict is given",
      () => document.getElementById("verdict").getAttribute("data-verdict"));
  }

  async function press(...keys) {
    for (const key of keys)
      await receiver.pressKey(key);
  }

  // Waits until the viewer sees all of this.
  async function sees(expected) {
    let seen;
    await waitFor(`the viewer sees ${JSON.stringify(expected)}`, async () => {
      seen = await browser.run(look);
      return Object.keys(expected).every(name => seen[name] === expected[name]);
    }).catch(error => assert.deepEqual(seen, { ...seen, ...expected }, error.message));
  }

  it("is read page by page, beside or without the picture of its channel", async () => {
    assert.equal(await open(), "pass", await browser.run(() => document.getElementById("verdict").textContent));
    await sees({ section: "news", headline: "Nordlicht news", picture: "images/news.svg", video: "320x180" });
    await press("VK_DOWN");
    await sees({ section: "weather", headline: "Weather", rows: 3 });
    await press("VK_DOWN");
    await sees({ section: "programmes", headline: "Nordlicht 1", trouble: false });
    await sees({ ticker: "Live: hello from the carousel" });
    await press("VK_RED");
    await sees({ video: "1280x720" });
    await press("VK_UP", "VK_RED");
    await sees({ video: "320x180", section: "programmes" });
  });

  it("has a second page, from which it is found again", async () => {
    await open();
    await press("VK_UP");
    await sees({ section: "about" });
    await press("VK_ENTER");
    await sees({ path: "/carousel/about/index.html?from=about" });
    await browser.waitFor("its script has come", () =>
      document.getElementById("address").textContent.endsWith("/about/index.html?from=about"));
    await press("VK_BACK");
    await sees({ path: "/carousel/index.html?about", section: "about" });
  });

  it("shows what is broadcast now, and says what is not", async () => {
    await receiver.setWorld("/carousel/folder", folder);
    const weather = join(folder, "carousel/pages/weather.json");
    await open();
    rmSync(weather);
    await press("VK_DOWN");
    await sees({ headline: "Not on air", note: "This page is not being broadcast", trouble: true, rows: 0 });
    writeFileSync(weather, JSON.stringify({ headline: "Storm", rows: [["Coast", "gales"]] }));
    await press("VK_GREEN");
    await sees({ headline: "Storm", note: "", trouble: false, rows: 1 });
    writeFileSync(weather, "half a fi");
    await press("VK_GREEN");
    await sees({ headline: "Not on air", trouble: true });
    await receiver.fail("DSMCC.FileRequest", "no signal");
    await press("VK_GREEN");
    await sees({ headline: "No page", note: "The page did not arrive", trouble: true });
    await receiver.resetMethods();
  });

  it("starts by its name in the application table of the channel", async () => {
    const windows = await browser.driver.getAllWindowHandles();
    await television.open("plain.html");
    await browser.run(() => {
      oipfObjectFactory.createApplicationManagerObject().getOwnerApplication(document)
        .createApplication("dvb://current.ait/13.2?weather", false);
    });
    const added = await waitFor("the application has a view", async () =>
      (await browser.driver.getAllWindowHandles()).find(handle => !windows.includes(handle)));
    await browser.driver.switchTo().window(added);
    await sees({ section: "weather", path: "/carousel/?weather" });
  });
});
