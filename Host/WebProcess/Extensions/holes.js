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
