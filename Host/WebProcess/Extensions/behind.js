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
