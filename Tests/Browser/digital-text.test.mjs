// Examples/carousel, an application that lives in the object carousel, by the keys that a viewer presses.
import { cpSync, mkdtempSync, rmSync, writeFileSync } from "node:fs";
import { tmpdir } from "node:os";
import { dirname, join } from "node:path";
import { after, before, describe, it } from "node:test";
import { Application } from "./Harness/application.mjs";
import { defaultScenario } from "./Harness/programs.mjs";
import { useTelevision } from "./Harness/suite.mjs";

const examples = dirname(dirname(defaultScenario));

// There is no more than the address on its second page.
const see = ({ text }) => {
  const video = document.getElementById("video")?.getBoundingClientRect();
  return {
    path: location.pathname + location.search,
    section: document.querySelector("#sections .focused")?.id.replace("section-", ""),
    headline: text("#headline"),
    note: text("#note"),
    trouble: document.getElementById("note")?.classList.contains("trouble"),
    picture: document.getElementById("picture")?.getAttribute("src"),
    rows: document.querySelectorAll("#rows div").length,
    ticker: text("#ticker"),
    video: video && `${video.width}x${video.height}`
  };
};

describe("Digital text", () => {
  const television = useTelevision();
  const { browser, receiver } = television;
  const { open, press, sees } = new Application(television, "dvb://3070.3e9.65/carousel/", see);
  const folder = mkdtempSync(join(tmpdir(), "hbbtv-digital-text-"));

  before(() => {
    for (const part of ["carousel", "shared"])
      cpSync(join(examples, part), join(folder, part), { recursive: true });
  });

  after(() => rmSync(folder, { recursive: true, force: true }));

  it("is read page by page, beside or without the picture of its channel", async () => {
    await open("");
    await sees({ section: "news", headline: "Nordlicht news", picture: "images/news.svg", video: "320x180" });
    await press("DOWN");
    await sees({ section: "weather", headline: "Weather", rows: 3 });
    await press("DOWN");
    await sees({ section: "programmes", headline: "Nordlicht 1", trouble: false });
    await sees({ ticker: "Live: hello from the carousel" });
    await press("RED");
    await sees({ video: "1280x720" });
    await press("UP", "RED");
    await sees({ video: "320x180", section: "programmes" });
  });

  it("has a second page, from which it is found again", async () => {
    await open();
    await press("UP");
    await sees({ section: "about" });
    await press("ENTER");
    await sees({ path: "/carousel/about/index.html" });
    await browser.waitFor("its script has come", () =>
      document.getElementById("address").textContent.endsWith("/about/index.html"));
    await press("BACK");
    await sees({ path: "/carousel/index.html?about", section: "about" });
  });

  it("shows what is broadcast now, and says what is not", async () => {
    await receiver.setWorld("/carousel/folder", folder);
    const weather = join(folder, "carousel/pages/weather.json");
    await open();
    rmSync(weather);
    await press("DOWN");
    await sees({ headline: "Not on air", note: "This page is not being broadcast", trouble: true, rows: 0 });
    writeFileSync(weather, JSON.stringify({ headline: "Storm", rows: [["Coast", "gales"]] }));
    await press("GREEN");
    await sees({ headline: "Storm", note: "", trouble: false, rows: 1 });
    writeFileSync(weather, "half a fi");
    await press("GREEN");
    await sees({ headline: "Not on air", trouble: true });
    await receiver.fail("DSMCC.FileRequest", "no signal");
    await press("GREEN");
    await sees({ headline: "No page", note: "The page did not arrive", trouble: true });
    await receiver.resetMethods();
  });

  it("starts by its name in the application table of the channel", async () => {
    await television.open("plain.html");
    await television.enterApplication("dvb://current.ait/13.2?weather");
    await sees({ section: "weather", path: "/carousel/?weather" });
  });
});
