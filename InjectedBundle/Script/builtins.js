// The user script that runs in every frame before the document's own scripts, in parts that are joined in the order
// of parts.txt. It turns `object` elements of the OIPF types into native objects and defines
// window.oipfObjectFactory.
//
// It shares the global scope with the page, so every identifier begins with _hbbtv_vantrel_, and nothing of it may
// throw into the page. It may run twice in one global object (an empty document whose window the first real document
// takes over), so it declares with `var` and `function` only.
//
// A page may replace every built-in and put accessors and setters on the prototypes. So what is used after the start
// is kept here as it was before any script of the page, as functions that take what they work on as their first
// argument. The other parts call no method of a built-in, do not iterate, spread or destructure arrays, and give the
// browser no options or descriptors that inherit. Lists have no prototype, so that a setter for an index
// on Array.prototype takes nothing away.

var _hbbtv_vantrel_kept = (() => {
  const { apply, defineProperty, getOwnPropertyDescriptor } = Reflect;
  const { requestAnimationFrame } = globalThis;
  const uncurry = Function.prototype.bind.bind(Function.prototype.call);
  // Where the script is read without a browser there are no elements to work on.
  const prototype = owner => (globalThis[owner] ? globalThis[owner].prototype : {});
  const method = (owner, name) => uncurry(prototype(owner)[name]);
  const getter = (owner, name) => uncurry((getOwnPropertyDescriptor(prototype(owner), name) || {}).get);
  return Object.freeze({
    __proto__: null,
    apply,
    defineProperty,
    deleteProperty: Reflect.deleteProperty,
    getOwnPropertyDescriptor,
    getPrototypeOf: Reflect.getPrototypeOf,
    isExtensible: Reflect.isExtensible,
    getProperty: Reflect.get,
    setProperty: Reflect.set,
    setPrototypeOf: Reflect.setPrototypeOf,
    hasOwn: method("Object", "hasOwnProperty"),
    text: String,
    objectText: method("Object", "toString"),
    functionText: method("Function", "toString"),
    json: JSON.stringify,
    parseInteger: parseInt,
    TypeError,
    iterator: Symbol.iterator,
    lower: method("String", "toLowerCase"),
    compare: method("String", "localeCompare"),
    startsWith: method("String", "startsWith"),
    indexOf: method("String", "indexOf"),
    match: method("RegExp", "exec"),
    getRecord: method("WeakMap", "get"),
    setRecord: method("WeakMap", "set"),
    consoleLog: console.log.bind(console),
    onNextFrame: callback => apply(requestAnimationFrame, window, [callback]),

    addEventListener: prototype("EventTarget").addEventListener,
    removeEventListener: prototype("EventTarget").removeEventListener,
    addListener: method("EventTarget", "addEventListener"),
    removeListener: method("EventTarget", "removeEventListener"),
    eventTarget: getter("Event", "target"),
    isPersisted: getter("PageTransitionEvent", "persisted"),
    eventDetail: getter("CustomEvent", "detail"),

    nodeType: getter("Node", "nodeType"),
    isConnected: getter("Node", "isConnected"),
    ownerDocument: getter("Node", "ownerDocument"),
    parentNode: getter("Node", "parentNode"),
    appendChild: method("Node", "appendChild"),
    removeChild: method("Node", "removeChild"),
    replaceChild: method("Node", "replaceChild"),
    localName: getter("Element", "localName"),
    namespace: getter("Element", "namespaceURI"),
    firstChild: getter("Element", "firstElementChild"),
    nextSibling: getter("Element", "nextElementSibling"),
    getAttribute: method("Element", "getAttribute"),
    setAttribute: method("Element", "setAttribute"),
    attributeNames: method("Element", "getAttributeNames"),
    descendants: method("Element", "getElementsByTagNameNS"),
    style: getter("HTMLElement", "style"),
    setStyle: method("CSSStyleDeclaration", "setProperty"),
    paramName: getter("HTMLParamElement", "name"),
    paramValue: getter("HTMLParamElement", "value"),
    ObjectElement: globalThis.HTMLObjectElement,
    // Null where the browser has no internal objects.
    setInternalObject: prototype("HTMLObjectElement").webkitSetInternalObject
      ? method("HTMLObjectElement", "webkitSetInternalObject") : null,
    createElement: method("Document", "createElementNS"),
    documentElements: method("Document", "getElementsByTagNameNS"),
    readyState: getter("Document", "readyState"),
    nodeCount: getter("NodeList", "length"),
    elementCount: getter("HTMLCollection", "length"),

    MutationObserver: globalThis.MutationObserver,
    observe: method("MutationObserver", "observe"),
    disconnect: method("MutationObserver", "disconnect"),
    takeMutations: method("MutationObserver", "takeRecords"),
    mutationType: getter("MutationRecord", "type"),
    mutationTarget: getter("MutationRecord", "target"),
    mutatedAttribute: getter("MutationRecord", "attributeName"),
    oldValue: getter("MutationRecord", "oldValue"),
    addedNodes: getter("MutationRecord", "addedNodes"),
    removedNodes: getter("MutationRecord", "removedNodes")
  });
})();

// The natives of this frame; a page may put something else in their place.
var _hbbtv_vantrel_natives = (() => {
  const factory = globalThis.PrivateObjectFactory;
  const natives = { __proto__: null };
  for (const name in factory) {
    const create = factory[name];
    if (typeof create === "function")
      natives[name] = () => _hbbtv_vantrel_kept.apply(create, factory, []);
  }
  return natives;
})();

function _hbbtv_vantrel_list() {
  const list = [];
  _hbbtv_vantrel_kept.setPrototypeOf(list, null);
  return list;
}

function _hbbtv_vantrel_append(list, value) {
  list[list.length] = value;
}

function _hbbtv_vantrel_filter(list, wanted) {
  const kept = _hbbtv_vantrel_list();
  for (let i = 0; i < list.length; ++i) {
    if (wanted(list[i]))
      kept[kept.length] = list[i];
  }
  return kept;
}

// A property as an assignment to an object without any would make it.
function _hbbtv_vantrel_define(object, name, value) {
  return _hbbtv_vantrel_kept.defineProperty(object, name,
    { __proto__: null, value, configurable: true, enumerable: true, writable: true });
}
