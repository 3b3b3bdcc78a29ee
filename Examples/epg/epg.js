// The guide's keys and what is the same in both of its views: the details of the programme in focus, the
// picture's troubles, the colour keys. The element "verdict" carries data-verdict once the checks are
// through.
(function () {
  'use strict';

  // Colour keys, navigation, paging, information, digits, letters, and others.
  var KEYS = 0x1 | 0x2 | 0x4 | 0x8 | 0x10 | 0x40 | 0x80 | 0x100 | 0x200 | 0x400;
  var START_MS = 12000;
  var TROUBLES = { 1: 'No signal', 3: 'Locked', 4: 'Not subscribed', 5: 'Unknown channel' };
  var LABELS = {
    guide: { red: 'Now', green: 'Search', yellow: 'Day before', blue: 'Day after' },
    finder: { red: 'Delete', green: 'Guide', yellow: 'Search again', blue: 'Clear' }
  };

  // Key codes by name; the browser's own constants are read over them at start.
  var keyCodes = {
    VK_BACK_SPACE: 8, VK_ENTER: 13, VK_SPACE: 32, VK_PAGE_UP: 33, VK_PAGE_DOWN: 34, VK_LEFT: 37, VK_UP: 38,
    VK_RIGHT: 39, VK_DOWN: 40, VK_RED: 403, VK_GREEN: 404, VK_YELLOW: 405, VK_BLUE: 406, VK_CHANNEL_UP: 427,
    VK_CHANNEL_DOWN: 428, VK_INFO: 457, VK_BACK: 461
  };

  var byId = view.byId;
  // In place of a programme's details.
  var HINT = 'Choose letters with OK, or use the keys of the remote control. ' +
    'Right of them is what was found.';

  var current = 'guide';
  var notice = '';
  var startTimer = 0;

  // --- the picture ---

  function timeText(programme) {
    return view.dayName(programme.start) + ', ' + view.clockTime(programme.start) + ' \u2013 ' +
      view.clockTime(programme.end) + ', ' + view.minutes(programme.end - programme.start);
  }

  function showDetails() {
    var programme = current === 'guide' ? grid.focused()
      : finder.focused() || { name: 'Search by title', text: HINT, hasNoTime: true };
    var channel = programme && television.named(programme.ccid);
    var isNamed = Boolean(programme && programme.name !== undefined);
    view.setText('detail-when', isNamed && !programme.hasNoTime ? timeText(programme) : '');
    view.setText('detail-name', isNamed ? programme.name : channel ? channel.longName : '');
    view.setText('detail-channel', isNamed && channel ? channel.number + '  ' + channel.longName : '');
    view.setText('detail-age', isNamed && programme.age ? 'from ' + programme.age : '');
    view.setClass('detail-age', 'closed', !isNamed || !programme.age);
    view.setText('detail-text', notice || (isNamed ? programme.text : ''));
    view.setClass('detail-text', 'notice', notice !== '');
  }

  function show() {
    view.setText('clock', view.clockTime(Date.now()));
    Object.keys(LABELS[current]).forEach(function (id) { view.setText(id, LABELS[current][id]); });
    view.setClass('guide', 'closed', current !== 'guide');
    view.setClass('finder', 'closed', current !== 'finder');
    if (current === 'guide') grid.show();
    else finder.show();
    showDetails();
    finishStart();
  }

  function showTrouble(text) {
    view.setText('trouble', text);
    view.setClass('trouble', 'closed', text === '');
  }

  // --- the remote control ---

  function change(to) {
    if (to === current) return;
    if (to === 'finder') finder.enter();
    else finder.leave();
    current = to;
  }

  // What runs is shown; of what comes, when.
  function watch() {
    var programme = grid.focused();
    var channel = programme && television.named(programme.ccid);
    if (!channel) return;
    if (view.isRunning(programme)) television.tune(channel);
    else notice = 'Begins in ' + view.minutes(programme.start - Date.now()) + '.';
  }

  // A result is shown in the guide, among what comes before and after it.
  function openResult() {
    var programme = finder.focused();
    var index = programme ? television.indexOf(programme.ccid) : -1;
    if (index < 0) return;
    grid.goTo(index, Math.max(programme.start, Date.now()));
    change('guide');
  }

  function goToNow() {
    schedules.forget();
    grid.goTo(television.currentIndex(), Date.now());
  }

  var common = {
    VK_INFO: function () { view.setClass('checks', 'closed', view.isOpen('checks')); },
    VK_BACK: function () {
      if (view.isOpen('checks')) view.setClass('checks', 'closed', true);
      else change('guide');
    }
  };

  var actions = {
    guide: {
      VK_UP: function () { grid.moveChannel(-1); },
      VK_DOWN: function () { grid.moveChannel(1); },
      VK_PAGE_UP: function () { grid.moveChannel(-grid.PAGE); },
      VK_PAGE_DOWN: function () { grid.moveChannel(grid.PAGE); },
      VK_CHANNEL_UP: function () { grid.moveChannel(-grid.PAGE); },
      VK_CHANNEL_DOWN: function () { grid.moveChannel(grid.PAGE); },
      VK_LEFT: function () { grid.moveProgramme(-1); },
      VK_RIGHT: function () { grid.moveProgramme(1); },
      VK_ENTER: watch,
      VK_RED: goToNow,
      VK_GREEN: function () { change('finder'); },
      VK_YELLOW: function () { grid.moveDays(-1); },
      VK_BLUE: function () { grid.moveDays(1); }
    },
    finder: {
      VK_UP: function () { finder.move(0, -1); },
      VK_DOWN: function () { finder.move(0, 1); },
      VK_LEFT: function () { finder.move(-1, 0); },
      VK_RIGHT: function () { finder.move(1, 0); },
      VK_PAGE_UP: function () { finder.turn(-1); },
      VK_PAGE_DOWN: function () { finder.turn(1); },
      VK_ENTER: function () {
        if (finder.focused()) openResult();
        else finder.press();
      },
      VK_SPACE: function () { finder.type(' '); },
      VK_BACK_SPACE: finder.erase,
      VK_RED: finder.erase,
      VK_GREEN: function () { change('guide'); },
      VK_YELLOW: finder.again,
      VK_BLUE: finder.clear
    }
  };

  function actionOf(keyCode) {
    var isDigit = keyCode >= 48 && keyCode <= 57;
    var isLetter = keyCode >= 65 && keyCode <= 90;
    if (current === 'finder' && (isDigit || isLetter)) {
      return function () { finder.type(String.fromCharCode(keyCode).toLowerCase()); };
    }
    var name = Object.keys(keyCodes).filter(function (key) { return keyCodes[key] === keyCode; })[0];
    return actions[current][name] || common[name] || null;
  }

  function onKey(event) {
    var action = actionOf(event.keyCode);
    if (!action) return;
    event.preventDefault();
    notice = '';
    action();
    show();
  }

  // --- start and verdict ---

  function giveVerdict() {
    clearTimeout(startTimer);
    startTimer = 0;
    checks.prepare(function () { verdict.give(verdict.check(checks.all)); });
  }

  // Once, over a picture that is filled.
  function finishStart() {
    if (startTimer !== 0 && grid.isFilled()) giveVerdict();
  }

  function startApplication() {
    var app = byId('appmgr').getOwnerApplication(document);
    app.show();
    app.privateData.keyset.setValue(KEYS);
    for (var name in keyCodes) {
      if (KeyEvent[name] !== undefined) keyCodes[name] = KeyEvent[name];
    }
  }

  window.addEventListener('load', function () {
    television.attempt(startApplication);
    document.addEventListener('keydown', onKey, false);
    startTimer = setTimeout(giveVerdict, START_MS);
    searches.start(byId('manager'));
    television.start(byId('manager'), byId('video'), {
      changed: function () {
        showTrouble('');
        show();
      },
      failed: function (error) { showTrouble(TROUBLES[error] || 'Not available'); }
    });
    schedules.start(show);
    finder.onChanged = show;
    grid.goTo(television.currentIndex(), Date.now());
    show();
    setInterval(show, 10000);
  }, false);
}());
