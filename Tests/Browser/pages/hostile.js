// Replaces every built-in that a script could use, puts accessors on Object.prototype and setters for indices on
// Array.prototype, and then does what any application does. What is used of it all besides is told in
// window.result.used; the page itself uses what it has kept. As nothing can look into such a page, it
// puts everything back at the end and asks the server for /pages/done.
(() => {
  "use strict";
  const { ownKeys, getOwnPropertyDescriptor, defineProperty, deleteProperty } = Reflect;
  const { Error, String, setTimeout } = window;
  const uncurry = Function.prototype.bind.bind(Function.prototype.call);
  const method = (prototype, name) => uncurry(prototype[name]);
  const setInnerHtml = uncurry(getOwnPropertyDescriptor(Element.prototype, "innerHTML").set);
  const setData = uncurry(getOwnPropertyDescriptor(HTMLObjectElement.prototype, "data").set);
  const firstChild = uncurry(getOwnPropertyDescriptor(Element.prototype, "firstElementChild").get);
  const localName = uncurry(getOwnPropertyDescriptor(Element.prototype, "localName").get);
  const appendChild = method(Node.prototype, "appendChild");
  const remove = method(Element.prototype, "remove");
  const cloneNode = method(Node.prototype, "cloneNode");
  const setAttribute = method(Element.prototype, "setAttribute");
  const createElement = method(Document.prototype, "createElement");
  const getElementById = method(Document.prototype, "getElementById");
  const root = document.getElementById("root");

  const used = [];
  const restores = [];

  function append(list, value) {
    defineProperty(list, list.length,
      { __proto__: null, value, writable: true, enumerable: true, configurable: true });
  }

  function replace(object, key, label) {
    const old = getOwnPropertyDescriptor(object, key);
    const isThere = old && old.configurable && (typeof old.value === "function" || old.get);
    if ((old && !isThere) || key === "constructor")
      return;
    const name = label + "." + String(key);
    const bad = function () {
      append(used, name);
      throw new Error("The page has replaced " + name);
    };
    append(restores, () => (old ? defineProperty(object, key, old) : deleteProperty(object, key)));
    defineProperty(object, key, old && old.value
      ? { __proto__: null, value: bad, writable: true, configurable: true, enumerable: old.enumerable }
      : { __proto__: null, get: bad, set: bad, configurable: true, enumerable: !old || old.enumerable });
  }

  function poison() {
    const names = ["Array", "Map", "Set", "WeakMap", "WeakSet", "WeakRef", "Function", "String", "Number", "RegExp",
      "Promise", "Symbol", "EventTarget", "Node", "Element", "Document", "HTMLElement", "HTMLObjectElement",
      "HTMLParamElement", "HTMLIFrameElement", "MutationObserver", "MutationRecord", "IntersectionObserver",
      "IntersectionObserverEntry", "ResizeObserver", "NodeList", "HTMLCollection", "NamedNodeMap", "Attr",
      "CSSStyleDeclaration", "HTMLCanvasElement", "CanvasRenderingContext2D", "ImageData", "ShadowRoot", "Event",
      "CustomEvent", "UIEvent", "KeyboardEvent", "AnimationEvent", "DOMRectReadOnly",
      "Object"];
    const constructors = names.map(name => window[name]);
    const ofArrays = Object.getPrototypeOf([][Symbol.iterator]());
    const objects = [JSON, Reflect, Math, console, PrivateObjectFactory, ofArrays, Object.getPrototypeOf(ofArrays)];
    const labels = ["JSON", "Reflect", "Math", "console", "PrivateObjectFactory", "ArrayIterator", "Iterator"];
    const options = ["attributeFilter", "attributeOldValue", "attributes", "capture", "characterData", "childList",
      "configurable", "detail", "done", "enumerable", "get", "height", "next", "once", "passive", "set", "signal",
      "subtree", "value", "width", "writable", "x", "y", "added", "removed", "attributeChanged", "data", "type", "play",
      "stop", "release", "profile", "profiles", "mimes", "listener", "native", "seen", "hole", "fallback",
      "box", "mover", "emptied", "paint", "host", "player",
      "mode", "alpha", "willReadFrequently", "colorSpace", "body", "canvas", "restyleVeil", "root"];
    const globals = ["MutationSummary", "requestAnimationFrame", "parseInt", "JSON", "Reflect", "console"];
    const replaced = names.concat(globals);
    const values = replaced.map(name => window[name]);
    const { prototype } = Object;
    const has = method(Set.prototype, "has");
    // Members of native objects that every element shows are the television's.
    const shown = new Set(ownKeys(HTMLObjectElement.prototype).filter(key => !String(
      getOwnPropertyDescriptor(HTMLObjectElement.prototype, key).get ?? "[native code]").includes("[native code]")));
    for (let i = 0; i < 12; ++i)
      replace(Array.prototype, String(i), "Array.prototype");
    for (let i = 0; i < names.length; ++i) {
      const own = ownKeys(constructors[i]);
      for (let j = 0; j < own.length; ++j)
        replace(constructors[i], own[j], names[i]);
      const keys = ownKeys(constructors[i].prototype);
      for (let j = 0; j < keys.length; ++j) {
        if (!has(shown, keys[j]) || names[i] !== "HTMLObjectElement")
          replace(constructors[i].prototype, keys[j], names[i] + ".prototype");
      }
    }
    for (let i = 0; i < objects.length; ++i) {
      const keys = ownKeys(objects[i]);
      for (let j = 0; j < keys.length; ++j)
        replace(objects[i], keys[j], labels[i]);
    }
    for (let i = 0; i < replaced.length; ++i)
      append(restores, () => (window[replaced[i]] = values[i]));
    for (let i = 0; i < replaced.length; ++i)
      window[replaced[i]] = null;
    for (let i = 0; i < options.length; ++i)
      replace(prototype, options[i], "Object.prototype");
  }

  const result = { __proto__: null, used };
  const heard = [];
  result.heard = heard;
  let failed = null;
  let looks = 0;

  // One after the other, each when its condition holds.
  const steps = [];
  function step(ready, action) {
    append(steps, { __proto__: null, ready, action });
  }
  function run(i) {
    if (i === steps.length) {
      end();
      return;
    }
    try {
      if (!steps[i].ready()) {
        if (++looks > 500)
          throw new Error("It never became ready.");
        setTimeout(() => run(i), 10);
        return;
      }
      steps[i].action();
    } catch (e) {
      failed = `step ${i}: ${e.message}`;
      end();
      return;
    }
    setTimeout(() => run(i + 1), 0);
  }
  function end() {
    for (let i = restores.length - 1; i >= 0; --i)
      restores[i]();
    result.failed = failed;
    window.result = result;
    fetch("/pages/done");
  }

  let film;
  let video;
  let made;
  const hear = text => state => append(heard, text + " " + (typeof state === "object" ? state.state : state));
  const byListener = hear("listener");
  const byObject = { __proto__: null, handleEvent: event => append(heard, "object " + event.state) };
  const always = () => true;

  step(always, () => {
    setInnerHtml(root, '<object id="manager" type="application/oipfApplicationManager"></object>');
    const manager = getElementById(document, "manager");
    const application = manager.getOwnerApplication(document);
    manager.onLowMemory = always;
    manager.onApplicationLoadError = null;
    manager.ownThing = 1;
    result.own = [debug("text"), manager.onLowMemory === always, manager.onApplicationLoadError, manager.ownThing];
    result.logs = _hbbtv_vantrel_logs;
    result.keys = application.privateData.keyset.value;
    result.supported = oipfObjectFactory.isObjectSupported("VIDEO/BROADCAST");
    made = oipfObjectFactory.createVideoBroadcastObject();
    appendChild(root, made);
  });
  step(always, () => {
    film = createElement(document, "object");
    film.onPlayStateChange = hear("handler");
    setData(film, "film.mp4");
    setAttribute(film, "type", "video/mp4");
    film.addEventListener("PlayStateChange", byListener);
    film.addEventListener("PlayStateChange", byObject, { __proto__: null, once: true });
    setAttribute(film, "width", "320px");
    appendChild(root, film);
    setAttribute(film, "height", "200");
    film.play(1);
    result.size = film.width + "x" + film.height;
  });
  step(() => film.playState === 1, () => {
    result.shown = localName(firstChild(film));
    setAttribute(film, "data", "other.mp4");
    const param = createElement(document, "param");
    setAttribute(param, "name", "late");
    setAttribute(param, "value", "1");
    appendChild(film, param);
  });
  step(always, () => {
    result.data = film.data;
    setInnerHtml(film, "");
  });
  step(() => firstChild(film), () => {
    result.again = localName(firstChild(film));
    const copy = cloneNode(film, true);
    appendChild(root, copy);
    result.copied = copy.playState;
    film.removeEventListener("PlayStateChange", byListener);
    remove(film);
  });
  step(() => !getOwnPropertyDescriptor(film, "play"), () => {
    setInnerHtml(root, '<object id="video" type="video/broadcast"></object>');
    video = getElementById(document, "video");
    video.addStreamEventListener("dvb://1.2.3", "event", byListener);
    video.removeStreamEventListener("dvb://1.2.3", "event", byListener);
    result.bound = video.bindToCurrentChannel() !== null;
  });
  step(() => video.playState === 2, () => setAttribute(video, "type", "application/oipfConfiguration"));
  step(() => video.configuration, () => {
    result.configured = typeof video.configuration.preferredAudioLanguage;
  });
  poison();
  run(0);
})();
