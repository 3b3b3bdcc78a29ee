// Listeners. An element is an event target besides: a listener hears the events of the element and of its native
// object. Of those of the native object a note is kept, because they keep it alive and must go with it.

function _hbbtv_vantrel_isListener(listener) {
  return typeof listener === "function" || (typeof listener === "object" && listener !== null);
}

function _hbbtv_vantrel_isOnce(options) {
  return typeof options === "object" && options !== null && Boolean(options.once);
}

// What the native object is given. It takes functions only, and calls them for ever.
function _hbbtv_vantrel_nativeListener(record, note) {
  const { listener } = note;
  const isFunction = typeof listener === "function";
  if (isFunction && !note.once)
    return listener;
  return function (event) {
    if (note.once)
      _hbbtv_vantrel_forget(record, known => known === note);
    return isFunction ? _hbbtv_vantrel_kept.apply(listener, this, [event]) : listener.handleEvent(event);
  };
}

function _hbbtv_vantrel_note(args) {
  return { type: args[0], listener: args[1], once: _hbbtv_vantrel_isOnce(args[2]), native: null };
}

// What the native object refuses throws here, and leaves no note. Arguments come as lists without a prototype.
function _hbbtv_vantrel_listen(record, note, args) {
  const same = known => known.type === note.type && known.listener === note.listener;
  if (_hbbtv_vantrel_filter(record.listeners, same).length > 0)
    return undefined;
  note.native = _hbbtv_vantrel_nativeListener(record, note);
  args[1] = note.native;
  const result = _hbbtv_vantrel_kept.apply(record.oipf.addEventListener, record.oipf, args);
  _hbbtv_vantrel_append(record.listeners, note);
  return result;
}

// The native object has forgotten a plain function by itself: whatever it listened to, as it always does.
function _hbbtv_vantrel_forget(record, goes) {
  const { listeners } = record;
  record.listeners = _hbbtv_vantrel_filter(listeners, note => !goes(note));
  for (let i = 0; i < listeners.length; ++i) {
    if (goes(listeners[i]) && listeners[i].native !== listeners[i].listener)
      record.oipf.removeEventListener(listeners[i].type, listeners[i].native, false);
  }
}

// The two methods of an upgraded element. The native object comes first: what it refuses is not added to the element.
function _hbbtv_vantrel_addListener(record, args) {
  if (!_hbbtv_vantrel_isListener(args[1]))
    return _hbbtv_vantrel_kept.apply(record.oipf.addEventListener, record.oipf, args);
  const note = _hbbtv_vantrel_note(args);
  const result = _hbbtv_vantrel_listen(record, note, args);
  _hbbtv_vantrel_kept.addListener(record.object, note.type, note.listener, args[2]);
  return result;
}

function _hbbtv_vantrel_removeListener(record, args) {
  const result = _hbbtv_vantrel_kept.apply(record.oipf.removeEventListener, record.oipf, args);
  if (!_hbbtv_vantrel_isListener(args[1]))
    return result;
  _hbbtv_vantrel_kept.removeListener(record.object, args[0], args[1], args[2]);
  _hbbtv_vantrel_forget(record,
    note => note.listener === args[1] && (note.native === args[1] || note.type === args[0]));
  return result;
}

// Those of stream events go by all their three arguments.
function _hbbtv_vantrel_streamListener(record, name, args) {
  const result = _hbbtv_vantrel_kept.apply(record.oipf[name], record.oipf, args);
  const differs = known => known[0] !== args[0] || known[1] !== args[1] || known[2] !== args[2];
  record.streamListeners = _hbbtv_vantrel_filter(record.streamListeners, differs);
  if (name === "addStreamEventListener")
    _hbbtv_vantrel_append(record.streamListeners, args);
  return result;
}

// ---- Before an element has an object ----

// In the place of those of every event target, on the prototype of object elements.
function _hbbtv_vantrel_addEarly(...args) {
  _hbbtv_vantrel_kept.setPrototypeOf(args, null);
  const result = _hbbtv_vantrel_kept.addListener(this, args[0], args[1], args[2]);
  if (_hbbtv_vantrel_isListener(args[1])) {
    const record = _hbbtv_vantrel_recordOf(this);
    if (!record.oipf)
      _hbbtv_vantrel_append(record.early, args);
  }
  return result;
}

function _hbbtv_vantrel_removeEarly(type, listener, options) {
  const record = _hbbtv_vantrel_find(this);
  if (record)
    record.early = _hbbtv_vantrel_filter(record.early, early => early[0] !== type || early[1] !== listener);
  return _hbbtv_vantrel_kept.removeListener(this, type, listener, options);
}

function _hbbtv_vantrel_handOverListeners(record) {
  const { early } = record;
  record.early = _hbbtv_vantrel_list();
  for (let i = 0; typeof record.oipf.addEventListener === "function" && i < early.length; ++i)
    _hbbtv_vantrel_attempt(() => _hbbtv_vantrel_listen(record, _hbbtv_vantrel_note(early[i]), early[i]));
}

// A native object with listeners and handlers lives on and fires.
function _hbbtv_vantrel_dropListeners(record) {
  const { oipf, listeners, streamListeners } = record;
  record.listeners = _hbbtv_vantrel_list();
  record.streamListeners = _hbbtv_vantrel_list();
  for (let i = 0; i < listeners.length; ++i)
    _hbbtv_vantrel_attempt(() => oipf.removeEventListener(listeners[i].type, listeners[i].native, false));
  for (let i = 0; i < streamListeners.length; ++i) {
    _hbbtv_vantrel_attempt(() => _hbbtv_vantrel_kept.apply(oipf.removeStreamEventListener, oipf, streamListeners[i]));
  }
  const { attributes } = _hbbtv_vantrel_members[record.plugin.members];
  for (let i = 0; i < attributes.length; ++i) {
    if (_hbbtv_vantrel_kept.startsWith(attributes[i], "on"))
      _hbbtv_vantrel_assign(oipf, attributes[i], null);
  }
}
