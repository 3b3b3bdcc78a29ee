// The remote control: a page asks for groups of keys, and learns by name which is pressed; all other keys stay
// with the television. The page has <object id="appmgr" type="application/oipfApplicationManager">.
var remote = (function () {
  'use strict';

  // For browsers without the television's constants, which are read over them.
  var codes = {
    VK_BACK_SPACE: 8, VK_ENTER: 13, VK_PAUSE: 19, VK_SPACE: 32, VK_PAGE_UP: 33, VK_PAGE_DOWN: 34, VK_LEFT: 37,
    VK_UP: 38, VK_RIGHT: 39, VK_DOWN: 40, VK_RED: 403, VK_GREEN: 404, VK_YELLOW: 405, VK_BLUE: 406,
    VK_REWIND: 412, VK_STOP: 413, VK_PLAY: 415, VK_FAST_FWD: 417, VK_CHANNEL_UP: 427, VK_CHANNEL_DOWN: 428,
    VK_INFO: 457, VK_BACK: 461, VK_PLAY_PAUSE: 463
  };

  function namesByCode() {
    var names = {};
    var told = window.KeyEvent || {};
    for (var name in told) {
      if (name.indexOf('VK_') === 0) codes[name] = told[name];
    }
    Object.keys(codes).forEach(function (each) { names[codes[each]] = each; });
    return names;
  }

  return {
    // Groups of keys, to be added up.
    RED: 0x1,
    GREEN: 0x2,
    YELLOW: 0x4,
    BLUE: 0x8,
    COLOURS: 0xf,
    NAVIGATION: 0x10,
    PLAYBACK: 0x20,
    PAGING: 0x40,
    INFO: 0x80,
    DIGITS: 0x100,
    LETTERS: 0x200,
    // Among them those for channels.
    OTHERS: 0x400,

    // Shows the application, with these groups of keys for it.
    request: function (groups) {
      try {
        var app = document.getElementById('appmgr').getOwnerApplication(document);
        if (!app) return;
        app.show();
        app.privateData.keyset.setValue(groups);
      } catch (error) {
        // An ordinary browser, which gives all its keys.
      }
    },

    // Calls what find(name, code) returns for a key that is pressed. Where it returns nothing, the key goes its
    // usual way.
    listen: function (find) {
      var names = namesByCode();
      document.addEventListener('keydown', function (event) {
        var action = find(names[event.keyCode] || '', event.keyCode);
        if (!action) return;
        event.preventDefault();
        action();
      }, false);
    }
  };
}());
