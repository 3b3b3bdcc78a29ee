// Upgrade on first touch.
//
// Observers run after the task that inserted the element, and the page uses the element in that very task. So
// every OIPF member name is an accessor on the prototype of all object elements, which a reflected element's
// own properties hide. On an element of another type it is as if it were not there.

function _hbbtv_vantrel_mayUpgrade(object) {
  const plugin = _hbbtv_vantrel_pluginOf(object);
  const record = _hbbtv_vantrel_find(object);
  if (!plugin || !record)
    return Boolean(plugin);
  if (record.internal || (record.ended && !_hbbtv_vantrel_kept.isConnected(object)))
    return false;
  return record.plugin !== plugin;
}

function _hbbtv_vantrel_touch(object) {
  try {
    if (!_hbbtv_vantrel_mayUpgrade(object))
      return;
  } catch (e) {
    // Not an element, but the prototype itself or an object derived from an element.
    return;
  }
  _hbbtv_vantrel_attempt(() => {
    _hbbtv_vantrel_finalize(object);
    _hbbtv_vantrel_initialize_old(object);
    const record = _hbbtv_vantrel_find(object);
    // It may be gone again before the observer looks.
    if (record && record.oipf && !record.seen && _hbbtv_vantrel_inDocument(object))
      _hbbtv_vantrel_see(record, _hbbtv_vantrel_supportedType(object));
  });
}

// What an element inherits beside, as if the accessor were not there. Listeners that are added before there is a native
// object are noted for it, unless the page has methods of its own in that place.
function _hbbtv_vantrel_inherited(prototype, object, name) {
  const value = _hbbtv_vantrel_kept.getProperty(_hbbtv_vantrel_kept.getPrototypeOf(prototype), name, object);
  if (value === _hbbtv_vantrel_kept.addEventListener && name === "addEventListener")
    return _hbbtv_vantrel_addEarly;
  if (value === _hbbtv_vantrel_kept.removeEventListener && name === "removeEventListener")
    return _hbbtv_vantrel_removeEarly;
  return value;
}

function _hbbtv_vantrel_installTouch(name) {
  const { prototype } = _hbbtv_vantrel_kept.ObjectElement;
  _hbbtv_vantrel_kept.defineProperty(prototype, name, {
    __proto__: null,
    configurable: true,
    enumerable: false,
    get() {
      _hbbtv_vantrel_touch(this);
      if (this !== prototype && _hbbtv_vantrel_kept.hasOwn(this, name))
        return this[name];
      return _hbbtv_vantrel_inherited(prototype, this, name);
    },
    set(value) {
      _hbbtv_vantrel_touch(this);
      if (this === prototype)
        _hbbtv_vantrel_define(this, name, value);
      else if (_hbbtv_vantrel_kept.hasOwn(this, name))
        this[name] = value;
      else
        _hbbtv_vantrel_kept.setProperty(_hbbtv_vantrel_kept.getPrototypeOf(prototype), name, value, this);
    }
  });
}

function _hbbtv_vantrel_installTouches() {
  const { prototype } = _hbbtv_vantrel_kept.ObjectElement;
  const installed = { __proto__: null };
  const install = names => {
    for (let i = 0; i < names.length; ++i) {
      // What every object element has (data, type, width, height) it keeps; markup attributes carry those.
      if (installed[names[i]] || (names[i] in prototype && names[i] !== "addEventListener"
          && names[i] !== "removeEventListener"))
        continue;
      installed[names[i]] = true;
      _hbbtv_vantrel_installTouch(names[i]);
    }
  };
  for (let i = 0; i < _hbbtv_vantrel_plugins.length; ++i) {
    const { attributes, constants, methods } = _hbbtv_vantrel_members[_hbbtv_vantrel_plugins[i].members];
    install(attributes);
    install(constants);
    install(methods);
  }
}
