// What a television's browser has and WebKitGTK has not. Runs in every frame before any other script; nothing
// of it is enumerable, and a page that uses none of it pays for a few listeners that never fire. `glass` is the
// adapter's way to paint.
(glass => {
    'use strict';

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

    // Documents of HbbTV's own type. WebKit parses them as XML of no particular kind, in which new elements
    // belong to no namespace; to a television they are XHTML.
    const xhtml = 'http://www.w3.org/1999/xhtml';
    const applicationType = 'application/vnd.hbbtv.xhtml+xml';
    if (document.contentType === applicationType) {
        const { createElement, createElementNS } = Document.prototype;
        defineVisible(Document.prototype, 'createElement', function (name, options) {
            return contentTypeOf(this) === applicationType
                ? apply(createElementNS, this, [xhtml, name, options])
                : apply(createElement, this, [name, options]);
        });
    }

    // WebKit puts what is not well-formed on the screen alone, and there a style may hide it.
    if (document.contentType !== 'text/html') {
        const { console: { error: tell }, document: { URL: address } } = window;
        const find = method('Document', 'querySelector');
        const textOf = getter('Node', 'textContent');
        const trim = method('String', 'trim');
        addListener(document, 'DOMContentLoaded', () => {
            const fault = find(document, 'parsererror > div');
            if (fault)
                tell(address + ' is not well-formed: ' + trim(textOf(fault)));
        });
    }

    // Internal objects: an object element presents the members of a native object as its own.

    const presentations = new WeakMap(); // Element to what is presented on it.

    function isMethod(internal, name) {
        return !hasOwn(internal, name) && typeof internal[name] === 'function';
    }

    function present(element, internal, name) {
        if (isMethod(internal, name)) {
            const ofInternal = internal[name];
            defineVisible(element, name, (...args) => apply(ofInternal, internal, args));
            return;
        }
        defineProperty(element, name, {
            __proto__: null,
            get: () => internal[name],
            set: value => {
                internal[name] = value;
            },
            enumerable: true,
            configurable: true,
        });
    }

    function isParamOf(element, node) {
        return nodeTypeOf(node) === 1 && localNameOf(node) === 'param' && parentOf(node) === element;
    }

    function concernsParam(element, mutation) {
        if (mutationType(mutation) !== 'childList') {
            return isParamOf(element, mutationTarget(mutation));
        }
        const nodes = addedNodes(mutation);
        for (let i = 0; i < nodeCount(nodes); ++i) {
            if (isParamOf(element, nodes[i])) {
                return true;
            }
        }
        return false;
    }

    function announceParams(element) {
        const observer = new MutationObserver(mutations => {
            for (let i = 0; i < mutations.length; ++i) {
                if (concernsParam(element, mutations[i])) {
                    dispatch(element, new Event('webkitobjectparamadded', { __proto__: null, bubbles: true }));
                    return;
                }
            }
        });
        observeMutations(observer, element, { __proto__: null, childList: true, subtree: true, attributes: true });
        return observer;
    }

    define(HTMLObjectElement.prototype, 'webkitSetInternalObject', function (internal) {
        const former = mapGet(presentations, this);
        if (former) {
            stopMutations(former.observer);
            for (let i = 0; i < former.names.length; ++i) {
                deleteProperty(this, former.names[i]);
            }
            mapDelete(presentations, this);
        }
        if (internal === null || typeof internal !== 'object') {
            return;
        }
        const names = makeList();
        // Its own and its class's, but nothing that a page may have put on the prototype of all objects.
        for (let holder = internal; holder && holder !== everyObject; holder = getPrototypeOf(holder)) {
            const own = keys(holder);
            for (let i = 0; i < own.length; ++i) {
                present(this, internal, own[i]);
                names[names.length] = own[i];
            }
        }
        mapSet(presentations, this, { names, observer: announceParams(this) });
    });

    // Panes: the picture in a hole, on a canvas out of the page's reach.

    const panes = new WeakMap(); // Hole to its pane.

    // Said again, a style would be looked at again.
    function makeStyler(element) {
        let last = '';
        return style => {
            if (style !== last) {
                last = style;
                setStyle(styleOf(element), style);
            }
        };
    }

    // White with a black outline, the last line at the bottom.
    function drawSubtitles(context, text, width, height) {
        const size = height / 14;
        setFont(context, `${size}px sans-serif`);
        setAlign(context, 'center');
        setFill(context, 'white');
        setPen(context, size / 6);
        let bottom = height * 0.92;
        for (let end = text.length; end >= 0;) {
            const start = end === 0 ? 0 : lastIndexOf(text, '\n', end - 1) + 1;
            const line = substring(text, start, end);
            drawOutline(context, line, width / 2, bottom, width * 0.95);
            drawText(context, line, width / 2, bottom, width * 0.95);
            bottom -= size * 1.2;
            end = start - 1;
        }
    }

    // In a new closed shadow tree of the host.
    function makeCanvas(host) {
        const canvas = makeElement(document, xhtml, 'canvas');
        const root = attachShadow(host, { __proto__: null, mode: 'closed' });
        appendChild(root, canvas);
        // In the processor's memory, where the pictures come from.
        const context = getContext(canvas, '2d', { __proto__: null, alpha: false, willReadFrequently: true });
        const restyle = makeStyler(canvas);
        let image = null;
        let size = '';
        // Leaves it black.
        function resize(width, height) {
            size = `${width}x${height}`;
            setCanvasWidth(canvas, width);
            setCanvasHeight(canvas, height);
        }
        function paint(style, width, height, subtitles) {
            restyle(style);
            if (width === 0) {
                return;
            }
            const isResized = size !== `${width}x${height}`;
            if (isResized) {
                image = new ImageData(width, height);
            }
            if (!glass.fill(bytesOf(image))) {
                return;
            }
            if (isResized) {
                resize(width, height);
            }
            putImage(context, image, 0, 0);
            if (subtitles) {
                drawSubtitles(context, subtitles, width, height);
            }
        }
        return { root, resize, paint };
    }

    function makePane() {
        const host = makeElement(document, xhtml, 'hbbtv-glass');
        return { host, paint: makeCanvas(host).paint, player: undefined };
    }

    // A page that empties the hole takes its pane out.
    function keepPane(hole) {
        let pane = mapGet(panes, hole);
        if (!pane) {
            pane = makePane();
            mapSet(panes, hole, pane);
        }
        if (parentOf(pane.host) !== hole) {
            appendChild(hole, pane.host);
        }
        return pane;
    }

    // The running channel behind a page that has no background, or one that it shines through.

    const noColour = 'rgba(0, 0, 0, 0)';
    const hidden = 'display: none';
    let behind = null; // { body, canvas, restyleVeil, style, seen } of the body that there was.

    // The background of the whole page, which lies beneath everything that can be put into it; null for one that hides
    // all, or may.
    function rootColour(body) {
        let colour = noColour;
        for (let element = parentOf(body); colour === noColour; element = body) {
            const style = computedStyle(window, element);
            if (propertyOf(style, 'background-image') !== 'none') {
                return null;
            }
            colour = propertyOf(style, 'background-color');
            if (element === body) {
                break;
            }
        }
        return startsWith(colour, 'rgba') ? colour : null;
    }

    function makeBehind(body) {
        try {
            const canvas = makeCanvas(body);
            const veil = makeElement(document, xhtml, 'div');
            appendChild(canvas.root, veil);
            appendChild(canvas.root, makeElement(document, xhtml, 'slot'));
            return { body, canvas, restyleVeil: makeStyler(veil), style: hidden, seen: null };
        } catch {
            // Its shadow tree is the page's own.
            return { body, canvas: null };
        }
    }

    // Black first: without compositing, what a transparent page no longer paints stays for seconds.
    function hideBehind(shown) {
        shown.canvas.resize(1, 1);
        shown.canvas.paint(shown.seen, 0, 0);
        shown.style = hidden;
        const hide = () => {
            if (shown.style === hidden) {
                shown.canvas.paint(hidden, 0, 0);
                shown.restyleVeil(hidden);
            }
        };
        apply(requestAnimationFrame, window, [() => apply(requestAnimationFrame, window, [hide])]);
    }

    // True when nothing is to be seen of it.
    function paintBehind(style, width, height) {
        const body = bodyOf(document);
        const colour = body === null ? null : rootColour(body);
        const isSeen = colour !== null && style !== hidden;
        if (isSeen && (behind === null || behind.body !== body)) {
            behind = makeBehind(body);
            if (width === 0) {
                return true;
            }
        }
        if (behind === null || behind.canvas === null) {
            return true;
        }
        if (isSeen) {
            behind.style = behind.seen = style;
            behind.canvas.paint(style, width, height);
            behind.restyleVeil(colour === noColour ? hidden : `${style}; background: ${colour}`);
        } else if (behind.style !== hidden || (colour !== null && behind.seen !== null)) {
            // The page may just have become transparent, and has what it had before on the screen.
            hideBehind(behind);
        }
        return !isSeen;
    }

    if (window === window.top) {
        glass.behind(paintBehind);
    }

    // Holes: elements of this name through which the video plane shows. Each hears of its box on the screen.

    const states = new WeakMap(); // Hole to its state, while it is in the list.
    let holes = makeList(); // The states: { hole, box, mover, emptied }.
    let checkPending = false;
    let resizes = null;

    // Where the hole is in the viewport of the whole page, as far as the frames around are of the same
    // origin: else in that of the outermost frame that is.
    function placeOf(hole) {
        const rect = rectOf(hole);
        const place = { left: leftOf(rect), top: topOf(rect), width: widthOf(rect), height: heightOf(rect),
            view: window };
        try {
            for (let frame = frameElementOf(window); frame; frame = frameElementOf(place.view)) {
                const outer = rectOf(frame);
                place.left += leftOf(outer) + borderLeft(frame);
                place.top += topOf(outer) + borderTop(frame);
                place.view = viewOf(documentOf(frame));
            }
        } catch {
            // A frame of another origin around.
        }
        return place;
    }

    function boxOf({ left, top, width, height }) {
        if (width === 0 || height === 0) {
            return { x: 0, y: 0, width: 0, height: 0 };
        }
        const x = round(left);
        const y = round(top);
        return { x, y, width: round(left + width) - x, height: round(top + height) - y };
    }

    // Fires when the hole leaves the very place where it is: the root is shrunk to the hole's own box, so
    // that every move, whatever its cause, changes how much of the hole is inside.
    function watchPlace(state, place, threshold = 1) {
        const { hole } = state;
        if (state.mover) {
            stopPlace(state.mover);
        }
        const innerWidth = widthOfView(place.view);
        const innerHeight = heightOfView(place.view);
        const right = innerWidth - (place.left + place.width);
        const bottom = innerHeight - (place.top + place.height);
        const outside = place.left >= innerWidth || place.top >= innerHeight || right >= innerWidth
            || bottom >= innerHeight;
        const inset = value => `${outside ? 0 : -floor(value)}px`;
        let isFirst = true;
        state.mover = new IntersectionObserver(entries => {
            const ratio = ratioOf(entries[entries.length - 1]);
            if (!isFirst) {
                schedule();
                return;
            }
            isFirst = false;
            const { left, top } = placeOf(hole);
            if (left !== place.left || top !== place.top) {
                // It has moved since, and the new place must not be taken for the old one.
                schedule();
            } else if (!outside && ratio !== threshold) {
                watchPlace(state, place, min(1, ratio) || 1e-7);
            }
        }, {
            __proto__: null,
            root: place.view === window.top ? null : place.view.document,
            rootMargin: `${inset(place.top)} ${inset(right)} ${inset(bottom)} ${inset(place.left)}`,
            threshold: outside ? 0 : threshold,
        });
        observePlace(state.mover, hole);
    }

    function schedule() {
        if (!checkPending) {
            checkPending = true;
            apply(requestAnimationFrame, window, [check]);
        }
    }

    function isBroadcast(hole) {
        const object = parentOf(hole);
        return object !== null && nodeTypeOf(object) === 1 && getAttribute(object, 'type') === 'video/broadcast';
    }

    function check() {
        checkPending = false;
        const all = holes;
        for (let i = 0; i < all.length; ++i) {
            const state = all[i];
            const { hole } = state;
            const place = placeOf(hole);
            const box = boxOf(place);
            const { x, y, width, height } = state.box;
            const pane = keepPane(hole);
            if (box.x !== x || box.y !== y || box.width !== width || box.height !== height) {
                state.box = box;
                const tell = () =>
                    dispatch(hole, new CustomEvent('geometrychanged', { __proto__: null, detail: box }));
                pane.player = glass.place(pane.paint, isBroadcast(hole), pane.player, box.x, box.y, box.width,
                    box.height, tell);
            }
            // Out of the document, or not rendered; it begins anew when it is again.
            if (rectCount(rectsOf(hole)) === 0) {
                glass.remove(pane.paint);
                forget(state);
            } else {
                watchPlace(state, place);
            }
        }
    }

    const ofScroll = { __proto__: null, capture: true, passive: true };

    function follow(hole) {
        if (mapGet(states, hole)) {
            return;
        }
        if (holes.length === 0) {
            resizes = new ResizeObserver(schedule);
            addListener(window, 'resize', schedule);
            addListener(document, 'scroll', schedule, ofScroll);
        }
        const state = { hole, box: { x: 0, y: 0, width: 0, height: 0 }, mover: null,
            emptied: new MutationObserver(schedule) };
        holes[holes.length] = state;
        mapSet(states, hole, state);
        observeSize(resizes, hole);
        observeMutations(state.emptied, hole, { __proto__: null, childList: true });
        schedule();
    }

    function forget(state) {
        const { hole, mover, emptied } = state;
        if (mover) {
            stopPlace(mover);
        }
        stopMutations(emptied);
        stopSize(resizes, hole);
        mapDelete(states, hole);
        const rest = makeList();
        for (let i = 0; i < holes.length; ++i) {
            if (holes[i] !== state) {
                rest[rest.length] = holes[i];
            }
        }
        holes = rest;
        if (holes.length === 0) {
            removeListener(window, 'resize', schedule);
            removeListener(document, 'scroll', schedule, ofScroll);
        }
    }

    // The shell's style sheet animates holes, so that one that appears announces itself and pages without any
    // need not be watched.
    window.addEventListener('animationstart', event => {
        if (animationOf(event) === '-hbbtv-hole') {
            stopEvent(event);
            follow(targetOf(event));
        }
    }, true);

    // Keys that only a remote control has. The shell sends them as keyboard events of a private character, so
    // that they keep their order and find the focus like all others; here they get their code.

    const firstPrivateCharacter = 0xe000;
    const keyNames = {
        __proto__: null,
        403: 'ColorF0Red', 404: 'ColorF1Green', 405: 'ColorF2Yellow', 406: 'ColorF3Blue',
        412: 'MediaRewind', 413: 'MediaStop', 415: 'MediaPlay', 416: 'MediaRecord',
        417: 'MediaFastForward', 424: 'MediaTrackPrevious', 425: 'MediaTrackNext', 427: 'ChannelUp',
        428: 'ChannelDown', 447: 'AudioVolumeUp', 448: 'AudioVolumeDown', 449: 'AudioVolumeMute',
        457: 'Info', 458: 'Guide', 459: 'Teletext', 460: 'Subtitle', 461: 'GoBack', 462: 'ContextMenu',
        463: 'MediaPlayPause',
    };
    let lastKeyEvent = null; // Kept so that what is defined on it is there for every listener.

    function remoteKeyCode(event) {
        const key = keyOf(event);
        const character = event.isTrusted && key.length === 1 ? characterCode(key, 0) : 0;
        const keyCode = character - firstPrivateCharacter;
        return keyCode > 0 && character <= 0xf8ff ? keyCode : 0;
    }

    function giveRemoteCode(event) {
        const keyCode = remoteKeyCode(event);
        if (keyCode === 0) {
            return;
        }
        lastKeyEvent = event;
        define(event, 'keyCode', keyCode);
        define(event, 'which', keyCode);
        define(event, 'key', keyNames[keyCode] || 'Unidentified');
        define(event, 'code', '');
    }

    window.addEventListener('keydown', giveRemoteCode, true);
    window.addEventListener('keyup', giveRemoteCode, true);
    // They type nothing.
    window.addEventListener('keypress', event => {
        if (remoteKeyCode(event) !== 0) {
            preventDefault(event);
            stopEvent(event);
        }
    }, true);
})
