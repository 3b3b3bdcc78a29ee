// The zapper's picture and keys: live television in a window, what is on, all channels, and full screen.
// The element "verdict" carries data-verdict="pass" or "fail" once the television shows a channel or cannot.
(function () {
  'use strict';

  var AUDIO = 1;
  var SUBTITLE = 2;
  var KEYS = remote.COLOURS + remote.NAVIGATION + remote.INFO + remote.DIGITS + remote.OTHERS;
  var ROWS = 8;
  var DIGITS_MS = 1500;
  var BANNER_MS = 5000;
  var START_MS = 12000;

  var TROUBLES = {
    1: ['No signal', 'It cannot be received here.'],
    3: ['Locked', 'Parental control keeps it closed.'],
    4: ['Encrypted', 'It is not part of your subscription.'],
    5: ['Unknown channel', 'The television does not know it.']
  };
  var STATES = ['No picture', 'Connecting', 'Watching', 'Stopped'];

  var byId = view.byId;
  var setText = view.setText;
  var setClass = view.setClass;

  var digits = '';
  var digitsTimer = 0;
  var bannerTimer = 0;
  var startTimer = 0;
  var trouble = null;
  // From asking for a channel until it is shown or fails.
  var isTuning = false;
  var lastContent = '';

  // --- the picture ---

  function channelRow(channel, index) {
    var isWanted = index === television.wantedIndex();
    var row = view.element('li', '', isWanted ? trouble ? 'failed' : 'current' : '');
    var mark = channel.locked || channel.manualBlock ? 'locked' : channel.authorised ? '' : 'encrypted';
    row.appendChild(view.element('span', television.numberOf(channel), 'number'));
    row.appendChild(document.createTextNode(channel.name));
    if (mark) row.appendChild(view.element('span', mark, 'mark'));
    return row;
  }

  // While the next channel is tuned to, the receiver still tells programmes and components of the former one.
  function isShown() {
    return television.playState() === television.PRESENTING && !isTuning && !trouble;
  }

  // As many rows as there is room for, the channel asked for among them.
  function showChannels() {
    view.fillAround('channels', television.channels(), television.wantedIndex(), ROWS, channelRow);
  }

  function showBanner() {
    var channel = television.channels()[television.wantedIndex()] || television.currentChannel();
    var on = isShown() ? television.nowAndNext() : { now: null, next: null };
    var now = on.now;
    setText('channel-number', channel ? String(television.numberOf(channel)) : '');
    setText('channel-name', channel ? channel.longName || channel.name : 'No channel');
    setText('now-time', now ? view.clockTime(now.start) + ' \u2013 ' + view.clockTime(now.end) : '');
    setText('now-name', now ? now.name : isShown() ? 'No programme information' : '');
    setText('next', on.next ? view.clockTime(on.next.start) + '  ' + on.next.name : '');
    setClass('progress', 'closed', !now);
    byId('elapsed').style.width = now ? 100 * (Date.now() - now.start) / (now.end - now.start) + '%' : '0';
  }

  function componentText(type, extra) {
    if (!isShown()) return '';
    var found = television.components(type);
    if (found.all.length === 0) return 'none';
    var active = found.all[found.active];
    if (!active) return 'off';
    return (objects.languageName(active.language) || 'unknown') + extra(active);
  }

  function showComponents() {
    var audio = componentText(AUDIO, function (component) {
      return (component.audioChannels > 2 ? ' 5.1' : '') + (component.audioDescription ? ' AD' : '');
    });
    var subtitles = componentText(SUBTITLE, function (component) {
      return component.hearingImpaired ? ' HI' : '';
    });
    view.setValue('card-audio', audio);
    view.setValue('card-subtitles', subtitles);
  }

  function showTrouble() {
    setClass('trouble', 'closed', !trouble);
    setText('trouble-title', trouble ? trouble[0] : '');
    setText('trouble-text', trouble ? trouble[1] + '\nChoose another channel.' : '');
  }

  function showEverything() {
    setText('state', trouble ? trouble[0] : STATES[isTuning ? 1 : television.playState()] || 'No picture');
    showTrouble();
    showChannels();
    showBanner();
    showComponents();
  }

  // In full screen the banner stands for a moment; beside the picture it always does.
  function showBannerForAMoment() {
    clearTimeout(bannerTimer);
    setClass(document.body, 'quiet', false);
    bannerTimer = setTimeout(function () { setClass(document.body, 'quiet', true); }, BANNER_MS);
  }

  // --- what the television tells ---

  // Another channel is asked for or shown.
  function onChanged() {
    trouble = null;
    showEverything();
    showBannerForAMoment();
  }

  function onFailed(error) {
    isTuning = false;
    trouble = TROUBLES[error] || ['Not available', 'The television reports error ' + error + '.'];
    showEverything();
    showBannerForAMoment();
  }

  function onState(state) {
    if (state === television.PRESENTING && television.wantedIndex() < 0) television.follow();
    if (state === television.PRESENTING) {
      isTuning = false;
      trouble = null;
    }
    showEverything();
    if (state === television.PRESENTING || state === 0) finishStart();
  }

  function onFullScreen() {
    setClass(document.body, 'full', television.isFullScreen());
    showBannerForAMoment();
  }

  // A carousel repeats its events; only one that says something new is announced.
  function onStreamEvent(event) {
    var content = event.name + ' ' + event.data;
    if (content === lastContent) return;
    lastContent = content;
    setText('notice', 'News from the broadcast: press the red key');
    setText('message-text', event.text || event.name);
    setText('message-detail', event.name + ', ' + event.status + ', ' + event.data.length / 2 + ' bytes');
    setClass('notice', 'closed', view.isOpen('message'));
  }

  // --- the remote control ---

  function onAsked() {
    isTuning = true;
    onChanged();
  }

  function zap(by) {
    if (television.zap(by)) onAsked();
  }

  // A number that no channel has leaves everything as it is.
  function zapToNumber(number) {
    if (television.zapToNumber(number)) onAsked();
    else setText('state', 'There is no channel ' + number);
  }

  function endDigits() {
    clearTimeout(digitsTimer);
    view.close('digits');
    if (digits !== '') zapToNumber(Number(digits));
    digits = '';
  }

  function addDigit(digit) {
    clearTimeout(digitsTimer);
    digits += digit;
    setText('digits', digits);
    view.open('digits');
    if (digits.length === 3) endDigits();
    else digitsTimer = setTimeout(endDigits, DIGITS_MS);
  }

  function toggleMessage() {
    if (byId('message-text').textContent === '') return;
    view.toggle('message');
    view.close('notice');
  }

  function goBack() {
    if (view.isOpen('message') || view.isOpen('checks')) {
      view.close('message');
      view.close('checks');
    } else if (television.isFullScreen()) {
      television.toggleFullScreen();
    }
  }

  var actions = {
    VK_CHANNEL_UP: function () { zap(1); },
    VK_CHANNEL_DOWN: function () { zap(-1); },
    // In the list the next channel stands below.
    VK_DOWN: function () { zap(1); },
    VK_UP: function () { zap(-1); },
    VK_LEFT: showBannerForAMoment,
    VK_RIGHT: showBannerForAMoment,
    VK_ENTER: function () { if (digits) endDigits(); else showBannerForAMoment(); },
    VK_RED: toggleMessage,
    VK_GREEN: function () { television.nextComponent(AUDIO, false); },
    VK_YELLOW: function () { television.nextComponent(SUBTITLE, true); },
    VK_BLUE: function () { television.toggleFullScreen(); },
    VK_INFO: function () { view.toggle('checks'); },
    VK_BACK: goBack
  };

  function actionOf(name, code) {
    if (code >= 48 && code <= 57) return function () { addDigit(String(code - 48)); };
    return actions[name];
  }

  // --- start and verdict ---

  // Once, when the first channel is shown or cannot be. The verdict comes last, over a finished picture.
  function finishStart() {
    if (startTimer === 0) return;
    clearTimeout(startTimer);
    startTimer = 0;
    verdict.give(verdict.check(checks));
  }

  window.addEventListener('load', function () {
    remote.request(KEYS);
    remote.listen(actionOf);
    view.startClock();
    startTimer = setTimeout(finishStart, START_MS);
    television.start(byId('video'), {
      changed: onChanged,
      failed: onFailed,
      state: onState,
      components: showComponents,
      fullScreen: onFullScreen
    });
    television.follow();
    television.listen('dvb://current/zapper', 'demo', onStreamEvent);
    showEverything();
    setInterval(showEverything, 10000);
  }, false);
}());
