// Stands in for the bundle's native side in pages that test the bootstrap script alone. The objects have the
// shape that the JavaScriptCore C API gives the real ones: attributes and constants are own and enumerable,
// methods are inherited and enumerable, read-only members ignore assignments, and each object notes the calls
// it gets.
"use strict";
(() => {
  const agent = new URLSearchParams(location.search).get("agent") ?? "HbbTV/1.2.1 (;;;;;)";
  Object.defineProperty(navigator, "userAgent", { get: () => agent });

  const streamMethods = ["addStreamEventListener", "removeStreamEventListener"];
  const visualMethods = ["setMimeType", "setAttributes", "setWindow", "release", "stop", "addEventListener",
    "removeEventListener"];
  const classes = {
    OipfApplicationManager: {
      attributes: ["onLowMemory", "onApplicationLoadError"],
      methods: ["getOwnerApplication", "addEventListener", "removeEventListener"]
    },
    ChannelConfig: { attributes: ["channelList"], methods: [] },
    OipfConfiguration: { attributes: ["configuration"], methods: [] },
    OipfCapabilities: { attributes: ["xmlCapabilities"], methods: ["hasCapability"] },
    OipfDrmAgent: { attributes: ["onDRMMessageResult"], methods: ["sendDRMMessage"] },
    OipfGatewayInfo: { attributes: ["isIGDiscovered"], methods: [] },
    OipfParentalControlManager: { attributes: ["isPINEntryLocked"], methods: ["setParentalControlStatus"] },
    OipfSearchManager: { attributes: ["onMetadataSearch"], methods: ["createSearch"] },
    OipfVideoBroadcast: {
      attributes: ["width", "height", "playState", "onPlayStateChange"],
      methods: ["bindToCurrentChannel", ...visualMethods, ...streamMethods],
      constants: ["COMPONENT_TYPE_VIDEO"]
    },
    OipfAVControl: {
      attributes: ["width", "height", "type", "data", "playState", "onPlayStateChange"],
      methods: ["play", "queue", "setFullScreen", ...visualMethods]
    }
  };

  const counts = { made: 0, order: [], logged: [] };
  const results = { play: true, getOwnerApplication: "the application" };
  // Like the real ones: what is no text, or one argument too many, is refused.
  function refuse(isBad) {
    if (isBad)
      throw new Error("SecurityError");
  }

  const setters = {
    setMimeType: (state, type) => { state.type = type; },
    setAttributes: (state, attributes) => { Object.assign(state.given, attributes); }
  };

  function makeMethod(name) {
    return function (...args) {
      const { state, calls, listeners } = this.__fake;
      if (name.endsWith("EventListener"))
        refuse(typeof args[0] !== "string" || args.length > 3);
      if (name === "addEventListener" && typeof args[1] === "function")
        listeners.push({ type: args[0], listener: args[1] });
      else if (name === "removeEventListener")
        this.__fake.listeners = listeners.filter(({ listener }) => listener !== args[1]);
      else
        calls.push([name, ...args]);
      if (name === "release")
        counts.order.push(`release ${this.__fake.id}`);
      setters[name]?.(state, ...args);
      return results[name];
    };
  }

  function makeClass(name, { attributes, methods, constants = [] }) {
    const prototype = {};
    for (const method of methods)
      Object.defineProperty(prototype, method, { value: makeMethod(method), enumerable: true });
    return () => {
      const object = Object.create(prototype);
      const fake = { id: ++counts.made, name, calls: [], listeners: [], state: { given: {} } };
      counts.order.push(`make ${fake.id}`);
      Object.defineProperty(object, "__fake", { value: fake });
      for (const attribute of attributes) {
        const initial = attribute.startsWith("on") ? null : attribute === "playState" ? 0 : "";
        fake.state[attribute] = initial;
        Object.defineProperty(object, attribute, {
          enumerable: true,
          get: () => fake.state[attribute],
          set: value => {
            fake.calls.push(["set " + attribute, value]);
            fake.state[attribute] = value;
          }
        });
      }
      constants.forEach((constant, value) =>
        Object.defineProperty(object, constant, { value, enumerable: true }));
      // What the middleware does: changes the state, then calls the handlers.
      fake.changePlayState = state => {
        fake.state.playState = state;
        fake.state.onPlayStateChange?.call(object, state, 0);
        const event = { type: "PlayStateChange", state };
        fake.listeners.filter(({ type }) => type === event.type)
          .forEach(({ listener }) => listener.call(object, event));
      };
      return object;
    };
  }

  const made = {};
  for (const [name, members] of Object.entries(classes))
    made[name] = makeClass(name, members);
  const refused = new URLSearchParams(location.search).get("refused");
  function create(name) {
    if (name === refused)
      throw new Error("not built");
    return made[name]();
  }

  window.PrivateObjectFactory = {
    createVideoBroadcastObject: () => create("OipfVideoBroadcast"),
    createVideoMpegObject: () => create("OipfAVControl"),
    createApplicationManagerObject: () => create("OipfApplicationManager"),
    createCapabilitiesObject: () => create("OipfCapabilities"),
    createChannelConfig: () => create("ChannelConfig"),
    createConfigurationObject: () => create("OipfConfiguration"),
    createDrmAgentObject: () => create("OipfDrmAgent"),
    createGatewayInfoObject: () => create("OipfGatewayInfo"),
    createParentalControlManagerObject: () => create("OipfParentalControlManager"),
    createSearchManagerObject: () => create("OipfSearchManager")
  };
  for (const members of Object.values(classes))
    members.constants ??= [];
  window._hbbtv_vantrel_members = classes;
  if (new URLSearchParams(location.search).has("internal")) {
    HTMLObjectElement.prototype.webkitSetInternalObject = function (oipf) {
      for (const name of ["setMimeType", "setAttributes", "play"])
        this[name] = oipf[name].bind(oipf);
      this.internal = oipf;
    };
  }
  window.fakes = counts;
  if (new URLSearchParams(location.search).has("quiet"))
    window._hbbtv_vantrel_logs = false;
  console.log = text => counts.logged.push(text);

  window.failures = [];
  window.addEventListener("error", event => window.failures.push(event.message));
})();
