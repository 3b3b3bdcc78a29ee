// The demo application: shows what the receiver tells it, answers the remote control, and checks itself.
// The element "verdict" carries data-verdict="pass" or "fail" and one line a check before the load event ends.
// Written like shipping applications: plain script, objects in the markup, no library.
(function () {
  'use strict';

  // The key groups from the lowest bit up: the class of its chip and what stands on it.
  var GROUPS = [
    ['red', ''], ['green', ''], ['yellow', ''], ['blue', ''], ['navigation', 'nav'], ['vcr', 'play'],
    ['scroll', 'scroll'], ['info', 'info'], ['numeric', '123'], ['alpha', 'abc'], ['other', '...']
  ];
  var USUAL_KEYS = remote.COLOURS + remote.NAVIGATION;
  var ALL_KEYS = 0x7ff;

  var attempt = objects.attempt;
  var byId = view.byId;
  var setText = view.setText;

  var app = null;
  var wantsAllKeys = false;
  var focused = 0;
  var cards = ['application', 'keyset', 'maximum', 'memory', 'audio', 'subtitles', 'menus', 'country'];

  function hex(mask) {
    return '0x' + Number(mask).toString(16).toUpperCase();
  }

  function keyset() {
    return app.privateData.keyset;
  }

  function configuration() {
    return byId('oipfcfg').configuration;
  }

  // --- the picture ---

  function showCard(name, value) {
    var card = byId('card-' + name);
    var missing = value === null || value === '';
    card.className = 'card' + (missing ? ' missing' : '') + (cards[focused] === name ? ' focused' : '');
    view.setValue('card-' + name, missing ? 'not told' : String(value));
  }

  function memoryText(kilobytes) {
    if (kilobytes === null) return null;
    return kilobytes >= 1048576 ? (kilobytes / 1048576).toFixed(1) + ' GB' : Math.round(kilobytes / 1024) + ' MB';
  }

  function showGroups(mask) {
    view.fill('groups', GROUPS, function (group, bit) {
      return view.element('li', group[1], group[0] + (mask & (1 << bit) ? ' on' : ''));
    });
  }

  function showChannel() {
    var channel = attempt(function () { return app.privateData.currentChannel; });
    setText('channel-name', channel && channel.name || 'No channel');
    setText('channel-id', channel && channel.ccid || 'not related to a broadcast');
  }

  function showEverything() {
    var mask = attempt(function () { return keyset().value; });
    var maximum = attempt(function () { return keyset().maximumValue; });
    showChannel();
    showGroups(mask || 0);
    showCard('application', app ? 'running' : null);
    showCard('keyset', mask === null ? null : hex(mask));
    showCard('maximum', maximum === null ? null : hex(maximum));
    showCard('memory', memoryText(attempt(function () { return app.privateData.getFreeMem(); })));
    showCard('audio', attempt(function () { return configuration().preferredAudioLanguage; }));
    showCard('subtitles', attempt(function () { return configuration().preferredSubtitleLanguage; }));
    showCard('menus', attempt(function () { return configuration().preferredUILanguage; }));
    showCard('country', attempt(function () { return configuration().countryId; }));
    setText('green-label', wantsAllKeys ? 'Fewer keys' : 'More keys');
  }

  // --- the remote control ---

  function requestKeys(mask) {
    return attempt(function () { return keyset().setValue(mask); });
  }

  function toggleHidden() {
    var hidden = document.body.className !== 'hidden';
    document.body.className = hidden ? 'hidden' : '';
    setText('red-label', hidden ? 'Show' : 'Hide');
    // A hidden application keeps the red key only, which brings it back; the rest is the television's again.
    requestKeys(hidden ? remote.RED : USUAL_KEYS);
    wantsAllKeys = false;
    showEverything();
  }

  function toggleKeys() {
    wantsAllKeys = !wantsAllKeys;
    requestKeys(wantsAllKeys ? ALL_KEYS : USUAL_KEYS);
    showEverything();
  }

  function moveFocus(by) {
    focused = (focused + by + cards.length) % cards.length;
    showEverything();
  }

  var actions = {
    VK_RED: toggleHidden,
    VK_GREEN: toggleKeys,
    VK_YELLOW: showEverything,
    VK_BLUE: function () { view.toggle('checks'); },
    VK_BACK: function () { view.close('checks'); },
    VK_LEFT: function () { moveFocus(-1); },
    VK_RIGHT: function () { moveFocus(1); },
    VK_UP: function () { moveFocus(-cards.length / 2); },
    VK_DOWN: function () { moveFocus(cards.length / 2); },
    VK_ENTER: showEverything
  };

  function onKey(name, code) {
    setText('key-name', name || 'unknown');
    byId('key-name').className = name.slice(3).toLowerCase();
    setText('key-detail', 'Key code ' + code);
    return actions[name];
  }

  // --- the checks ---

  var checks = [
    ['The application manager is there', function (require) {
      require(typeof byId('appmgr').getOwnerApplication === 'function', 'the element has no getOwnerApplication');
    }],
    ['The page has its owner application', function (require) {
      app = byId('appmgr').getOwnerApplication(document);
      require(app, 'got ' + app);
    }],
    ['The application can be shown', function () {
      app.show();
    }],
    ['Its key mask is granted and reads back', function (require) {
      var granted = keyset().setValue(USUAL_KEYS);
      require(granted > 0 && granted === keyset().value, 'granted ' + granted + ', read ' + keyset().value);
      return hex(granted);
    }],
    ['The mask stays within the largest one', function (require) {
      var maximum = keyset().maximumValue;
      require(maximum > 0 && (keyset().value & ~maximum) === 0, 'largest ' + maximum + ', read ' + keyset().value);
      return hex(maximum);
    }],
    ['Key constants are the remote control\'s', function (require) {
      require(KeyEvent.VK_RED === 403 && KeyEvent.VK_LEFT === 37 && KeyEvent.VK_BACK === 461, 'other values');
      require(Keyset.RED === 1 && keyset().NAVIGATION === 16, 'other mask bits');
    }],
    ['The television knows its languages', function (require) {
      var audio = configuration().preferredAudioLanguage;
      var subtitles = configuration().preferredSubtitleLanguage;
      var menus = configuration().preferredUILanguage;
      require(audio && subtitles && menus, 'got "' + [audio, subtitles, menus].join('", "') + '"');
      return [audio, subtitles, menus].join(' / ');
    }],
    ['It knows its country', function (require) {
      require(configuration().countryId, 'got "' + configuration().countryId + '"');
      return configuration().countryId;
    }],
    ['The current channel has a name and an id', function (require) {
      var channel = app.privateData.currentChannel;
      require(channel, 'got ' + channel);
      require(channel.name && channel.ccid, 'name "' + channel.name + '", ccid "' + channel.ccid + '"');
      return channel.name;
    }],
    ['Free memory is a positive number', function (require) {
      var memory = app.privateData.getFreeMem();
      require(typeof memory === 'number' && memory > 0, 'got ' + memory);
      return memoryText(memory);
    }],
    ['A listener can come and go', function () {
      function ignore() {}
      byId('appmgr').addEventListener('LowMemory', ignore, false);
      byId('appmgr').removeEventListener('LowMemory', ignore, false);
    }],
    ['The object factory offers the same kinds', function (require) {
      require(oipfObjectFactory.isObjectSupported('application/oipfApplicationManager'), 'no application manager');
    }]
  ];

  window.addEventListener('load', function () {
    var result = verdict.check(checks);
    showEverything();
    remote.listen(onKey);
    view.startClock();
    verdict.give(result);
  }, false);
}());
