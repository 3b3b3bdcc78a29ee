// Digital text: pages that the broadcaster sends along with the channel. Each is a file of the carousel, read
// when it is chosen.
(function () {
  'use strict';

  var KEYS = remote.RED + remote.GREEN + remote.BLUE + remote.NAVIGATION;
  var NOT_FOUND = 404;
  var PRESENTING = 2;

  var attempt = objects.attempt;
  var byId = view.byId;
  var setText = view.setText;
  var setClass = view.setClass;

  var names = ['news', 'weather', 'programmes', 'about'];
  var chosen = 0;
  // An answer that comes when another page has been chosen is not shown.
  var reading = null;

  // --- the picture ---

  // A page is { picture, headline, note, paragraphs, rows: [[name, value]] }; only the headline must be there.
  function show(page, isTrouble) {
    byId('picture').src = page.picture || 'images/text.svg';
    setText('headline', page.headline);
    setText('note', page.note || '');
    setClass('note', 'trouble', Boolean(isTrouble));
    view.fill('paragraphs', page.paragraphs || [], function (text) { return view.element('p', text); });
    view.fill('rows', page.rows || [], view.nameAndValue);
  }

  function programmesPage() {
    var channel = attempt(function () { return byId('video').currentChannel; });
    var programmes = attempt(function () { return byId('video').programmes; });
    var rows = [];
    for (var i = 0; programmes && i < programmes.length && rows.length < 4; i++) {
      rows.push([view.clockTime(programmes[i].startTime * 1000), programmes[i].name]);
    }
    return {
      picture: 'images/guide.svg',
      headline: channel ? channel.name : 'No channel',
      note: rows.length ? 'What is on, and what comes next' : 'No programmes are announced',
      rows: rows
    };
  }

  function aboutPage() {
    return {
      headline: 'About digital text',
      note: 'Press OK to read on',
      paragraphs: ['Everything you see here comes with the channel itself: pages, pictures and the application ' +
        'that shows them. It needs no network.']
    };
  }

  function readPage(name, done) {
    var request = new XMLHttpRequest();
    reading = request;
    request.onload = function () {
      if (reading !== request) return;
      var page = request.status === NOT_FOUND ? null : attempt(function () { return JSON.parse(request.responseText); });
      if (page) done(page, false);
      else done({ headline: 'Not on air', note: 'This page is not being broadcast' }, true);
    };
    request.onerror = function () {
      if (reading === request) done({ headline: 'No page', note: 'The page did not arrive' }, true);
    };
    request.open('GET', 'pages/' + name + '.json');
    request.send();
  }

  // `shown` is called when the chosen page is there with its picture.
  function showChosen(shown) {
    var name = names[chosen];
    names.forEach(function (each, index) {
      setClass('section-' + each, 'focused', index === chosen);
    });
    function finish(page, isTrouble) {
      byId('picture').onload = byId('picture').onerror = shown || null;
      show(page, isTrouble);
    }
    reading = null;
    if (name === 'programmes') finish(programmesPage());
    else if (name === 'about') finish(aboutPage());
    else readPage(name, finish);
  }

  // --- the remote control ---

  function choose(by) {
    chosen = (chosen + by + names.length) % names.length;
    showChosen();
  }

  function toggleText() {
    var isOff = !document.body.classList.contains('text-off');
    setClass(document.body, 'text-off', isOff);
    setClass('invitation', 'closed', !isOff);
    view.close('checks');
  }

  var actions = {
    VK_UP: function () { choose(-1); },
    VK_DOWN: function () { choose(1); },
    VK_ENTER: function () {
      if (names[chosen] === 'about') location.href = 'about/index.html';
    },
    VK_RED: toggleText,
    VK_GREEN: function () { showChosen(); },
    VK_BLUE: function () { view.toggle('checks'); },
    VK_BACK: function () { view.close('checks'); }
  };

  function actionOf(name) {
    var isOff = document.body.classList.contains('text-off');
    return isOff && name !== 'VK_RED' ? null : actions[name];
  }

  // --- start ---

  // Calls back once the channel is on the screen, or will not be.
  function startPicture(settled) {
    byId('video').onPlayStateChange = function (state, error) {
      if (state !== PRESENTING && error === undefined) return;
      byId('video').onPlayStateChange = null;
      settled();
    };
    byId('video').bindToCurrentChannel();
  }

  // The checks wait for the first page and for the channel.
  var awaited = 2;

  function arrived() {
    awaited--;
    if (awaited !== 0) return;
    verdict.give(verdict.check(checks));
  }

  window.addEventListener('load', function () {
    remote.request(KEYS);
    remote.listen(actionOf);
    view.startClock();
    var isStarted = attempt(function () {
      startPicture(function () {
        if (names[chosen] === 'programmes') show(programmesPage());
        arrived();
      });
      return true;
    });
    if (!isStarted) arrived();
    attempt(function () {
      byId('video').addStreamEventListener('dvb://current/ticker', 'demo', function (event) {
        setText('ticker', 'Live: ' + event.text);
      });
    });
    // The address can name the page to begin with: index.html?weather
    chosen = Math.max(0, names.indexOf(location.search.slice(1)));
    showChosen(arrived);
  }, false);
}());
