// The player's picture and keys: a list of media, what plays in a window or in full screen, how far it is, its
// audio tracks, and plain words for what cannot be played. With "?check" in its address it tries all of it by
// itself first; the element "verdict" carries data-verdict="pass" or "fail" then. Nothing may take longer than 6 s, or
// 30 s with "?check=30".
(function () {
  'use strict';

  var KEYS = remote.COLOURS + remote.NAVIGATION + remote.PLAYBACK + remote.INFO;
  var ROWS = 8;
  var POSITION_MS = 250;
  var BANNER_MS = 4000;
  // A step is a twentieth of the medium, within these bounds.
  var SHORTEST_STEP_MS = 1000;
  var LONGEST_STEP_MS = 30000;

  var TROUBLES = {
    0: ['Unknown format', 'The television cannot play this kind of medium.'],
    1: ['No connection', 'The server cannot be reached, or the connection broke off.'],
    2: ['Something went wrong', 'The television does not say what.'],
    3: ['Too much at once', 'The television has no player left for this one.'],
    4: ['Damaged', 'The file is damaged, or is something else than its name says.'],
    5: ['Not found', 'There is nothing at this address, or not any more.'],
    6: ['Not there', 'The medium has nothing at this position.'],
    7: ['Locked', 'Parental control keeps it closed.']
  };
  var STATES = ['Choose a medium', 'Playing', 'Paused', 'Connecting', 'Loading', 'The end', 'Cannot be played'];

  var byId = view.byId;
  var setText = view.setText;
  var setClass = view.setClass;

  var media = [];
  var focused = 0;
  // At the end of a medium: 0 plays it again, 1 goes on to the next.
  var choice = 0;
  var bannerTimer = 0;

  function current() {
    return media.indexOf(medium.item());
  }

  // --- the picture ---

  function twoDigits(number) {
    return ('0' + number).slice(-2);
  }

  function clockOf(seconds) {
    var hours = Math.floor(seconds / 3600);
    var minutes = Math.floor(seconds / 60) % 60;
    return (hours > 0 ? hours + ':' + twoDigits(minutes) : minutes) + ':' + twoDigits(seconds % 60);
  }

  function mediumRow(item, index) {
    var row = view.element('li', item.title);
    row.appendChild(view.element('span', item.kind, 'mark'));
    if (index === current()) row.classList.add(medium.error() === null ? 'current' : 'failed');
    setClass(row, 'focused', index === focused);
    return row;
  }

  // As many rows as there is room for, the focused one among them.
  function showList() {
    view.fillAround('list', media, focused, ROWS, mediumRow);
  }

  function showPosition() {
    var isRolling = medium.isRolling();
    var duration = isRolling ? medium.duration() : 0;
    var position = isRolling ? medium.position() : 0;
    setText('position', isRolling ? clockOf(Math.floor(position / 1000)) : '');
    setText('duration', duration > 0 ? clockOf(Math.round(duration / 1000)) : isRolling ? 'live' : '');
    byId('elapsed').style.width = duration > 0 ? Math.min(100, 100 * position / duration) + '%' : '0';
  }

  function audioText() {
    if (!medium.isRolling()) return '';
    var audio = medium.audio();
    var active = audio.all[audio.active];
    if (!active) return audio.all.length > 0 ? 'off' : 'none';
    var name = objects.languageName(active.language) || 'Track ' + (audio.active + 1);
    return name + (active.audioChannels > 2 ? ' 5.1' : '');
  }

  function showCards() {
    view.setValue('card-audio', audioText());
    view.setValue('card-sound', medium.isMuted() ? 'off' : 'on');
  }

  // Title and text of what stands in place of the picture; null while the picture is to be seen.
  function coverWords() {
    var item = medium.item();
    if (medium.error() !== null) {
      return TROUBLES[medium.error()] || ['Cannot be played', 'The television reports error ' + medium.error() + '.'];
    }
    switch (medium.state()) {
      case medium.PLAYING:
      case medium.PAUSED: return /^audio\//.test(item.type) ? ['\u266b', item.title] : null;
      case medium.CONNECTING:
      case medium.BUFFERING: return [STATES[medium.state()], item.title];
      case medium.FINISHED: return ['The end', item.title];
      default: return ['Media player', media.length > 0 ? 'Up and down choose, OK plays.' : 'The list is empty.'];
    }
  }

  function showCover() {
    var words = coverWords();
    var hasEnded = medium.state() === medium.FINISHED && medium.error() === null;
    var next = media[current() + 1];
    setClass('cover', 'closed', !words);
    setClass('cover', 'trouble', medium.error() !== null);
    setText('cover-title', words ? words[0] : '');
    setText('cover-text', words ? words[1] : '');
    setClass('choices', 'closed', !hasEnded);
    setText('choice-next', next ? 'Next: ' + next.title : '');
    setClass('choice-next', 'closed', !hasEnded || !next);
    Array.prototype.forEach.call(byId('choices').children, function (button, index) {
      setClass(button, 'focused', index === choice);
    });
    setClass('badge', 'closed', medium.state() !== medium.PAUSED);
  }

  function showEverything() {
    var item = medium.item();
    setText('state', medium.error() !== null ? STATES[medium.ERROR] : STATES[medium.state()]);
    setText('title', item ? item.title : 'Nothing chosen');
    showList();
    showPosition();
    showCards();
    showCover();
  }

  // In full screen the banner stands while nothing moves, else for a moment; beside the picture it always does.
  function showBannerForAMoment() {
    clearTimeout(bannerTimer);
    setClass(document.body, 'quiet', false);
    bannerTimer = setTimeout(function () {
      setClass(document.body, 'quiet', medium.state() === medium.PLAYING);
    }, BANNER_MS);
  }

  // --- what the television tells ---

  function onState() {
    if (medium.state() === medium.FINISHED) choice = 0;
    showEverything();
    showBannerForAMoment();
  }

  function onPosition() {
    showPosition();
    showBannerForAMoment();
  }

  function onFullScreen() {
    setClass(document.body, 'full', medium.isFullScreen());
    showBannerForAMoment();
  }

  // --- the remote control ---

  function open(index) {
    if (!media[index]) return;
    focused = index;
    medium.open(media[index]);
    showEverything();
  }

  function playOrPause() {
    if (medium.state() === medium.PLAYING) medium.pause();
    else if (medium.state() === medium.PAUSED) medium.play();
    else open(focused);
  }

  function play() {
    if (medium.state() !== medium.PLAYING) playOrPause();
  }

  function pause() {
    if (medium.state() === medium.PLAYING) medium.pause();
  }

  function accept() {
    if (focused !== current()) open(focused);
    else if (medium.state() === medium.FINISHED) open(current() + choice);
    else playOrPause();
  }

  function moveFocus(by) {
    if (media.length === 0) return;
    focused = (focused + by + media.length) % media.length;
    showList();
  }

  function step(direction) {
    if (medium.state() === medium.FINISHED) {
      choice = direction > 0 && current() + 1 < media.length ? 1 : 0;
      showCover();
      return;
    }
    var length = Math.max(SHORTEST_STEP_MS, Math.min(medium.duration() / 20, LONGEST_STEP_MS));
    medium.seekBy(direction * length);
    onPosition();
  }

  function goBack() {
    if (view.isOpen('checks')) view.close('checks');
    else if (medium.isFullScreen()) medium.toggleFullScreen();
    else medium.stop();
  }

  function toggleMuted() {
    medium.toggleMuted();
    showCards();
  }

  var actions = {
    VK_DOWN: function () { moveFocus(1); },
    VK_UP: function () { moveFocus(-1); },
    VK_LEFT: function () { step(-1); },
    VK_RIGHT: function () { step(1); },
    VK_REWIND: function () { step(-1); },
    VK_FAST_FWD: function () { step(1); },
    VK_ENTER: accept,
    VK_PLAY: play,
    VK_PAUSE: pause,
    VK_PLAY_PAUSE: playOrPause,
    VK_STOP: function () { medium.stop(); },
    VK_RED: function () { medium.stop(); },
    VK_GREEN: function () { medium.nextAudio(); },
    VK_YELLOW: toggleMuted,
    VK_BLUE: function () { medium.toggleFullScreen(); },
    VK_INFO: function () { view.toggle('checks'); },
    VK_BACK: goBack
  };

  // --- start and verdict ---

  function runChecks(limitSeconds) {
    view.open('summary');
    setText('summary', 'checking');
    verdict.checkInTurn(makeChecks(media, open, limitSeconds * 1000)).then(function (result) {
      showEverything();
      verdict.give(result);
    });
  }

  function readList(then) {
    var request = new XMLHttpRequest();
    request.open('GET', 'media.json');
    request.onloadend = function () {
      media = objects.attempt(function () { return JSON.parse(request.responseText); }) || [];
      then();
    };
    request.send();
  }

  window.addEventListener('load', function () {
    remote.request(KEYS);
    remote.listen(function (name) { return actions[name]; });
    view.startClock();
    medium.start(byId('video'), {
      state: onState,
      position: onPosition,
      components: showCards,
      fullScreen: onFullScreen
    });
    readList(function () {
      showEverything();
      var check = /^\?check(?:=(\d+))?$/.exec(location.search);
      if (check) runChecks(Number(check[1] || 6));
    });
    setInterval(function () { if (medium.state() === medium.PLAYING) showPosition(); }, POSITION_MS);
  }, false);
}());
