// What a page may know about its television: Examples/information by the keys that a viewer presses, while
// the television behind it changes.
import assert from "node:assert/strict";
import { describe, it } from "node:test";
import { Application, documents } from "./Harness/application.mjs";
import { useTelevision } from "./Harness/suite.mjs";
import { waitFor } from "./Harness/wait.mjs";

const see = ({ text, texts, isOpen }) => ({
  section: document.querySelector("#sections .focused").id.replace("section-", ""),
  summaries: texts("#sections .label").join(" | "),
  headline: text("#headline"),
  note: text("#note"),
  chips: texts("#chips li.on").join(" "),
  rows: texts("#rows div").length,
  firstRow: texts("#rows div:first-child dt, #rows div:first-child dd").join(": "),
  pages: text("#pages").replace(/[^0-9/]/g, ""),
  source: isOpen("#source") ? text("#source-text") : null,
  checks: isOpen("#checks")
});

const trusted = ["http://127.0.0.1:*"];

describe("The information page", () => {
  const television = useTelevision();
  const { receiver } = television;
  const page = new Application(television, "/examples/information/", see);
  const { load, open, press, sees } = page;

  for (const name of documents) {
    it(`shows its sections and pages by the arrow keys, as ${name}`, async () => {
      await open(name);
      await sees({ section: "capabilities", headline: "OITF_HD_UIPROF", pages: "1/2",
        chips: "META_SI META_EIT TRICKMODE RTSP AVCAD DRM DVB_T DVB_T2",
        firstRow: "MP4_AVC_SD_25_HEAAC: video/mp4, http",
        summaries: "6 formats | Deutsch, English | no module | locked above 16" });
      await press("RIGHT", "RIGHT");
      await sees({ pages: "2/2", firstRow: "Has +DL: no" });
      await press("DOWN");
      await sees({ section: "settings", headline: "DEU", rows: 3, firstRow: "Audio: Deutsch, English",
        pages: "" });
      await press("DOWN", "DOWN");
      await sees({ section: "parental", headline: "Locked above 16", chips: "17 18" });
      await press("UP");
      await sees({ section: "gateway", headline: "No module", rows: 3, chips: "" });
    });
  }

  it("hears a CI Plus module come and go without asking, and asks for the rest", async () => {
    await open("index.html?gateway");
    await receiver.setWorld("/drm/sas_session_open", true);
    await sees({ headline: "Module connected",
      summaries: "6 formats | Deutsch, English | module connected | locked above 16" });
    await receiver.setWorld("/drm/sas_session_open", false);
    await sees({ headline: "No module", chips: /^\S+ connected \S+ removed$/ });

    await receiver.setWorld("/drm/ciplus_types", "");
    await receiver.setWorld("/parental/lock_status", 255);
    await receiver.setWorld("/locale/audio_languages", "fra,xyz");
    await sees({ rows: 3 });
    await press("YELLOW");
    await sees({ rows: 1, summaries: "6 formats | Deutsch, English | no module | nothing locked" });
    await press("DOWN");
    await sees({ headline: "Nothing locked", chips: "", firstRow: "Rating scheme: dvb-si" });
    await press("UP", "UP");
    await sees({ firstRow: "Audio: Français, xyz" });
    await receiver.setWorld("/drm/ciplus_types", "urn:a,,urn:b");
    await press("DOWN", "YELLOW");
    await sees({ rows: 4 });
    await receiver.setWorld("/parental/lock_status", 16);
  });

  it("is told about CI Plus only while it is trusted, but hears of modules all the time", async () => {
    await open("index.html?gateway");
    await receiver.setWorld("/applications/trusted_origins", []);
    await press("YELLOW");
    await sees({ headline: "Not for this page", note: "Application not trusted", rows: 0 });
    await receiver.clearCalls();
    await receiver.setWorld("/drm/sas_session_open", true);
    await waitFor("it asks when it hears of the module", async () =>
      (await receiver.callNames("IDAEBrowserAPI.IsTrusted")).length > 0);
    assert.deepEqual(await receiver.callNames("IDAEBrowserAPI.GetCIPlusDrmType"), []);
    await receiver.setWorld("/applications/trusted_origins", trusted);
    await press("YELLOW");
    await sees({ headline: "Module connected", note: "For content that a CI Plus module protects" });
    await receiver.setWorld("/drm/sas_session_open", false);
  });

  it("says why a description cannot be read, and reads the next one", async () => {
    await open();
    const describe = text => receiver.setWorld("/capabilities/description", text);
    for (const [text, note] of [
      ["<profilelist a=\"b c\"/>", /^SyntaxError: /],
      ["<profilelist/>\n", /^SyntaxError: /],
      ["<profilelist>", /^the description is no XML$/],
      ["", /^the description is no XML$/]
    ]) {
      await describe(text);
      await press("YELLOW");
      await sees({ headline: "No description", rows: 0, note });
      await describe("<profilelist><ui_profile name='GOOD+ÄÖ'/></profilelist>");
      await press("YELLOW");
      await sees({ headline: "GOOD", chips: "ÄÖ" });
    }
    await press("GREEN");
    await sees({ source: "<profilelist>\n<ui_profile name=\"GOOD+ÄÖ\"/>\n</profilelist>" });
    await press("BLUE");
    await sees({ source: null, checks: true });
  });

  it("shows what it cannot know when the receiver dies", async () => {
    await load();
    await receiver.stop("SIGKILL");
    await page.pressInPage("YELLOW");
    await sees({ headline: "No description", summaries: "not told | not set | not told | nothing locked" });
    await receiver.start();
  });
});
