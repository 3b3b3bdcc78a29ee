// The life of an upgraded element: how it gets its native object, and how it loses it.

function _hbbtv_vantrel_create(plugin, object) {
  return _hbbtv_vantrel_attempt(() => {
    _hbbtv_vantrel_removeStandIns(object);
    return plugin.create(object);
  });
}

// Elements found in the document, or touched.
function _hbbtv_vantrel_initialize_old(object) {
  const type = _hbbtv_vantrel_typeOf(object);
  const known = _hbbtv_vantrel_find(object);
  if (!type || (known && known.oipf) || !_hbbtv_vantrel_kept.isExtensible(object))
    return;
  const attributes = _hbbtv_vantrel_check_params(object);
  const plugin = _hbbtv_vantrel_pluginInfo(_hbbtv_vantrel_kept.lower(type));
  const oipf = _hbbtv_vantrel_create(plugin, object);
  if (!oipf)
    return;
  if (_hbbtv_vantrel_logs)
    _hbbtv_vantrel_log("oipf " + _hbbtv_vantrel_kept.objectText(oipf) + "created");
  _hbbtv_vantrel_attach(object, oipf, plugin, attributes);
}

// Elements of oipfObjectFactory. A browser without internal objects gets the document's way of doing it.
function _hbbtv_vantrel_initialize(object) {
  const type = _hbbtv_vantrel_typeOf(object);
  if (!type)
    return false;
  const plugin = _hbbtv_vantrel_pluginInfo(_hbbtv_vantrel_kept.lower(type));
  if (!plugin) {
    _hbbtv_vantrel_log("unknown object " + type);
    return false;
  }
  const attributes = _hbbtv_vantrel_check_params(object);
  const oipf = _hbbtv_vantrel_create(plugin, object);
  if (!oipf)
    return false;
  if (_hbbtv_vantrel_logs)
    _hbbtv_vantrel_log("oipf " + _hbbtv_vantrel_kept.objectText(oipf) + " created");
  _hbbtv_vantrel_recordOf(object).internal = _hbbtv_vantrel_kept.setInternalObject !== null;
  _hbbtv_vantrel_attach(object, oipf, plugin, attributes);
  return true;
}

function _hbbtv_vantrel_attach(object, oipf, plugin, attributes) {
  const record = _hbbtv_vantrel_recordOf(object);
  // What has changed so far is nothing to this native object.
  _hbbtv_vantrel_flush(record);
  record.oipf = oipf;
  record.plugin = plugin;
  record.ended = false;
  _hbbtv_vantrel_attempt(() => {
    if (record.internal)
      _hbbtv_vantrel_present(record);
    else
      _hbbtv_vantrel_reflect(object, oipf);
    _hbbtv_vantrel_handOverListeners(record);
    _hbbtv_vantrel_watch(record);
    if (!_hbbtv_vantrel_inDocument(object)) {
      _hbbtv_vantrel_anyLoose = true;
      _hbbtv_vantrel_startObserver();
    }
    if (plugin.visual) {
      oipf.setMimeType(_hbbtv_vantrel_typeOf(object));
      oipf.setAttributes(attributes);
      _hbbtv_vantrel_assignAttribute(record, "data");
      _hbbtv_vantrel_assignAttribute(record, "width");
      _hbbtv_vantrel_assignAttribute(record, "height");
    }
  });
  _hbbtv_vantrel_follow(record);
}

// Has the browser do it, which also says when a param comes or changes. Listeners are the script's all the same.
function _hbbtv_vantrel_present(record) {
  const { oipf, plugin } = record;
  _hbbtv_vantrel_kept.setInternalObject(record.object, oipf);
  const { methods } = _hbbtv_vantrel_members[plugin.members];
  for (let i = 0; i < methods.length; ++i) {
    if (_hbbtv_vantrel_kept.match(/EventListener$/, methods[i]))
      _hbbtv_vantrel_reflectMethod(record, oipf, methods[i]);
  }
  if (!plugin.visual)
    return;
  record.sizes = null;
  _hbbtv_vantrel_kept.addListener(record.object, "webkitobjectparamadded", event => {
    _hbbtv_vantrel_log("child param changed");
    const target = _hbbtv_vantrel_kept.eventTarget(event);
    const { oipf: affected } = _hbbtv_vantrel_find(target) || record;
    _hbbtv_vantrel_attempt(() => affected.setAttributes(_hbbtv_vantrel_check_params(target)));
  }, false);
}

function _hbbtv_vantrel_callOwn(object, name) {
  _hbbtv_vantrel_attempt(() => {
    if (_hbbtv_vantrel_kept.hasOwn(object, name))
      object[name]();
  });
}

function _hbbtv_vantrel_finalize(object) {
  const record = _hbbtv_vantrel_find(object);
  if (!record || !record.oipf)
    return;
  _hbbtv_vantrel_log("cleaning: " + _hbbtv_vantrel_kept.objectText(object) + " " + _hbbtv_vantrel_typeOf(object));
  const { oipf, plugin } = record;
  _hbbtv_vantrel_releasePlayer(record);
  _hbbtv_vantrel_callOwn(object, "finalize");
  _hbbtv_vantrel_unfollow(record);
  _hbbtv_vantrel_dropListeners(record);
  if (!record.internal)
    _hbbtv_vantrel_unreflect(object, oipf, plugin);
  _hbbtv_vantrel_hideVideo(record);
  record.oipf = null;
  record.plugin = null;
  record.mutations = null;
  record.sizes = null;
  record.ended = true;
}

// Through the element's own method, and also if a page has put its own in that place.
function _hbbtv_vantrel_releasePlayer(record) {
  const { object, oipf, plugin } = record;
  const own = _hbbtv_vantrel_kept.getOwnPropertyDescriptor(object, "release");
  _hbbtv_vantrel_callOwn(object, "release");
  const isOurs = own && _hbbtv_vantrel_kept.hasOwn(own, "value") && own.value === record.release;
  if (plugin.visual && !isOurs && !record.internal)
    _hbbtv_vantrel_attempt(() => oipf.release());
}
