// The user script that runs in every frame before the document's own scripts. It turns `object` elements of
// the OIPF types into native objects and defines window.oipfObjectFactory.
//
// It shares the global scope with the page, so every identifier begins with _hbbtv_vantrel_, what a page may
// replace later is kept in a variable now, and nothing here may throw into the page. It may run twice in one
// global object (an empty document whose window the first real document takes over), so it declares with
// `var` and `function` only.
//
// In front of it stand the mutation-summary library and _hbbtv_vantrel_members, the generated table of the
// member names of each native class.

// ---- Log ----

var _hbbtv_vantrel_consoleLog = console.log.bind(console);

function _hbbtv_vantrel_log(str) {
  _hbbtv_vantrel_consoleLog("[bootstrap] " + str);
}

// A page's object may have a toString that throws, or none.
function _hbbtv_vantrel_text(value) {
  try {
    return String(value);
  } catch (e) {
    return "(no text)";
  }
}

// ---- Profiles and the registry ----

var _hbbtv_vantrel_plugins = [
  {
    name: "HbbTV Application Manager", profile: "1.1.1", visual: false,
    mime: "application/oipfApplicationManager", members: "OipfApplicationManager",
    create: _hbbtv_vantrel_createApplicationManagerCallback
  },
  {
    name: "HbbTV Configuration", profile: "1.1.1", visual: false,
    mime: "application/oipfConfiguration", members: "OipfConfiguration",
    create: _hbbtv_vantrel_createConfigurationCallback
  },
  {
    name: "HbbTV Capabilities", profile: "1.1.1", visual: false,
    mime: "application/oipfCapabilities", members: "OipfCapabilities",
    create: _hbbtv_vantrel_createCapabilitiesCallback
  },
  {
    name: "HbbTV DRM Agent", profile: "1.2.1", visual: false,
    mime: "application/oipfDrmAgent", members: "OipfDrmAgent",
    create: _hbbtv_vantrel_createDrmAgentCallback
  },
  {
    name: "HbbTV Gateway Info", profile: "1.1.1", visual: false,
    mime: "application/oipfGatewayInfo", members: "OipfGatewayInfo",
    create: _hbbtv_vantrel_createGatewayInfoCallback
  },
  {
    name: "HbbTV Parental Control Manager", profile: "1.1.1", visual: false,
    mime: "application/oipfParentalControlManager", members: "OipfParentalControlManager",
    create: _hbbtv_vantrel_createParentalControlManagerCallback
  },
  {
    name: "HbbTV Search Manager", profile: "1.2.1", visual: false,
    mime: "application/oipfSearchManager", members: "OipfSearchManager",
    create: _hbbtv_vantrel_createSearchManagerCallback
  },
  {
    name: "HbbTV Live Playback", profile: "1.1.1", visual: true,
    mime: "video/broadcast", members: "OipfVideoBroadcast",
    create: _hbbtv_vantrel_createVideoBroadcastCallback
  },
  {
    name: "HbbTV AVControl",
    profiles: [
      {
        profile: "1.1.1",
        mimes: [
          "audio/mp3", "audio/mp4", "audio/mpeg", "video/mp4", "video/mpeg", "video/mpeg4", "video/x-ms-wmv",
          "application/vnd.apple.mpegurl", "application/vnd.oipf.contentaccessstreaming+xml"
        ]
      },
      {
        profile: "1.2.1",
        mimes: ["application/dash+xml", "video/vnd.3gpp.mpd"]
      },
      {
        profile: "1.2.1; +PlayReady",
        mimes: [
          "video/vnd.ms-playready.media.pyv", "audio/vnd.ms-playready.media.pya",
          "application/vnd.ms-playready.initiator+xml"
        ]
      }
    ],
    members: "OipfAVControl",
    visual: true,
    create: _hbbtv_vantrel_createVideoMpegCallback
  }
];

function _hbbtv_vantrel_currentProfile() {
  // The dots are any-character dots on purpose: user agents write the version in more than one way.
  const found = /HbbTV\/(\d.\d.\d)/i.exec(navigator.userAgent);
  return found ? found[1] : "";
}

function _hbbtv_vantrel_checkProfile(found, current) {
  // A profile with capability suffixes is never offered.
  if (found.indexOf(";") > 0)
    return false;
  // The same order for proper versions, without setting up a collator in every frame.
  if (/^\d\.\d\.\d$/.test(current))
    return found <= current;
  return found.localeCompare(current) <= 0;
}

function _hbbtv_vantrel_collectMimeTypes(entries, profile, mimes) {
  for (const entry of entries) {
    if (entry.profiles)
      _hbbtv_vantrel_collectMimeTypes(entry.profiles, profile, mimes);
    else if (_hbbtv_vantrel_checkProfile(entry.profile, profile))
      mimes.push(...(entry.mimes || [entry.mime]));
  }
  return mimes;
}

function _hbbtv_vantrel_supportedMimeTypes(profile) {
  const mimes = _hbbtv_vantrel_collectMimeTypes(_hbbtv_vantrel_plugins, profile, []);
  _hbbtv_vantrel_log("Supported mimetypes for profile " + profile + ": " + mimes);
  return mimes;
}

function _hbbtv_vantrel_buildObserverQuery() {
  return _hbbtv_vantrel_supportedMimeTypes(_hbbtv_vantrel_currentProfile())
    .map(mime => ({ element: "object[type=" + mime + "]" }));
}

// The type is expected in lower case.
function _hbbtv_vantrel_pluginInfo(mimetype) {
  const current = _hbbtv_vantrel_currentProfile();
  const matches = entry => _hbbtv_vantrel_checkProfile(entry.profile, current)
    && (entry.mimes || [entry.mime]).some(mime => mime.toLowerCase() === mimetype);
  return _hbbtv_vantrel_plugins.find(entry => (entry.profiles || [entry]).some(matches));
}

// ---- Elements and what is known of them ----

// Element to { oipf, plugin, summary, listeners, streamListeners } while it has an object. Weak, so that an
// element that the page drops before it was ever in the document can go, and its native object with it.
var _hbbtv_vantrel_states = new WeakMap();
// Elements whose object was taken away; out of the document they stay ordinary.
var _hbbtv_vantrel_finalized = new WeakSet();
// Elements of oipfObjectFactory, which the browser makes present their object.
var _hbbtv_vantrel_internals = new WeakSet();
// Element to { oipf, update, following } for the visibility check.
var _hbbtv_vantrel_visibilities = new WeakMap();

function _hbbtv_vantrel_hasOwn(object, key) {
  return Object.prototype.hasOwnProperty.call(object, key);
}

// After reflection `object.type` is the native object's, so the attribute is what counts.
function _hbbtv_vantrel_typeOf(object) {
  return object.getAttribute("type") || "";
}

function _hbbtv_vantrel_pluginOf(object) {
  return _hbbtv_vantrel_pluginInfo(_hbbtv_vantrel_typeOf(object).toLowerCase());
}

function _hbbtv_vantrel_inDocument(object) {
  return object.isConnected && object.ownerDocument === document;
}

function _hbbtv_vantrel_createElement(name) {
  // createElement would make an element without a namespace in some XML documents.
  return document.createElementNS("http://www.w3.org/1999/xhtml", name);
}

function _hbbtv_vantrel_check_params(object) {
  const params = {};
  if (!(object instanceof HTMLObjectElement))
    return params;
  for (const attribute of Array.from(object.attributes))
    params[attribute.nodeName] = attribute.value;
  for (const child of Array.from(object.children)) {
    if (child instanceof HTMLParamElement)
      params[child.name] = child.value;
  }
  return params;
}

// ---- Reflection: an element that behaves as its native object ----

// The enumerable members, without what a page may have put on Object.prototype.
function _hbbtv_vantrel_keys(oipf) {
  const keys = [];
  for (const key in oipf) {
    if (_hbbtv_vantrel_hasOwn(oipf, key) || !(key in Object.prototype))
      keys.push(key);
  }
  return keys;
}

// The native object behind a reflected member, once attribute changes made earlier in this task have arrived.
// They may even have changed the kind of object.
function _hbbtv_vantrel_target(object, oipf) {
  _hbbtv_vantrel_flush(object);
  return object.__reflected || oipf;
}

function _hbbtv_vantrel_reflectAttribute(object, oipf, name) {
  Reflect.defineProperty(object, name, {
    configurable: true,
    enumerable: true,
    set(value) {
      const target = _hbbtv_vantrel_target(object, oipf);
      _hbbtv_vantrel_log("Set: " + name + "=" + _hbbtv_vantrel_text(value));
      target[name] = value;
    },
    get() {
      const value = _hbbtv_vantrel_target(object, oipf)[name];
      _hbbtv_vantrel_log("Get: " + name + "=" + _hbbtv_vantrel_text(value));
      return value;
    }
  });
}

function _hbbtv_vantrel_reflectMethod(object, oipf, name) {
  Reflect.defineProperty(object, name, {
    configurable: true,
    enumerable: true,
    writable: true,
    value(...args) {
      const target = _hbbtv_vantrel_target(object, oipf);
      if (name === "addEventListener" || name === "removeEventListener")
        _hbbtv_vantrel_listener(object, name, args);
      else if (name === "addStreamEventListener" || name === "removeStreamEventListener")
        _hbbtv_vantrel_streamListener(object, name, args);
      return target[name](...args);
    }
  });
}

// An element is an event target besides: a listener hears the events of both. Of those of the native object a
// note is kept; it forgets a listener by its function alone, whatever it listens to.
function _hbbtv_vantrel_listener(object, method, args) {
  const [type, listener] = args;
  const state = _hbbtv_vantrel_states.get(object);
  if (!state || typeof listener !== "function")
    return;
  EventTarget.prototype[method].apply(object, args);
  if (method === "addEventListener")
    state.listeners.set(listener, type);
  else
    state.listeners.delete(listener);
}

// Those of stream events go by all their three arguments.
function _hbbtv_vantrel_streamListener(object, method, args) {
  const state = _hbbtv_vantrel_states.get(object);
  if (!state)
    return;
  state.streamListeners = state.streamListeners.filter(known => known.some((part, i) => part !== args[i]));
  if (method === "addStreamEventListener")
    state.streamListeners.push(args);
}

// What the page set on the element before there was a native object goes to the native object.
function _hbbtv_vantrel_takeOver(object, name) {
  const early = Object.getOwnPropertyDescriptor(object, name);
  if (!early || !early.configurable || !("value" in early))
    return undefined;
  delete object[name];
  return early;
}

function _hbbtv_vantrel_reflect(object, oipf) {
  if (object.__reflected)
    return;
  _hbbtv_vantrel_log("upgrading: " + _hbbtv_vantrel_text(object) + " " + _hbbtv_vantrel_typeOf(object));
  for (const key of _hbbtv_vantrel_keys(oipf)) {
    if (!_hbbtv_vantrel_hasOwn(oipf, key)) {
      if (typeof oipf[key] === "function")
        _hbbtv_vantrel_reflectMethod(object, oipf, key);
      continue;
    }
    const early = _hbbtv_vantrel_takeOver(object, key);
    if (!_hbbtv_vantrel_hasOwn(object, key))
      _hbbtv_vantrel_reflectAttribute(object, oipf, key);
    if (early)
      _hbbtv_vantrel_assign(oipf, key, early.value);
  }
  Reflect.defineProperty(object, "__reflected", { value: oipf, configurable: true });
}

function _hbbtv_vantrel_assign(oipf, name, value) {
  try {
    oipf[name] = value;
  } catch (e) {
    _hbbtv_vantrel_log("Caught: " + _hbbtv_vantrel_text(e) + "(while trying to set " + name + "="
      + _hbbtv_vantrel_text(value) + ")");
  }
}

// ---- Attributes and params that change later ----

// A width such as "100%" says nothing in pixels; the geometry of the hole covers it.
function _hbbtv_vantrel_attributeValue(name, text) {
  if (name !== "width" && name !== "height")
    return text;
  return /^\s*\d+\s*(px\s*)?$/.test(text) ? parseInt(text, 10) : undefined;
}

function _hbbtv_vantrel_assignAttribute(object, oipf, name) {
  const text = object.getAttribute(name);
  // An attribute named as a handler carries script text, no function.
  if (text === null || !_hbbtv_vantrel_hasOwn(oipf, name) || name.startsWith("on"))
    return;
  const value = _hbbtv_vantrel_attributeValue(name, text);
  if (value !== undefined)
    _hbbtv_vantrel_assign(oipf, name, value);
}

function _hbbtv_vantrel_attributeChanged(object, name) {
  const state = _hbbtv_vantrel_states.get(object);
  if (!state)
    return;
  if (name !== "type" || _hbbtv_vantrel_pluginOf(object) === state.plugin) {
    // The player that is set up next is told all attributes. Those that change with every frame of an animation
    // mean nothing to it.
    if (state.plugin.visual && name !== "style" && name !== "class" && object.hasAttribute(name))
      state.oipf.setAttributes({ [name]: object.getAttribute(name) });
    _hbbtv_vantrel_assignAttribute(object, state.oipf, name);
    return;
  }
  _hbbtv_vantrel_finalize(object);
  if (_hbbtv_vantrel_pluginOf(object))
    _hbbtv_vantrel_initialize_old(object);
}

function _hbbtv_vantrel_paramsAdded(params) {
  const pairs = new Map();
  for (const param of params) {
    const parent = param.parentNode;
    if (!pairs.has(parent))
      pairs.set(parent, {});
    pairs.get(parent)[param.name] = param.value;
  }
  for (const [parent, attributes] of pairs) {
    if (parent && parent.__reflected && typeof parent.__reflected.setAttributes === "function")
      parent.__reflected.setAttributes(attributes);
  }
}

function _hbbtv_vantrel_notify_attributes(matches) {
  try {
    for (const summary of matches) {
      for (const name of Object.keys(summary.attributeChanged || {}))
        summary.attributeChanged[name].forEach(object => _hbbtv_vantrel_attributeChanged(object, name));
      _hbbtv_vantrel_paramsAdded(summary.added.filter(node => node instanceof HTMLParamElement));
    }
  } catch (e) {
    _hbbtv_vantrel_log("Caught: " + _hbbtv_vantrel_text(e));
  }
}

// Observers run at the end of the task; the page may call the object on the line after setAttribute.
function _hbbtv_vantrel_flush(object) {
  const state = _hbbtv_vantrel_states.get(object);
  const matches = state && state.summary && state.summary.takeSummaries();
  if (matches)
    _hbbtv_vantrel_notify_attributes(matches);
}

// ---- The life of an upgraded element ----

function _hbbtv_vantrel_create(plugin, object) {
  try {
    return plugin.create(object);
  } catch (e) {
    _hbbtv_vantrel_log("Caught: " + _hbbtv_vantrel_text(e));
    return null;
  }
}

// Elements found in the document, or touched.
function _hbbtv_vantrel_initialize_old(object) {
  const type = _hbbtv_vantrel_typeOf(object);
  if (!type || object.__reflected || _hbbtv_vantrel_internals.has(object) || !Object.isExtensible(object))
    return;
  const attributes = _hbbtv_vantrel_check_params(object);
  const plugin = _hbbtv_vantrel_pluginInfo(type.toLowerCase());
  const oipf = _hbbtv_vantrel_create(plugin, object);
  if (!oipf)
    return;
  _hbbtv_vantrel_log("oipf " + _hbbtv_vantrel_text(oipf) + "created");
  _hbbtv_vantrel_attach(object, oipf, plugin, attributes);
}

function _hbbtv_vantrel_attach(object, oipf, plugin, attributes) {
  try {
    _hbbtv_vantrel_finalized.delete(object);
    _hbbtv_vantrel_reflect(object, oipf);
    _hbbtv_vantrel_watch(object, oipf, plugin);
    if (!_hbbtv_vantrel_inDocument(object)) {
      _hbbtv_vantrel_anyLoose = true;
      _hbbtv_vantrel_startObserver();
    }
    if (plugin.visual) {
      oipf.setMimeType(_hbbtv_vantrel_typeOf(object));
      oipf.setAttributes(attributes);
      ["data", "width", "height"].forEach(name => _hbbtv_vantrel_assignAttribute(object, oipf, name));
    }
  } catch (e) {
    _hbbtv_vantrel_log("Caught: " + _hbbtv_vantrel_text(e));
  }
}

function _hbbtv_vantrel_watch(object, oipf, plugin) {
  const state = { oipf, plugin, summary: null, listeners: new Map(), streamListeners: [] };
  _hbbtv_vantrel_states.set(object, state);
  state.summary = new _hbbtv_vantrel_MutationSummary({
    callback: _hbbtv_vantrel_notify_attributes,
    rootNode: object,
    queries: [{ all: true }]
  });
}

function _hbbtv_vantrel_callOwn(object, name) {
  try {
    if (_hbbtv_vantrel_hasOwn(object, name))
      object[name]();
  } catch (e) {
    _hbbtv_vantrel_log("Caught: " + _hbbtv_vantrel_text(e));
  }
}

function _hbbtv_vantrel_finalize(object) {
  const oipf = object.__reflected;
  if (!oipf)
    return;
  _hbbtv_vantrel_log("cleaning: " + _hbbtv_vantrel_text(object) + " " + _hbbtv_vantrel_typeOf(object));
  const state = _hbbtv_vantrel_states.get(object);
  _hbbtv_vantrel_states.delete(object);
  _hbbtv_vantrel_callOwn(object, "release");
  _hbbtv_vantrel_callOwn(object, "finalize");
  _hbbtv_vantrel_letGo(object, oipf, state);
  for (const key of _hbbtv_vantrel_keys(oipf)) {
    Reflect.deleteProperty(object, key);
    _hbbtv_vantrel_log("removed property: " + key);
  }
  Reflect.deleteProperty(object, "__reflected");
  _hbbtv_vantrel_finalized.add(object);
}

// A native object with handlers lives on and fires, and an observer or a listener keeps the element.
function _hbbtv_vantrel_letGo(object, oipf, state) {
  if (state) {
    if (state.summary)
      state.summary.disconnect();
    state.listeners.forEach((type, listener) => oipf.removeEventListener(type, listener, false));
    state.streamListeners.forEach(args => oipf.removeStreamEventListener(...args));
  }
  _hbbtv_vantrel_keys(oipf).filter(key => key.startsWith("on") && _hbbtv_vantrel_hasOwn(oipf, key))
    .forEach(key => _hbbtv_vantrel_assign(oipf, key, null));
  _hbbtv_vantrel_unfollow(object);
  _hbbtv_vantrel_removeStandIns(object);
}

// Elements of oipfObjectFactory. A browser without internal objects gets the document's way of doing it.
function _hbbtv_vantrel_initialize(object) {
  const type = _hbbtv_vantrel_typeOf(object);
  if (!type)
    return false;
  const plugin = _hbbtv_vantrel_pluginInfo(type.toLowerCase());
  if (!plugin) {
    _hbbtv_vantrel_log("unknown object " + type);
    return false;
  }
  const attributes = _hbbtv_vantrel_check_params(object);
  const oipf = _hbbtv_vantrel_create(plugin, object);
  if (!oipf)
    return false;
  _hbbtv_vantrel_log("oipf " + _hbbtv_vantrel_text(oipf) + " created");
  if (typeof object.webkitSetInternalObject !== "function") {
    _hbbtv_vantrel_attach(object, oipf, plugin, attributes);
    return true;
  }
  _hbbtv_vantrel_internals.add(object);
  object.webkitSetInternalObject(oipf);
  if (plugin.visual) {
    object.setMimeType(type);
    object.setAttributes(attributes);
    EventTarget.prototype.addEventListener.call(object, "webkitobjectparamadded", event => {
      _hbbtv_vantrel_log("child param changed");
      event.target.setAttributes(_hbbtv_vantrel_check_params(event.target));
    }, false);
  }
  _hbbtv_vantrel_watch(object, oipf, plugin);
  return true;
}

// For browsers that announce object elements by themselves; not listened to.
function _hbbtv_vantrel_onWebKitObjectAdded(event) {
  _hbbtv_vantrel_log("Trigger object added cb: " + event.target.type);
  _hbbtv_vantrel_initialize(event.target);
}

// ---- The observer of the document ----
//
// A MutationSummary of the document visits every node of every change once for each query; with the twenty
// types here a page of a thousand elements took four times as long to load. So the document has one plain
// observer, which looks at its `object` elements alone and reports as a summary does: what stays in is not
// reported, so an element that was moved keeps its object.

// Element to type, of the supported elements that were in the document at the last look.
var _hbbtv_vantrel_known = new Map();
// Whether elements were upgraded out of the document. Such an element may come and go between two looks.
var _hbbtv_vantrel_anyLoose = false;

function _hbbtv_vantrel_observe(queries) {
  const selectors = new Set(queries.map(query => query.element.toLowerCase()));
  const objects = document.getElementsByTagNameNS("*", "object");
  const look = records => {
    // Most pages have none of all this.
    if (!objects.length && !_hbbtv_vantrel_known.size && !_hbbtv_vantrel_anyLoose)
      return;
    const present = new Map();
    for (const object of Array.from(objects)) {
      const type = _hbbtv_vantrel_typeOf(object).toLowerCase();
      if (selectors.has("object[type=" + type + "]"))
        present.set(object, type);
    }
    _hbbtv_vantrel_report(_hbbtv_vantrel_known, present, _hbbtv_vantrel_passers(records));
  };
  _hbbtv_vantrel_known.clear();
  _hbbtv_vantrel_startObserver = () => {
    _hbbtv_vantrel_startObserver = () => {};
    new MutationObserver(look).observe(document,
      { childList: true, subtree: true, attributes: true, attributeFilter: ["type"] });
    look([]);
  };
  if (document.readyState === "loading")
    _hbbtv_vantrel_lookWhileParsing(look);
  else
    _hbbtv_vantrel_startObserver();
}

// Begins to observe the document, once.
var _hbbtv_vantrel_startObserver = () => {};

// The parser adds nodes by the thousand, and each would cost a record. Until it is done a look at each frame does: what
// the page uses earlier is upgraded by touch.
function _hbbtv_vantrel_lookWhileParsing(look) {
  const start = _hbbtv_vantrel_startObserver;
  document.addEventListener("readystatechange", () => _hbbtv_vantrel_startObserver(), { once: true, capture: true });
  const frame = () => {
    if (_hbbtv_vantrel_startObserver !== start)
      return;
    look([]);
    requestAnimationFrame(frame);
  };
  requestAnimationFrame(frame);
}

// Upgraded elements that were removed although they had not been seen in the document.
function _hbbtv_vantrel_passers(records) {
  const passers = new Set();
  if (!_hbbtv_vantrel_anyLoose)
    return passers;
  const consider = object => {
    const unseen = _hbbtv_vantrel_states.has(object) && !_hbbtv_vantrel_known.has(object);
    if (unseen && !_hbbtv_vantrel_inDocument(object))
      passers.add(object);
  };
  for (const node of records.flatMap(record => Array.from(record.removedNodes))) {
    consider(node);
    if (node.firstElementChild)
      Array.from(node.getElementsByTagNameNS("*", "object")).forEach(consider);
  }
  return passers;
}

function _hbbtv_vantrel_report(before, now, passers) {
  const missing = (some, others) => Array.from(some.keys()).filter(key => some.get(key) !== others.get(key));
  const summary = { removed: missing(before, now).concat(...passers), added: missing(now, before) };
  _hbbtv_vantrel_known = now;
  if (summary.removed.length || summary.added.length)
    _hbbtv_vantrel_check([summary]);
}

function _hbbtv_vantrel_elementAdded(object, j) {
  _hbbtv_vantrel_log("Added[" + j + "]");
  _hbbtv_vantrel_initialize_old(object);
  _hbbtv_vantrel_follow(object);
}

function _hbbtv_vantrel_elementRemoved(object, j) {
  _hbbtv_vantrel_log("Removed[" + j + "]");
  const state = _hbbtv_vantrel_states.get(object);
  // From one type to another of the same kind: the object stays and learns its new type.
  if (state && _hbbtv_vantrel_inDocument(object) && _hbbtv_vantrel_pluginOf(object) === state.plugin)
    return;
  _hbbtv_vantrel_unfollow(object);
  _hbbtv_vantrel_finalize(object);
}

// Takes what a MutationSummary reports; of each summary only `added` and `removed` count.
function _hbbtv_vantrel_check(matches) {
  _hbbtv_vantrel_log("Inside _hbbtv_vantrel_check()");
  try {
    matches.forEach(summary => summary.removed.forEach(_hbbtv_vantrel_elementRemoved));
    matches.forEach(summary => summary.added.forEach(_hbbtv_vantrel_elementAdded));
  } catch (e) {
    _hbbtv_vantrel_log("Caught: " + _hbbtv_vantrel_text(e));
  }
}

// ---- Upgrade on first touch ----
//
// Observers run after the task that inserted the element, and the page uses the element in that very task. So
// every OIPF member name is an accessor on the prototype of all object elements, which a reflected element's
// own properties hide. On an element of another type it is as if it were not there.

function _hbbtv_vantrel_mayUpgrade(object) {
  try {
    const plugin = _hbbtv_vantrel_pluginOf(object);
    if (!plugin || _hbbtv_vantrel_internals.has(object))
      return false;
    if (_hbbtv_vantrel_finalized.has(object) && !object.isConnected)
      return false;
    const state = _hbbtv_vantrel_states.get(object);
    return !state || state.plugin !== plugin;
  } catch (e) {
    // Not an element, but the prototype itself or an object derived from an element.
    return false;
  }
}

function _hbbtv_vantrel_touch(object) {
  if (!_hbbtv_vantrel_mayUpgrade(object))
    return;
  if (object.__reflected)
    _hbbtv_vantrel_finalize(object);
  _hbbtv_vantrel_initialize_old(object);
  // It may be gone again before the observer looks.
  if (object.__reflected && _hbbtv_vantrel_inDocument(object))
    _hbbtv_vantrel_known.set(object, _hbbtv_vantrel_typeOf(object).toLowerCase());
}

function _hbbtv_vantrel_installTouch(name) {
  const prototype = HTMLObjectElement.prototype;
  Reflect.defineProperty(prototype, name, {
    configurable: true,
    enumerable: false,
    get() {
      _hbbtv_vantrel_touch(this);
      if (this !== prototype && _hbbtv_vantrel_hasOwn(this, name))
        return this[name];
      return Reflect.get(Object.getPrototypeOf(prototype), name, this);
    },
    set(value) {
      _hbbtv_vantrel_touch(this);
      if (this === prototype)
        Reflect.defineProperty(this, name, { value, configurable: true, enumerable: true, writable: true });
      else if (_hbbtv_vantrel_hasOwn(this, name))
        this[name] = value;
      else
        Reflect.set(Object.getPrototypeOf(prototype), name, value, this);
    }
  });
}

function _hbbtv_vantrel_installTouches() {
  const names = new Set(["addEventListener", "removeEventListener"]);
  for (const plugin of _hbbtv_vantrel_plugins) {
    for (const list of Object.values(_hbbtv_vantrel_members[plugin.members] || {})) {
      // What every object element has (data, type, width, height) it keeps; markup attributes carry those.
      list.filter(name => !(name in HTMLObjectElement.prototype)).forEach(name => names.add(name));
    }
  }
  names.forEach(_hbbtv_vantrel_installTouch);
}

// ---- Visual objects: the hole for the video plane and the black background ----

function _hbbtv_vantrel_create_hole(oipf) {
  const hole = _hbbtv_vantrel_createElement("hole");
  _hbbtv_vantrel_log("Created hole " + _hbbtv_vantrel_text(hole) + " for " + _hbbtv_vantrel_text(oipf));
  hole.style.width = "inherit";
  hole.style.height = "inherit";
  hole.addEventListener("geometrychanged", event => {
    try {
      const detail = event.detail;
      _hbbtv_vantrel_log("Got hole geometrychanged: " + JSON.stringify(detail));
      hole.parentNode.setWindow(detail.x, detail.y, detail.width, detail.height);
    } catch (e) {
      _hbbtv_vantrel_log("Caught: " + _hbbtv_vantrel_text(e));
    }
  }, false);
  return hole;
}

function _hbbtv_vantrel_create_background() {
  const background = _hbbtv_vantrel_createElement("div");
  background.className = "_hbbtv_vantrel_background";
  background.style.backgroundColor = "black";
  background.style.width = "inherit";
  background.style.height = "inherit";
  return background;
}

// Also those of an element that this one was cloned from, or whose markup was read back and parsed again.
function _hbbtv_vantrel_removeStandIns(object) {
  for (const child of Array.from(object.children)) {
    if (child.localName === "hole" || child.className === "_hbbtv_vantrel_background")
      object.removeChild(child);
  }
}

function _hbbtv_vantrel_visibility_check(object, oipf, rule) {
  _hbbtv_vantrel_removeStandIns(object);
  object.hole = _hbbtv_vantrel_create_hole(oipf);
  object.background = _hbbtv_vantrel_create_background();
  object.fallback = rule(oipf) ? object.hole : object.background;
  object.appendChild(object.fallback);
  const update = () => {
    const chosen = rule(oipf) ? object.hole : object.background;
    if (chosen.isEqualNode(object.fallback))
      return;
    object.replaceChild(chosen, object.fallback);
    object.fallback = chosen;
  };
  _hbbtv_vantrel_visibilities.set(object, { oipf, update, following: false });
  _hbbtv_vantrel_follow(object);
}

// A listener pins the native object, so it is there only while the element is in the document.
function _hbbtv_vantrel_follow(object) {
  const visibility = _hbbtv_vantrel_visibilities.get(object);
  if (!visibility || visibility.following || !object.isConnected)
    return;
  visibility.following = true;
  visibility.oipf.addEventListener("PlayStateChange", visibility.update, false);
  visibility.update();
}

function _hbbtv_vantrel_unfollow(object) {
  const visibility = _hbbtv_vantrel_visibilities.get(object);
  if (!visibility || !visibility.following)
    return;
  visibility.following = false;
  visibility.oipf.removeEventListener("PlayStateChange", visibility.update, false);
}

// ---- Creation ----

function _hbbtv_vantrel_createApplicationManagerCallback() {
  return PrivateObjectFactory.createApplicationManagerObject();
}

function _hbbtv_vantrel_createConfigurationCallback() {
  return PrivateObjectFactory.createConfigurationObject();
}

function _hbbtv_vantrel_createCapabilitiesCallback() {
  return PrivateObjectFactory.createCapabilitiesObject();
}

function _hbbtv_vantrel_createDrmAgentCallback() {
  return PrivateObjectFactory.createDrmAgentObject();
}

function _hbbtv_vantrel_createGatewayInfoCallback() {
  return PrivateObjectFactory.createGatewayInfoObject();
}

function _hbbtv_vantrel_createParentalControlManagerCallback() {
  return PrivateObjectFactory.createParentalControlManagerObject();
}

function _hbbtv_vantrel_createSearchManagerCallback() {
  return PrivateObjectFactory.createSearchManagerObject();
}

function _hbbtv_vantrel_createChannelConfigCallback() {
  return PrivateObjectFactory.createChannelConfig();
}

// Transparent whatever its state.
function _hbbtv_vantrel_createVideoBroadcastCallback(object) {
  const oipf = PrivateObjectFactory.createVideoBroadcastObject();
  _hbbtv_vantrel_removeStandIns(object);
  object.appendChild(_hbbtv_vantrel_create_hole(oipf));
  return oipf;
}

// Transparent while playing or paused.
function _hbbtv_vantrel_createVideoMpegCallback(object) {
  const oipf = PrivateObjectFactory.createVideoMpegObject();
  _hbbtv_vantrel_visibility_check(object, oipf, ({ playState }) => playState === 1 || playState === 2);
  return oipf;
}

function _hbbtv_vantrel_unsupportedCallback() {
  throw TypeError("Object is not supported.");
}

// ---- window.oipfObjectFactory ----

function _hbbtv_vantrel_createObjectElement(type) {
  const object = _hbbtv_vantrel_createElement("object");
  object.setAttribute("type", type);
  _hbbtv_vantrel_initialize(object);
  return object;
}

function _hbbtv_vantrel_createObjectFactory() {
  const unsupported = _hbbtv_vantrel_unsupportedCallback;
  return {
    isObjectSupported: mimetype => _hbbtv_vantrel_pluginInfo(mimetype.toLowerCase()) !== undefined,
    createVideoBroadcastObject: () => _hbbtv_vantrel_createObjectElement("video/broadcast"),
    createVideoMpegObject: () => _hbbtv_vantrel_createObjectElement("video/mpeg"),
    createApplicationManagerObject: _hbbtv_vantrel_createApplicationManagerCallback,
    createCapabilitiesObject: _hbbtv_vantrel_createCapabilitiesCallback,
    createChannelConfig: _hbbtv_vantrel_createChannelConfigCallback,
    createConfigurationObject: _hbbtv_vantrel_createConfigurationCallback,
    createDrmAgentObject: _hbbtv_vantrel_createDrmAgentCallback,
    createGatewayInfoObject: _hbbtv_vantrel_createGatewayInfoCallback,
    createParentalControlManagerObject: _hbbtv_vantrel_createParentalControlManagerCallback,
    createSearchManagerObject: _hbbtv_vantrel_createSearchManagerCallback,
    createStatusViewObject: unsupported,
    createCodManagerObject: unsupported,
    createDownloadManagerObject: unsupported,
    createDownloadTriggerObject: unsupported,
    createIMSObject: unsupported,
    createNotifSocketObject: unsupported,
    createRecordingSchedulerObject: unsupported,
    createRemoteControlFunctionObject: unsupported,
    createMDTFObject: unsupported,
    createRemoteManagementObject: unsupported
  };
}

// ---- Start ----

var _hbbtv_vantrel_MutationSummary = MutationSummary.MutationSummary;

function _hbbtv_vantrel_main() {
  _hbbtv_vantrel_log("Hbbtv_js_main");
  window.removeEventListener("webkitobjectadded", _hbbtv_vantrel_onWebKitObjectAdded, true);
  _hbbtv_vantrel_log("Using mutation observer");
  const queries = _hbbtv_vantrel_buildObserverQuery();
  if (!queries.length)
    return;
  _hbbtv_vantrel_installTouches();
  _hbbtv_vantrel_observe(queries);
  _hbbtv_vantrel_finalizeWithFrame();
}

// A frame that its page removes or fills anew has nothing left to hear or see. Of the page itself the players are
// taken back without it.
function _hbbtv_vantrel_finalizeWithFrame() {
  if (window !== window.top)
    window.addEventListener("unload", () => Array.from(_hbbtv_vantrel_known.keys()).forEach(_hbbtv_vantrel_finalize));
}

window.onload = () => _hbbtv_vantrel_log("Started");
_hbbtv_vantrel_main();
window.oipfObjectFactory = _hbbtv_vantrel_createObjectFactory();
