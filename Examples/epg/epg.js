// The guide's keys and what is the same in both of its views: the details of the programme in focus, the
// picture's troubles, the colour keys. The element "verdict" carries data-verdict once the checks are
// through.
(function () {
  'use strict';

  var KEYS = remote.COLOURS + remote.NAVIGATION + remote.PAGING + remote.INFO + remote.DIGITS +
    remote.LETTERS + remote.OTHERS;
  var START_MS = 12000;
  var TROUBLES = { 1: 'No signal', 3: 'Locked', 4: 'Not subscribed', 5: 'Unknown channel' };
  var LABELS = {
    guide: { red: 'Now', green: 'Search', yellow: 'Day before', blue: 'Day after' },
    finder: { red: 'Delete', green: 'Guide', yellow: 'Search again', blue: 'Clear' }
  };

  // In place of a programme's details.
  var HINT = 'Choose letters with OK, or use the keys of the remote control. ' +
    'Right of them is what was found.';

  var current = 'guide';
  var notice = '';
  var startTimer = 0;

  // --- the picture ---

  function timeText(programme) {
    return times.dayName(programme.start) + ', ' + view.clockTime(programme.start) + ' \u2013 ' +
      view.clockTime(programme.end) + ', ' + times.durationText(programme.end - programme.start);
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
    if (times.isRunning(programme)) television.tune(channel);
    else notice = 'Begins in ' + times.durationText(programme.start - Date.now()) + '.';
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
    VK_INFO: function () { view.toggle('checks'); },
    VK_BACK: function () {
      if (view.isOpen('checks')) view.close('checks');
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

  function actionOf(name, code) {
    var isDigit = code >= 48 && code <= 57;
    var isLetter = code >= 65 && code <= 90;
    if (current === 'finder' && (isDigit || isLetter)) {
      return function () { finder.type(String.fromCharCode(code).toLowerCase()); };
    }
    return actions[current][name] || common[name];
  }

  function onKey(name, code) {
    var action = actionOf(name, code);
    return action && function () {
      notice = '';
      action();
      show();
    };
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

  window.addEventListener('load', function () {
    remote.request(KEYS);
    remote.listen(onKey);
    view.startClock();
    startTimer = setTimeout(giveVerdict, START_MS);
    searches.start(view.byId('manager'));
    television.start(view.byId('manager'), view.byId('video'), {
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
