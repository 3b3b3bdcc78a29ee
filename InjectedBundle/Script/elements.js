// Elements and what is known of them: one record for each element that was touched, listened to or upgraded.

// Weak, so that an element that the page drops before it was ever in the document can go, and its native object
// with it.
var _hbbtv_vantrel_records = new WeakMap();

// Undefined for an element that nothing is known of.
function _hbbtv_vantrel_find(object) {
  return _hbbtv_vantrel_kept.getRecord(_hbbtv_vantrel_records, object);
}

function _hbbtv_vantrel_recordOf(object) {
  const known = _hbbtv_vantrel_find(object);
  if (known)
    return known;
  const record = {
    object,
    oipf: null, // While it has a native object.
    plugin: null, // The registry entry of that object.
    internal: false, // An element of oipfObjectFactory, which the browser makes present its object.
    ended: false, // Its object was taken away; out of the document it stays ordinary.
    seen: "", // Its type, if it was in the document at the last look.
    mutations: null, // Of its attributes and children, that are still to be looked at.
    listeners: _hbbtv_vantrel_list(), // { type, listener, once, native }, of the native object.
    early: _hbbtv_vantrel_list(), // Lists of arguments, before there is one.
    streamListeners: _hbbtv_vantrel_list(), // Lists of arguments.
    sizes: null, // Width and height of the markup that a player is told of when there is one.
    release: null, // The reflected method.
    rule: null, // Of the native object, whether it shows a picture.
    hole: null, // For the video plane.
    background: null,
    shown: null, // Which of the two is in the element.
    restoring: false,
    update: null, // The listener that follows the native object's state,
    following: false // while this is true.
  };
  _hbbtv_vantrel_kept.setRecord(_hbbtv_vantrel_records, object, record);
  return record;
}

// After reflection `object.type` is the native object's, so the attribute is what counts.
function _hbbtv_vantrel_typeOf(object) {
  return _hbbtv_vantrel_kept.getAttribute(object, "type") || "";
}

function _hbbtv_vantrel_pluginOf(object) {
  return _hbbtv_vantrel_pluginInfo(_hbbtv_vantrel_kept.lower(_hbbtv_vantrel_typeOf(object)));
}

function _hbbtv_vantrel_inDocument(object) {
  return _hbbtv_vantrel_kept.isConnected(object) && _hbbtv_vantrel_kept.ownerDocument(object) === document;
}

var _hbbtv_vantrel_xhtml = "http://www.w3.org/1999/xhtml";

function _hbbtv_vantrel_createElement(name) {
  // createElement would make an element without a namespace in some XML documents.
  return _hbbtv_vantrel_kept.createElement(document, _hbbtv_vantrel_xhtml, name);
}

function _hbbtv_vantrel_isElement(node, name) {
  return _hbbtv_vantrel_kept.nodeType(node) === 1 && _hbbtv_vantrel_kept.localName(node) === name
    && _hbbtv_vantrel_kept.namespace(node) === _hbbtv_vantrel_xhtml;
}

// Element children, of which `take` may remove the one that it gets.
function _hbbtv_vantrel_eachChild(object, take) {
  let child = _hbbtv_vantrel_kept.firstChild(object);
  while (child) {
    const next = _hbbtv_vantrel_kept.nextSibling(child);
    take(child);
    child = next;
  }
}

function _hbbtv_vantrel_check_params(object) {
  const params = { __proto__: null };
  if (!_hbbtv_vantrel_isElement(object, "object"))
    return params;
  const names = _hbbtv_vantrel_kept.attributeNames(object);
  for (let i = 0; i < names.length; ++i)
    params[names[i]] = _hbbtv_vantrel_kept.getAttribute(object, names[i]);
  _hbbtv_vantrel_eachChild(object, child => _hbbtv_vantrel_readParam(child, params));
  return params;
}

function _hbbtv_vantrel_readParam(child, params) {
  if (_hbbtv_vantrel_isElement(child, "param"))
    params[_hbbtv_vantrel_kept.paramName(child)] = _hbbtv_vantrel_kept.paramValue(child);
}
