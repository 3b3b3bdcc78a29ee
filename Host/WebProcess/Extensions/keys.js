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

// The private character that the key is; 0 for other keys.
function privateCharacter(event) {
    const key = keyOf(event);
    const character = event.isTrusted && key.length === 1 ? characterCode(key, 0) : 0;
    return character >= firstPrivateCharacter && character <= 0xf8ff ? character : 0;
}

function withhold(event) {
    preventDefault(event);
    stopEvent(event);
}

function judge(event, pressed) {
    if (event.isTrusted && privateCharacter(event) === 0 && !lets(keyCodeOf(event), pressed)) {
        withhold(event);
    }
}

function giveRemoteCode(event) {
    const keyCode = privateCharacter(event) - firstPrivateCharacter;
    if (keyCode <= 0) {
        return;
    }
    lastKeyEvent = event;
    define(event, 'keyCode', keyCode);
    define(event, 'which', keyCode);
    define(event, 'key', keyNames[keyCode] || 'Unidentified');
    define(event, 'code', '');
}

if (lets !== null) {
    window.addEventListener('keydown', event => judge(event, true), true);
    window.addEventListener('keyup', event => judge(event, false), true);
}
window.addEventListener('keydown', giveRemoteCode, true);
window.addEventListener('keyup', giveRemoteCode, true);
// They type nothing.
window.addEventListener('keypress', event => {
    if (privateCharacter(event) > firstPrivateCharacter) {
        withhold(event);
    }
}, true);
