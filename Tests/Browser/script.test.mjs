// The bootstrap script alone, in WebKit's own small browser, over stand-in native objects that note what
// reaches them.
import assert from "node:assert/strict";
import { afterEach, describe, it } from "node:test";
import { Browser } from "./Harness/browser.mjs";
import { PageServer } from "./Harness/pages.mjs";
import { miniBrowser } from "./Harness/programs.mjs";
import { use } from "./Harness/suite.mjs";
import { Workplace } from "./Harness/workplace.mjs";

const types = {
  oldProfile: [
    "application/oipfApplicationManager", "application/oipfConfiguration", "application/oipfCapabilities",
    "application/oipfGatewayInfo", "application/oipfParentalControlManager", "video/broadcast", "audio/mp3",
    "audio/mp4", "audio/mpeg", "video/mp4", "video/mpeg", "video/mpeg4", "video/x-ms-wmv",
    "application/vnd.apple.mpegurl", "application/vnd.oipf.contentaccessstreaming+xml"
  ],
  newProfile: [
    "application/oipfDrmAgent", "application/oipfSearchManager", "application/dash+xml", "video/vnd.3gpp.mpd"
  ],
  never: [
    "video/vnd.ms-playready.media.pyv", "audio/vnd.ms-playready.media.pya",
    "application/vnd.ms-playready.initiator+xml", "text/html", "application/x-other"
  ]
};

describe("The bootstrap script", () => {
  const workplace = new Workplace();
  const server = new PageServer();
  const browser = new Browser(workplace, miniBrowser());
  use(workplace, server, browser);

  // Nothing that the script does may surface as an error of the page.
  afterEach(async () => {
    assert.deepEqual(await browser.run(() => window.failures), []);
  });

  const open = (query = "") => browser.open(server.url(`/pages/script.html?${query}`));

  // What the function sees on a new page, where it calls its argument with it.
  async function seenBy(pageFunction, query) {
    await open(query);
    return browser.runAsync(pageFunction);
  }

  describe("decides by profile", () => {
    const expectations = [
      ["no HbbTV token", "Mozilla/5.0", []],
      ["HbbTV/1.1.1", "Mozilla/5.0 HbbTV/1.1.1 (;;;;;)", types.oldProfile],
      ["hbbtv/1.2.1, lower case", "Mozilla/5.0 hbbtv/1.2.1 (;;;;;)", types.oldProfile.concat(types.newProfile)],
      ["HbbTV/1.5.1", "Mozilla/5.0 HbbTV/1.5.1 (;;;;;)", types.oldProfile.concat(types.newProfile)]
    ];
    for (const [name, agent, supported] of expectations) {
      it(`which elements are upgraded: ${name}`, async () => {
        const all = Object.values(types).flat();
        await open("agent=" + encodeURIComponent(agent));
        const upgraded = await browser.runAsync((mimes, done) => {
          const root = document.getElementById("root");
          root.innerHTML = mimes.map(mime => `<object type="${mime}"></object>`).join("");
          const upgraded = () => Array.from(root.children).filter(object => object.__reflected);
          setTimeout(() => done(upgraded().map(object => object.getAttribute("type"))));
        }, all);
        assert.deepEqual(upgraded.sort(), [...supported].sort());
        const offered = await browser.run(
          mimes => mimes.filter(mime => oipfObjectFactory.isObjectSupported(mime.toUpperCase())), all);
        assert.deepEqual(offered.sort(), [...supported].sort());
      });
    }
  });

  describe("upgrades on first touch", () => {
    it("before insertion, and keeps that object when the observer comes by later", async () => {
      const made = await seenBy(done => {
        const object = document.createElement("object");
        object.type = "video/broadcast";
        object.bindToCurrentChannel();
        document.body.appendChild(object);
        setTimeout(() => done([fakes.made, object.__reflected.__fake.calls.length, object.children.length]));
      });
      assert.deepEqual(made, [1, 3, 1]);
    });

    it("hands over what the page had set before", async () => {
      const state = await seenBy(done => done(["play", "queue"].map(begin => {
        const object = document.createElement("object");
        const handler = () => {};
        object.onPlayStateChange = handler;
        object.data = "film.mp4";
        object.setAttribute("width", "640");
        object.setAttribute("height", "360");
        object.innerHTML = '<param name="quality" value="high">';
        object.setAttribute("type", "video/mp4");
        const { width } = (void object.play, object);
        object.height = 50;
        const { state: { given, ...state }, calls } = (object[begin](1), object.__reflected.__fake);
        return [object.onPlayStateChange === handler, state.onPlayStateChange === handler, state.type,
          state.data, given, object.type, width, object.width, object.height,
          calls.slice(-2), (object.setFullScreen(true), calls.length), object.__reflected.__fake.listeners.length];
      })));
      const given = { data: "film.mp4", width: "640", height: "360", type: "video/mp4", quality: "high" };
      // A player is told its size when there is one.
      assert.deepEqual(state, ["play", "queue"].map(begin => [true, true, "video/mp4", "film.mp4", given, "video/mp4",
        640, 640, 50, [[begin, 1], ["set width", 640]], 8, 0]));
    });

    it("but the element stays an event target, whatever listens and since when", async () => {
      const seen = await seenBy(done => {
        const heard = [];
        const hear = name => event => heard.push(`${name} ${event.type}`);
        const [early, gone, once, refused] = ["early", "gone", "once", "refused"].map(hear);
        const object = { handleEvent: hear("object") };
        const video = document.createElement("object");
        for (const listener of [early, gone, object])
          video.addEventListener("PlayStateChange", listener);
        video.addEventListener("click", early);
        video.removeEventListener("PlayStateChange", gone);
        video.type = "video/broadcast";
        document.body.appendChild(video);
        const given = [[undefined, refused], ["PlayStateChange", refused, false, 1], ["PlayStateChange", 5]];
        const answered = given.map(args => {
          try {
            return video.addEventListener(...args);
          } catch (e) {
            return e.message;
          }
        });
        video.addEventListener("PlayStateChange", refused);
        video.addEventListener("PlayStateChange", once, { once: true });
        video.addEventListener("PlayStateChange", object);
        video.dispatchEvent(new Event("undefined"));
        const fake = video.__reflected.__fake;
        const steps = [() => video.click(), () => fake.changePlayState(2),
          () => video.removeEventListener("PlayStateChange", object), () => fake.changePlayState(1),
          () => video.removeEventListener("click", early), () => video.click(), () => fake.changePlayState(2),
          () => video.addEventListener("PlayStateChange", early), () => fake.changePlayState(1)];
        const told = steps.map(step => (step(), heard.splice(0)));
        video.remove();
        setTimeout(() => done([answered, told, fake.listeners.length]));
      });
      const answers = ["SecurityError", "SecurityError", null];
      const always = ["early PlayStateChange", "refused PlayStateChange"];
      const after = [[], [always[1]], [], [always[1], always[0]]];
      const first = [always[0], "object PlayStateChange", always[1], "once PlayStateChange"];
      assert.deepEqual(seen, [answers, [["early click"], first, [], always, [], ...after], 0]);
    });

    it("leaves other object elements as they are", async () => {
      await open();
      const seen = await browser.run(() => {
        const object = document.createElement("object");
        object.type = "image/png";
        object.data = "a.png";
        object.width = 7;
        object.name = "n";
        object.play = 5;
        const inherited = Object.keys(HTMLObjectElement.prototype);
        HTMLObjectElement.prototype.release = 7;
        Object.defineProperty(HTMLElement.prototype, "setFullScreen", { get() { return this.name; } });
        let clicks = 0;
        object.addEventListener("click", () => ++clicks);
        object.click();
        return [object.type, object.getAttribute("data"), object.width, object.name, object.play,
          Object.keys(object), object.stop, clicks, inherited.includes("stop"), object.__reflected,
          object.release, object.setFullScreen];
      });
      assert.deepEqual(seen, ["image/png", "a.png", "7", "n", 5, ["play"], null, 1, false, null, 7, "n"]);
    });
  });

  describe("follows the markup", () => {
    it("when attributes and params change, in the same task and later", async () => {
      const seen = await seenBy(done => {
        document.getElementById("root").innerHTML = '<object id="v" type="video/mp4" data="a.mp4"></object>';
        const video = document.getElementById("v");
        const { state, calls } = (video.play(1), video.__reflected.__fake);
        video.setAttribute("data", "b.mp4");
        video.play(1);
        const inTask = calls.slice(-2);
        const before = calls.length;
        // What is as it was, what animates, what is a handler's text and what went on elsewhere is not told.
        video.id = "w";
        video.id = "v";
        video.setAttribute("style", "color: red");
        video.setAttribute("class", "film");
        video.setAttributeNS(null, "onPlayStateChange", "x()");
        video.setAttribute("width", "100%");
        video.setAttribute("height", "360");
        video.setAttribute("data", "c.mp4");
        video.data = "d.mp4";
        video.appendChild(document.createElement("param")).name = "passing";
        document.body.appendChild(video.lastChild);
        const param = document.createElement("param");
        param.name = "late";
        param.value = "1";
        video.appendChild(param);
        const told = () => calls.slice(before).filter(([name]) => name === "setAttributes")
          .flatMap(([, attributes]) => Object.keys(attributes));
        setTimeout(() => done([inTask, state.data, state.width, state.height, told(), state.onPlayStateChange]));
      });
      assert.deepEqual(seen, [[["set data", "b.mp4"], ["play", 1]], "d.mp4", "", 360,
        ["width", "height", "data", "late"], null]);
    });

    it("when the type changes: the same kind keeps its object, another kind gets another", async () => {
      const seen = await seenBy(done => {
        document.getElementById("root").innerHTML = '<object id="v" type="video/broadcast"></object><object></object>';
        const video = document.getElementById("v");
        void video.bindToCurrentChannel;
        video.setAttribute("type", "video/mp4");
        const touched = typeof video.play;
        // A document that may come back goes on being looked at.
        window.dispatchEvent(new PageTransitionEvent("pagehide", { persisted: true }));
        // Nobody touches this one.
        video.nextSibling.setAttribute("type", "Video/Broadcast");
        const handler = () => {};
        video.onPlayStateChange = handler;
        const first = video.__reflected;
        video.setAttribute("type", "application/dash+xml");
        video.play(1);
        const same = [touched, video.__reflected === first, first.__fake.state.type];
        setTimeout(() => {
          const kept = [video.__reflected === first, video.onPlayStateChange === handler];
          video.setAttribute("type", "video/broadcast");
          video.onPlayStateChange = handler;
          video.bindToCurrentChannel();
          const second = video.__reflected;
          const released = first.__fake.calls.some(call => call[0] === "release");
          setTimeout(() => done([same, kept, second.__fake.name, video.__reflected === second, released,
            second.__fake.state.onPlayStateChange === handler, Object.keys(video).includes("play"),
            video.querySelectorAll("hole").length, first.__fake.listeners.length,
            video.nextSibling.__reflected.__fake.name]));
        });
      });
      assert.deepEqual(seen,
        [["function", true, "application/dash+xml"], [true, true], "OipfVideoBroadcast", true, true, true, false, 1,
          0, "OipfVideoBroadcast"]);
    });
  });

  describe("ends an object with its element", () => {
    it("removed: released, unmarked, no longer touchable; inserted again: a new object", async () => {
      const seen = await seenBy(done => {
        const root = document.getElementById("root");
        root.innerHTML = '<object id="v" type="video/mp4"><p>fallback</p></object>';
        const video = document.getElementById("v");
        video.play(1);
        video.onPlayStateChange = () => {};
        video.addEventListener("PlayStateChange", () => {}, false);
        const first = video.__reflected;
        const marker = Object.getOwnPropertyDescriptor(video, "__reflected");
        delete marker.value;
        const { play } = video;
        root.removeChild(video);
        setTimeout(() => {
          const { calls, listeners, state } = first.__fake;
          const gone = [calls.filter(call => call[0] === "release").length, listeners.length,
            state.onPlayStateChange, "__reflected" in video, Object.keys(video), video.play,
            video.innerHTML, fakes.made];
          root.appendChild(video);
          video.setAttribute("data", "before.mp4");
          const again = [video.play(1), video.__reflected !== first, fakes.made];
          video.setAttribute("data", "again.mp4");
          play(2);
          setTimeout(() => done([marker, gone, again, fakes.made, video.__reflected.__fake.listeners.length,
            video.__reflected.__fake.calls.slice(2)]));
        });
      });
      assert.deepEqual(seen, [{ configurable: true, enumerable: false, writable: false },
        [1, 0, null, false, [], null, "<p>fallback</p>", 1], [true, true, 2], 2, 1,
        [["set data", "before.mp4"], ["play", 1], ["setAttributes", { data: "again.mp4" }],
          ["set data", "again.mp4"], ["play", 2]]]);
    });

    it("removed before others are added, each for itself, whatever the page did to it", async () => {
      const seen = await seenBy(done => {
        const root = document.getElementById("root");
        const make = () => {
          const video = root.appendChild(document.createElement("object"));
          video.setAttribute("type", "video/broadcast");
          return video;
        };
        const videos = [make(), make()];
        const fakesOf = videos.map(video => (video.bindToCurrentChannel(), video.__reflected.__fake));
        const listener = () => {};
        for (let i = 0; i < 2; ++i)
          videos[0].addStreamEventListener("url", "event", listener);
        try {
          videos[0].removeStreamEventListener("url", "event", listener, 4);
        } catch (e) {
          // Refused, and nothing has changed.
        }
        for (const args of [["other", "event", listener], ["url", "other", listener], ["url", "event", () => {}]]) {
          videos[0].addStreamEventListener(...args);
          videos[0].removeStreamEventListener(...args);
        }
        let finalized = 0;
        videos[1].finalize = () => ++finalized;
        videos[0].release = () => { throw new Error("own"); };
        root.innerHTML = "";
        make();
        const subscriptions = () => fakesOf[0].calls.filter(([name]) => name.endsWith("StreamEventListener"));
        setTimeout(() => done([fakes.order, finalized, subscriptions().map(([name, , event]) => `${name} ${event}`)]));
      });
      const between = ["event", "other", "event"].flatMap(name => [`add ${name}`, `remove ${name}`]);
      const subscribed = ["add event", "add event", ...between, "remove event"];
      assert.deepEqual(seen, [["make 1", "make 2", "release 1", "release 2", "make 3"], 1,
        subscribed.map(each => each.replace(" ", "StreamEventListener "))]);
    });

    it("also one that came, was used and went within one task", async () => {
      const calls = await seenBy(done => {
        const root = document.getElementById("root");
        root.innerHTML = '<object id="v" type="video/broadcast"></object>';
        const video = document.getElementById("v");
        // Used before it comes, and it comes inside of another element.
        const loose = document.createElement("object");
        loose.type = "video/broadcast";
        const used = [video, loose].map(object => (object.bindToCurrentChannel(), object.__reflected));
        root.innerHTML = "<p></p>";
        root.firstChild.appendChild(loose);
        root.innerHTML = "";
        setTimeout(() => done(used.map(oipf => oipf.__fake.calls.map(call => call[0]))));
      });
      for (const names of calls)
        assert.deepEqual(names.filter(name => !name.startsWith("set")), ["bindToCurrentChannel", "release"]);
    });
  });

  describe("shows where the video is", () => {
    it("through a hole while an A/V object plays or pauses, black otherwise, whatever the page writes", async () => {
      const seen = await seenBy(done => {
        document.getElementById("root").innerHTML = '<object id="v" type="video/mp4"></object>';
        const video = document.getElementById("v");
        void video.play;
        const shown = () => Array.from(video.children, child => `${child.localName} ${child.style.backgroundColor}`);
        const states = [0, 1, 2, 5, 3, 1].map(state => (video.__reflected.__fake.changePlayState(state), shown()));
        // A page that takes it away again and again is not answered for ever.
        let times = 0;
        let emptying = true;
        const taken = new MutationObserver(() => {
          if (emptying && video.firstChild && ++times < 1000)
            video.innerHTML = "";
        });
        requestAnimationFrame(() => requestAnimationFrame(() => (emptying = false)));
        taken.observe(video, { childList: true });
        for (let i = 0; i < 20; ++i) {
          video.innerHTML = "<p></p>";
          void video.playState;
        }
        const waitForHole = () => (!emptying && video.querySelector("hole") ? done([states, shown(), times < 10])
          : requestAnimationFrame(waitForHole));
        waitForHole();
      });
      const black = ["div black"];
      const hole = ["hole "];
      assert.deepEqual(seen, [[black, hole, hole, black, black, hole], hole, true]);
    });

    it("and tells the object where the hole is, also in a copied element", async () => {
      const seen = await seenBy(done => {
        const root = document.getElementById("root");
        root.innerHTML = '<object id="v" type="video/broadcast"></object>';
        const video = document.getElementById("v");
        video.bindToCurrentChannel();
        const copy = root.appendChild(video.cloneNode(true));
        setTimeout(() => {
          const detail = { x: 1, y: 2, width: 3, height: 4 };
          copy.querySelector("hole").dispatchEvent(new CustomEvent("geometrychanged", { detail }));
          const windows = object => object.__reflected.__fake.calls.filter(call => call[0] === "setWindow");
          done([copy.children.length, windows(copy), windows(video)]);
        });
      });
      assert.deepEqual(seen, [1, [["setWindow", 1, 2, 3, 4]], []]);
    });
  });

  describe("gives pages the object factory", () => {
    it("whose elements work as those of the document, with or without internal objects", async () => {
      for (const internal of [false, true]) {
        const seen = await seenBy(done => {
          const object = oipfObjectFactory.createVideoMpegObject();
          const listener = () => {};
          object.addEventListener("PlayStateChange", listener);
          object.play(1);
          const fake = (object.internal ?? object.__reflected).__fake;
          document.body.appendChild(object);
          object.setAttribute("width", "640");
          const param = document.createElement("param");
          param.name = "late";
          param.value = "1";
          const steps = [
            () => object.appendChild(param),
            () => (param.value = "2", object.dispatchEvent(new Event("webkitobjectparamadded", { bubbles: true }))),
            () => fake.changePlayState(1),
            () => object.remove(),
            () => (fake.state.playState = 0, document.body.appendChild(object))
          ];
          const shown = [];
          const next = () => {
            shown.push(Array.from(object.children, child => child.localName).join());
            const step = steps.shift();
            if (step)
              setTimeout(next, void step());
            else
              done([fakes.order, object.getAttribute("type"), fake.state.width, fake.state.given, shown,
                fake.listeners.some(each => each.listener === listener)]);
          };
          next();
        }, internal ? "internal" : "");
        const given = { type: "video/mpeg", width: "640", late: internal ? "2" : "1" };
        // One of a page's own making keeps its object out of the document, but not its player.
        const kept = [["make 1", "release 1"], "video/mpeg", 640, given,
          ["div", "div,param", "div,param", "hole,param", "hole,param", "div,param"], true];
        const anew = [["make 1", "release 1", "make 2"], "video/mpeg", 640, given,
          ["div", "div,param", "div,param", "hole,param", "param", "param,div"], false];
        assert.deepEqual(seen, internal ? kept : anew, `internal objects: ${internal}`);
      }
    });

    it("which makes everything that there is", async () => {
      await open();
      const made = await browser.run(() => Object.keys(oipfObjectFactory).sort().map(name => {
        try {
          const object = oipfObjectFactory[name]("");
          return [name, object.__fake?.name ?? object.__reflected?.__fake.name ?? typeof object];
        } catch (e) {
          return [name, `${e.name}: ${e.message}`];
        }
      }));
      const kinds = ["ApplicationManager", "Capabilities", "Configuration", "DrmAgent", "GatewayInfo",
        "ParentalControlManager", "SearchManager"];
      const others = ["StatusView", "CodManager", "DownloadManager", "DownloadTrigger", "IMS", "NotifSocket",
        "RecordingScheduler", "RemoteControlFunction", "MDTF", "RemoteManagement"];
      assert.deepEqual(Object.fromEntries(made), Object.fromEntries([
        ["isObjectSupported", "boolean"], ["createChannelConfig", "ChannelConfig"],
        ["createVideoBroadcastObject", "OipfVideoBroadcast"], ["createVideoMpegObject", "OipfAVControl"],
        ...kinds.map(kind => [`create${kind}Object`, `Oipf${kind}`]),
        ...others.map(kind => [`create${kind}Object`, "TypeError: Object is not supported."])
      ]));
    });
  });

  describe("stays out of the page's way", () => {
    it("when an object cannot be made", async () => {
      const seen = await seenBy(done => {
        document.getElementById("root").innerHTML = '<object id="v" type="video/broadcast">text</object>';
        const video = document.getElementById("v");
        const member = video.bindToCurrentChannel;
        video.onPlayStateChange = 5;
        setTimeout(() => done([member, video.onPlayStateChange, video.__reflected, video.innerHTML]));
      }, "refused=OipfVideoBroadcast");
      assert.deepEqual(seen, [null, 5, null, "text"]);
    });

    it("on pages that freeze, extend and replace what it stands on", async () => {
      const seen = await seenBy(done => {
        "use strict";
        Object.prototype.polluted = function () { throw new Error("polluted"); };
        window.MutationSummary = null;
        for (const { prototype } of [Object, Array, Function, HTMLObjectElement, Element, Node])
          Object.freeze(prototype);
        const root = document.getElementById("root");
        root.innerHTML = '<object id="v" type="video/mp4"></object><object id="f" type="video/mp4"></object>';
        const video = document.getElementById("v");
        const frozen = Object.freeze(document.getElementById("f"));
        console.log = () => video.playState;
        video.onPlayStateChange = { toString() { throw new Error("no text"); } };
        video.ownThing = 1;
        void frozen.play;
        setTimeout(() => {
          video.setAttribute("data", "b.mp4");
          const polluted = Object.keys(video).includes("polluted");
          setTimeout(() => done([video.play(1), video.data, video.ownThing, polluted, fakes.made]));
        });
      });
      assert.deepEqual(seen, [true, "b.mp4", 1, false, 1]);
    });

    it("without a line on the console where nothing shows them", async () => {
      const lines = [];
      for (const query of ["", "quiet"]) {
        await open(query);
        lines.push(await browser.run(() => (oipfObjectFactory.createVideoMpegObject().play(1), fakes.logged.length)));
      }
      assert.deepEqual([lines[0] > 3, lines[1]], [true, 0]);
    });
  });
});
