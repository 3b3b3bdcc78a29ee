// The observer of the document.
//
// A MutationSummary of the document visits every node of every change once for each query; with the twenty
// types here a page of a thousand elements took four times as long to load. So the document has one plain
// observer, which looks at its `object` elements alone and reports as a summary does: what stays in is not
// reported, so an element that was moved keeps its object.

// Records of the supported elements that were in the document at the last look.
var _hbbtv_vantrel_known = _hbbtv_vantrel_list();
// Whether elements were upgraded out of the document. Such an element may come and go between two looks.
var _hbbtv_vantrel_anyLoose = false;
var _hbbtv_vantrel_isObserving = false;
// Every `object` element of the document, now.
var _hbbtv_vantrel_objects = null;

function _hbbtv_vantrel_observe() {
  _hbbtv_vantrel_objects = _hbbtv_vantrel_kept.documentElements(document, "*", "object");
  if (_hbbtv_vantrel_kept.readyState(document) === "loading")
    _hbbtv_vantrel_lookWhileParsing();
  else
    _hbbtv_vantrel_startObserver();
}

// One text, for an option of the browser that takes many and asks for an iterator, which a page may have replaced.
function _hbbtv_vantrel_only(text) {
  let done = false;
  return {
    __proto__: null,
    [_hbbtv_vantrel_kept.iterator]: () => ({
      __proto__: null,
      next() {
        const step = { __proto__: null, done, value: text };
        done = true;
        return step;
      }
    })
  };
}

// WebKit keeps the document of a frame for ever that is taken out of its page while one of its observers has still to
// tell of changes. So observers end with their document.
function _hbbtv_vantrel_newObserver(take) {
  const observer = new _hbbtv_vantrel_kept.MutationObserver(mutations => _hbbtv_vantrel_attempt(() => take(mutations)));
  _hbbtv_vantrel_kept.addListener(window, "pagehide", event => _hbbtv_vantrel_attempt(() => {
    if (!_hbbtv_vantrel_kept.isPersisted(event))
      _hbbtv_vantrel_kept.disconnect(observer);
  }), true);
  return observer;
}

// Begins to observe the document, once.
function _hbbtv_vantrel_startObserver() {
  if (_hbbtv_vantrel_isObserving)
    return;
  _hbbtv_vantrel_isObserving = true;
  _hbbtv_vantrel_kept.observe(_hbbtv_vantrel_newObserver(_hbbtv_vantrel_look), document, {
    __proto__: null, childList: true, subtree: true, attributes: true, attributeFilter: _hbbtv_vantrel_only("type")
  });
  _hbbtv_vantrel_look([]);
}

// The parser adds nodes by the thousand, and each would cost a record. Until it is done a look at each frame does: what
// the page uses earlier is upgraded by touch.
function _hbbtv_vantrel_lookWhileParsing() {
  _hbbtv_vantrel_kept.addListener(document, "readystatechange", _hbbtv_vantrel_startObserver, true);
  const frame = () => {
    if (_hbbtv_vantrel_isObserving)
      return;
    _hbbtv_vantrel_attempt(() => _hbbtv_vantrel_look([]));
    _hbbtv_vantrel_kept.onNextFrame(frame);
  };
  _hbbtv_vantrel_kept.onNextFrame(frame);
}

// The element's type, if it is a supported one.
function _hbbtv_vantrel_supportedType(object) {
  const type = _hbbtv_vantrel_kept.lower(_hbbtv_vantrel_typeOf(object));
  return _hbbtv_vantrel_pluginInfo(type) ? type : "";
}

function _hbbtv_vantrel_see(record, type) {
  record.seen = type;
  _hbbtv_vantrel_append(_hbbtv_vantrel_known, record);
}

function _hbbtv_vantrel_look(mutations) {
  const objects = _hbbtv_vantrel_objects;
  const before = _hbbtv_vantrel_known;
  const count = _hbbtv_vantrel_kept.elementCount(objects);
  // Most pages have none of all this.
  if (count === 0 && before.length === 0 && !_hbbtv_vantrel_anyLoose)
    return;
  const summary = { added: _hbbtv_vantrel_list(), removed: _hbbtv_vantrel_passers(mutations) };
  _hbbtv_vantrel_known = _hbbtv_vantrel_list();
  for (let i = 0; i < before.length; ++i) {
    const { object, seen } = before[i];
    if (_hbbtv_vantrel_inDocument(object) && _hbbtv_vantrel_supportedType(object) === seen) {
      _hbbtv_vantrel_append(_hbbtv_vantrel_known, before[i]);
    } else {
      before[i].seen = "";
      _hbbtv_vantrel_append(summary.removed, object);
    }
  }
  for (let i = 0; i < count; ++i) {
    const type = _hbbtv_vantrel_supportedType(objects[i]);
    if (type && _hbbtv_vantrel_recordOf(objects[i]).seen !== type) {
      _hbbtv_vantrel_see(_hbbtv_vantrel_find(objects[i]), type);
      _hbbtv_vantrel_append(summary.added, objects[i]);
    }
  }
  if (summary.removed.length || summary.added.length)
    _hbbtv_vantrel_check([summary]);
}

// Upgraded elements that were removed although they had not been seen in the document.
function _hbbtv_vantrel_passers(mutations) {
  const passers = _hbbtv_vantrel_list();
  if (!_hbbtv_vantrel_anyLoose)
    return passers;
  const consider = object => {
    const record = _hbbtv_vantrel_find(object);
    if (record && record.oipf && !record.seen && !_hbbtv_vantrel_inDocument(object))
      _hbbtv_vantrel_append(passers, object);
  };
  for (let i = 0; i < mutations.length; ++i) {
    const removed = _hbbtv_vantrel_kept.removedNodes(mutations[i]);
    const count = _hbbtv_vantrel_kept.nodeCount(removed);
    for (let j = 0; j < count; ++j) {
      if (_hbbtv_vantrel_kept.nodeType(removed[j]) !== 1)
        continue;
      consider(removed[j]);
      const inner = _hbbtv_vantrel_kept.descendants(removed[j], "*", "object");
      const innerCount = _hbbtv_vantrel_kept.firstChild(removed[j]) ? _hbbtv_vantrel_kept.elementCount(inner) : 0;
      for (let k = 0; k < innerCount; ++k)
        consider(inner[k]);
    }
  }
  return passers;
}

function _hbbtv_vantrel_elementAdded(object, j) {
  _hbbtv_vantrel_log("Added[" + j + "]");
  _hbbtv_vantrel_initialize_old(object);
  const record = _hbbtv_vantrel_find(object);
  if (record)
    _hbbtv_vantrel_follow(record);
}

function _hbbtv_vantrel_elementRemoved(object, j) {
  _hbbtv_vantrel_log("Removed[" + j + "]");
  const record = _hbbtv_vantrel_find(object);
  if (!record || !record.oipf)
    return;
  // From one type to another of the same kind: the object stays and learns its new type.
  if (_hbbtv_vantrel_inDocument(object) && _hbbtv_vantrel_pluginOf(object) === record.plugin)
    return;
  if (!record.internal) {
    _hbbtv_vantrel_finalize(object);
    return;
  }
  // A page may go on using an element of its own making, which is given a player again when it plays.
  _hbbtv_vantrel_unfollow(record);
  if (record.plugin.visual)
    _hbbtv_vantrel_attempt(() => record.oipf.release());
}

// Takes what a MutationSummary reports; of each summary only `added` and `removed` count.
function _hbbtv_vantrel_check(matches) {
  _hbbtv_vantrel_log("Inside _hbbtv_vantrel_check()");
  const each = (objects, take) => {
    for (let i = 0; i < objects.length; ++i)
      _hbbtv_vantrel_attempt(() => take(objects[i], i));
  };
  for (let i = 0; i < matches.length; ++i)
    each(matches[i].removed, _hbbtv_vantrel_elementRemoved);
  for (let i = 0; i < matches.length; ++i)
    each(matches[i].added, _hbbtv_vantrel_elementAdded);
}
