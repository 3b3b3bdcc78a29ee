// Reflection: an element that behaves as its native object.

// The native object behind a reflected member, once attribute changes made earlier in this task have arrived.
// They may even have changed the kind of object; a method that the page kept may have outlived its own.
function _hbbtv_vantrel_target(record, oipf) {
  _hbbtv_vantrel_flush(record);
  return record.oipf || oipf;
}

function _hbbtv_vantrel_reflectAttribute(record, oipf, name) {
  _hbbtv_vantrel_kept.defineProperty(record.object, name, {
    __proto__: null,
    configurable: true,
    enumerable: true,
    set(value) {
      const target = _hbbtv_vantrel_target(record, oipf);
      if (_hbbtv_vantrel_logs)
        _hbbtv_vantrel_log("Set: " + name + "=", value);
      if (record.sizes)
        delete record.sizes[name];
      target[name] = value;
    },
    get() {
      const target = _hbbtv_vantrel_target(record, oipf);
      const size = record.sizes ? record.sizes[name] : undefined;
      const value = size !== undefined ? size : target[name];
      if (_hbbtv_vantrel_logs)
        _hbbtv_vantrel_log("Get: " + name + "=", value);
      return value;
    }
  });
}

function _hbbtv_vantrel_reflectMethod(record, oipf, name) {
  const method = (...args) => {
    const target = _hbbtv_vantrel_target(record, oipf);
    // Arguments that are not there are not looked for on Array.prototype.
    _hbbtv_vantrel_kept.setPrototypeOf(args, null);
    if (target === record.oipf && name === "addEventListener")
      return _hbbtv_vantrel_addListener(record, args);
    if (target === record.oipf && name === "removeEventListener")
      return _hbbtv_vantrel_removeListener(record, args);
    if (target === record.oipf && (name === "addStreamEventListener" || name === "removeStreamEventListener"))
      return _hbbtv_vantrel_streamListener(record, name, args);
    if (name === "setFullScreen")
      _hbbtv_vantrel_handOverSizes(record);
    const result = _hbbtv_vantrel_kept.apply(target[name], target, args);
    if (name === "play" || name === "queue")
      _hbbtv_vantrel_handOverSizes(record);
    return result;
  };
  if (name === "release")
    record.release = method;
  _hbbtv_vantrel_define(record.object, name, method);
}

// What the page set on the element before there was a native object goes to the native object.
function _hbbtv_vantrel_takeOver(object, name) {
  const early = _hbbtv_vantrel_kept.getOwnPropertyDescriptor(object, name);
  if (!early || !early.configurable || !_hbbtv_vantrel_kept.hasOwn(early, "value"))
    return undefined;
  _hbbtv_vantrel_kept.deleteProperty(object, name);
  return early;
}

function _hbbtv_vantrel_reflectOwn(record, oipf, names) {
  const { object } = record;
  for (let i = 0; i < names.length; ++i) {
    const early = _hbbtv_vantrel_takeOver(object, names[i]);
    if (!_hbbtv_vantrel_kept.hasOwn(object, names[i]))
      _hbbtv_vantrel_reflectAttribute(record, oipf, names[i]);
    if (early)
      _hbbtv_vantrel_assign(oipf, names[i], early.value);
  }
}

// What its class has is known beforehand: what a page puts on Object.prototype is no member, nor does it hide one.
function _hbbtv_vantrel_reflect(object, oipf) {
  const record = _hbbtv_vantrel_recordOf(object);
  if (_hbbtv_vantrel_kept.hasOwn(object, "__reflected"))
    return;
  _hbbtv_vantrel_log("upgrading: " + _hbbtv_vantrel_kept.objectText(object) + " " + _hbbtv_vantrel_typeOf(object));
  const { attributes, constants, methods } = _hbbtv_vantrel_members[record.plugin.members];
  _hbbtv_vantrel_reflectOwn(record, oipf, attributes);
  _hbbtv_vantrel_reflectOwn(record, oipf, constants);
  for (let i = 0; i < methods.length; ++i)
    _hbbtv_vantrel_reflectMethod(record, oipf, methods[i]);
  _hbbtv_vantrel_kept.defineProperty(object, "__reflected", { __proto__: null, value: oipf, configurable: true });
}

function _hbbtv_vantrel_unreflect(object, oipf, plugin) {
  const { attributes, constants, methods } = _hbbtv_vantrel_members[plugin.members];
  const remove = names => {
    for (let i = 0; i < names.length; ++i) {
      _hbbtv_vantrel_kept.deleteProperty(object, names[i]);
      _hbbtv_vantrel_log("removed property: " + names[i]);
    }
  };
  remove(attributes);
  remove(constants);
  remove(methods);
  _hbbtv_vantrel_kept.deleteProperty(object, "__reflected");
}

function _hbbtv_vantrel_assign(oipf, name, value) {
  try {
    oipf[name] = value;
  } catch (e) {
    if (_hbbtv_vantrel_logs)
      _hbbtv_vantrel_log("Caught: " + _hbbtv_vantrel_reason(e) + "(while trying to set " + name + "=", value);
  }
}
