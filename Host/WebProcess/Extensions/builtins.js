// What a television's browser has and WebKitGTK has not. Runs in every frame before any other script; nothing of it is
// enumerable, and a page that uses none of it pays for a few listeners that never fire.
//
// The parts are joined in the order of Host/WebProcess/CMakeLists.txt, and are the body of one strict function whose
// argument `glass` is the adapter's way to paint; `lets` judges a driver's keys, and is null without a driver.

// A page may put its own things in these places. What is used after the start is taken here, methods and getters as
// functions whose first argument is what they work on; options and descriptors inherit from nothing, and arrays
// are not iterated.
const {
    CustomEvent, Document, Event, HTMLObjectElement, ImageData, IntersectionObserver, MutationObserver,
    ResizeObserver, requestAnimationFrame,
} = window;
const { apply, defineProperty, deleteProperty, getOwnPropertyDescriptor, getPrototypeOf, setPrototypeOf } = Reflect;
const { keys, prototype: everyObject } = Object;
const { min, floor, round } = Math;
const uncurry = Function.prototype.bind.bind(Function.prototype.call);
const method = (owner, name) => uncurry(window[owner].prototype[name]);
const getter = (owner, name) => uncurry(getOwnPropertyDescriptor(window[owner].prototype, name).get);
const setter = (owner, name) => uncurry(getOwnPropertyDescriptor(window[owner].prototype, name).set);

const hasOwn = method('Object', 'hasOwnProperty');
const characterCode = method('String', 'charCodeAt');
const mapGet = method('WeakMap', 'get');
const mapSet = method('WeakMap', 'set');
const mapDelete = method('WeakMap', 'delete');
const addListener = method('EventTarget', 'addEventListener');
const removeListener = method('EventTarget', 'removeEventListener');
const dispatch = method('EventTarget', 'dispatchEvent');
const stopEvent = method('Event', 'stopImmediatePropagation');
const preventDefault = method('Event', 'preventDefault');
const targetOf = getter('Event', 'target');
const animationOf = getter('AnimationEvent', 'animationName');
const keyOf = getter('KeyboardEvent', 'key');
const keyCodeOf = getter('KeyboardEvent', 'keyCode');
const localNameOf = getter('Element', 'localName');
const getAttribute = method('Element', 'getAttribute');
const attachShadow = method('Element', 'attachShadow');
const appendChild = method('Node', 'appendChild');
const makeElement = method('Document', 'createElementNS');
const bodyOf = getter('Document', 'body');
const propertyOf = method('CSSStyleDeclaration', 'getPropertyValue');
const startsWith = method('String', 'startsWith');
const computedStyle = uncurry(window.getComputedStyle);
const styleOf = getter('HTMLElement', 'style');
const setStyle = setter('CSSStyleDeclaration', 'cssText');
const getContext = method('HTMLCanvasElement', 'getContext');
const setCanvasWidth = setter('HTMLCanvasElement', 'width');
const setCanvasHeight = setter('HTMLCanvasElement', 'height');
const putImage = method('CanvasRenderingContext2D', 'putImageData');
const setFont = setter('CanvasRenderingContext2D', 'font');
const setAlign = setter('CanvasRenderingContext2D', 'textAlign');
const setFill = setter('CanvasRenderingContext2D', 'fillStyle');
const setPen = setter('CanvasRenderingContext2D', 'lineWidth');
const drawOutline = method('CanvasRenderingContext2D', 'strokeText');
const drawText = method('CanvasRenderingContext2D', 'fillText');
const lastIndexOf = method('String', 'lastIndexOf');
const substring = method('String', 'substring');
const bytesOf = getter('ImageData', 'data');
const rectOf = method('Element', 'getBoundingClientRect');
const rectsOf = method('Element', 'getClientRects');
const borderLeft = getter('Element', 'clientLeft');
const borderTop = getter('Element', 'clientTop');
const rectCount = getter('DOMRectList', 'length');
const leftOf = getter('DOMRectReadOnly', 'left');
const topOf = getter('DOMRectReadOnly', 'top');
const widthOf = getter('DOMRectReadOnly', 'width');
const heightOf = getter('DOMRectReadOnly', 'height');
const nodeTypeOf = getter('Node', 'nodeType');
const parentOf = getter('Node', 'parentNode');
const documentOf = getter('Node', 'ownerDocument');
const viewOf = getter('Document', 'defaultView');
const contentTypeOf = getter('Document', 'contentType');
const nodeCount = getter('NodeList', 'length');
const mutationType = getter('MutationRecord', 'type');
const mutationTarget = getter('MutationRecord', 'target');
const addedNodes = getter('MutationRecord', 'addedNodes');
const observeMutations = method('MutationObserver', 'observe');
const stopMutations = method('MutationObserver', 'disconnect');
const ratioOf = getter('IntersectionObserverEntry', 'intersectionRatio');
const observePlace = method('IntersectionObserver', 'observe');
const stopPlace = method('IntersectionObserver', 'disconnect');
const observeSize = method('ResizeObserver', 'observe');
const stopSize = method('ResizeObserver', 'unobserve');
const ofWindow = name => uncurry(getOwnPropertyDescriptor(window, name).get);
const frameElementOf = ofWindow('frameElement');
const widthOfView = ofWindow('innerWidth');
const heightOfView = ofWindow('innerHeight');

function makeDefine(enumerable) {
    return (object, name, value) => defineProperty(object, name,
        { __proto__: null, value, writable: true, enumerable, configurable: true });
}
const define = makeDefine(false);
const defineVisible = makeDefine(true);

// Without a prototype, a setter for an index there takes nothing away.
function makeList() {
    const list = [];
    setPrototypeOf(list, null);
    return list;
}
