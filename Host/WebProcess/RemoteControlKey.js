// A function expression: dispatches one key event of the remote control on the focused element. Only keys without a
// character come this way, for which a browser makes no keypress event.
((keyCode, pressed) => {
    let view = window;
    let target = null;
    for (;;) {
        target = view.document.activeElement || view.document.body || view.document.documentElement;
        let inner = null;
        try {
            inner = target && target.contentDocument ? target.contentWindow : null;
        } catch {
            inner = null;
        }
        if (!inner) {
            break;
        }
        view = inner;
    }
    const event = new view.KeyboardEvent(pressed ? 'keydown' : 'keyup', {
        bubbles: true,
        cancelable: true,
        composed: true,
        view,
    });
    for (const [name, value] of [['keyCode', keyCode], ['which', keyCode], ['charCode', 0]]) {
        Object.defineProperty(event, name, { value, configurable: true });
    }
    (target || view.document).dispatchEvent(event);
})
