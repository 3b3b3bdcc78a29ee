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
