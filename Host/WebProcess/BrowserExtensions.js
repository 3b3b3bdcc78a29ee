// What a television's browser has and WebKitGTK has not. Runs in every frame before any other script; nothing
// of it is enumerable, and a page that uses none of it pays for a few listeners that never fire.
(() => {
    'use strict';

    // A page may put its own things in these places.
    const {
        CustomEvent, Document, Event, EventTarget, HTMLObjectElement, HTMLParamElement, IntersectionObserver,
        MutationObserver, ResizeObserver, requestAnimationFrame,
    } = window;

    function define(object, name, value) {
        Object.defineProperty(object, name, { value, writable: true, enumerable: false, configurable: true });
    }

    // Documents of HbbTV's own type. WebKit parses them as XML of no particular kind, in which new elements
    // belong to no namespace; to a television they are XHTML.
    const applicationType = 'application/vnd.hbbtv.xhtml+xml';
    if (document.contentType === applicationType) {
        const { createElement, createElementNS } = Document.prototype;
        define(Document.prototype, 'createElement', function (name, options) {
            return this.contentType === applicationType
                ? createElementNS.call(this, 'http://www.w3.org/1999/xhtml', name, options)
                : createElement.call(this, name, options);
        });
        Object.defineProperty(Document.prototype, 'createElement', { enumerable: true });
    }

    // Internal objects: an object element presents the members of a native object as its own.

    const presentations = new WeakMap(); // Element to what is presented on it.

    function isMethod(internal, name) {
        return !Object.prototype.hasOwnProperty.call(internal, name) && typeof internal[name] === 'function';
    }

    // An element is an event target besides; a listener hears the events of both.
    function forwardListener(internal, name) {
        const ofElement = EventTarget.prototype[name];
        return function (...args) {
            ofElement.apply(this, args);
            return internal[name](...args);
        };
    }

    function present(element, internal, name) {
        if (isMethod(internal, name)) {
            const value = name === 'addEventListener' || name === 'removeEventListener'
                ? forwardListener(internal, name)
                : internal[name].bind(internal);
            Object.defineProperty(element, name, {
                value,
                writable: true,
                enumerable: true,
                configurable: true,
            });
            return;
        }
        Object.defineProperty(element, name, {
            get: () => internal[name],
            set: value => {
                internal[name] = value;
            },
            enumerable: true,
            configurable: true,
        });
    }

    function announceParams(element) {
        const observer = new MutationObserver(records => {
            const isParam = node => node instanceof HTMLParamElement && node.parentNode === element;
            const changed = records.some(record =>
                record.type === 'childList'
                    ? Array.from(record.addedNodes).some(isParam)
                    : isParam(record.target));
            if (changed) {
                element.dispatchEvent(new Event('webkitobjectparamadded', { bubbles: true }));
            }
        });
        observer.observe(element, {
            childList: true,
            subtree: true,
            attributes: true,
            attributeFilter: ['name', 'value'],
        });
        return observer;
    }

    define(HTMLObjectElement.prototype, 'webkitSetInternalObject', function (internal) {
        const former = presentations.get(this);
        if (former) {
            former.observer.disconnect();
            former.names.forEach(name => Reflect.deleteProperty(this, name));
            presentations.delete(this);
        }
        if (internal === null || typeof internal !== 'object') {
            return;
        }
        const names = [];
        for (const name in internal) {
            present(this, internal, name);
            names.push(name);
        }
        presentations.set(this, { names, observer: announceParams(this) });
    });

    // Holes: elements of this name through which the video plane shows. Each hears of its box on the screen.

    const holes = new Map(); // Hole to { box, mover }.
    let checkPending = false;
    let resizes = null;

    // Where the hole is in the viewport of the whole page, as far as the frames around are of the same
    // origin: else in that of the outermost frame that is.
    function placeOf(hole) {
        const { left, top, width, height } = hole.getBoundingClientRect();
        const place = { left, top, width, height, view: window };
        try {
            for (let frame = window.frameElement; frame; frame = place.view.frameElement) {
                const outer = frame.getBoundingClientRect();
                place.left += outer.left + frame.clientLeft;
                place.top += outer.top + frame.clientTop;
                place.view = frame.ownerDocument.defaultView;
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
        const x = Math.round(left);
        const y = Math.round(top);
        return { x, y, width: Math.round(left + width) - x, height: Math.round(top + height) - y };
    }

    // Fires when the hole leaves the very place where it is: the root is shrunk to the hole's own box, so
    // that every move, whatever its cause, changes how much of the hole is inside.
    function watchPlace(hole, place, threshold = 1) {
        const state = holes.get(hole);
        if (state.mover) {
            state.mover.disconnect();
        }
        const { innerWidth, innerHeight } = place.view;
        const right = innerWidth - (place.left + place.width);
        const bottom = innerHeight - (place.top + place.height);
        const outside = place.left >= innerWidth || place.top >= innerHeight || right >= innerWidth
            || bottom >= innerHeight;
        const insets = outside ? [0, 0, 0, 0] : [place.top, right, bottom, place.left];
        let isFirst = true;
        state.mover = new IntersectionObserver(entries => {
            const ratio = entries[entries.length - 1].intersectionRatio;
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
                watchPlace(hole, place, Math.min(1, ratio) || 1e-7);
            }
        }, {
            root: place.view === window.top ? null : place.view.document,
            rootMargin: insets.map(inset => `${-Math.floor(inset)}px`).join(' '),
            threshold: outside ? 0 : threshold,
        });
        state.mover.observe(hole);
    }

    function schedule() {
        if (!checkPending) {
            checkPending = true;
            requestAnimationFrame(check);
        }
    }

    function check() {
        checkPending = false;
        for (const [hole, state] of Array.from(holes)) {
            const place = placeOf(hole);
            const box = boxOf(place);
            // Out of the document, or not rendered; it begins anew when it is again.
            if (hole.getClientRects().length === 0) {
                forget(hole);
            } else {
                watchPlace(hole, place);
            }
            if (['x', 'y', 'width', 'height'].some(name => box[name] !== state.box[name])) {
                state.box = box;
                hole.dispatchEvent(new CustomEvent('geometrychanged', { detail: box }));
            }
        }
    }

    function follow(hole) {
        if (holes.has(hole)) {
            return;
        }
        if (holes.size === 0) {
            resizes = new ResizeObserver(schedule);
            window.addEventListener('resize', schedule);
            document.addEventListener('scroll', schedule, { capture: true, passive: true });
        }
        holes.set(hole, { box: { x: 0, y: 0, width: 0, height: 0 }, mover: null });
        resizes.observe(hole);
        schedule();
    }

    function forget(hole) {
        const { mover } = holes.get(hole);
        if (mover) {
            mover.disconnect();
        }
        resizes.unobserve(hole);
        holes.delete(hole);
        if (holes.size === 0) {
            window.removeEventListener('resize', schedule);
            document.removeEventListener('scroll', schedule, { capture: true });
        }
    }

    // The shell's style sheet animates holes, so that one that appears announces itself and pages without any
    // need not be watched.
    window.addEventListener('animationstart', event => {
        if (event.animationName === '-hbbtv-hole') {
            event.stopImmediatePropagation();
            follow(event.target);
        }
    }, true);

    // Keys that only a remote control has. The shell sends them as keyboard events of a private character, so
    // that they keep their order and find the focus like all others; here they get their code.

    const firstPrivateCharacter = 0xe000;
    const keyNames = {
        403: 'ColorF0Red', 404: 'ColorF1Green', 405: 'ColorF2Yellow', 406: 'ColorF3Blue',
        412: 'MediaRewind', 413: 'MediaStop', 415: 'MediaPlay', 416: 'MediaRecord',
        417: 'MediaFastForward', 424: 'MediaTrackPrevious', 425: 'MediaTrackNext', 427: 'ChannelUp',
        428: 'ChannelDown', 447: 'AudioVolumeUp', 448: 'AudioVolumeDown', 449: 'AudioVolumeMute',
        457: 'Info', 458: 'Guide', 459: 'Teletext', 460: 'Subtitle', 461: 'GoBack', 462: 'ContextMenu',
        463: 'MediaPlayPause',
    };
    let lastKeyEvent = null; // Kept so that what is defined on it is there for every listener.

    function remoteKeyCode(event) {
        const character = event.isTrusted && event.key.length === 1 ? event.key.charCodeAt(0) : 0;
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
            event.preventDefault();
            event.stopImmediatePropagation();
        }
    }, true);
})();
