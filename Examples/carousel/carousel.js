// Digital text: pages that the broadcaster sends along with the channel. Each is a file of the carousel, read
// when it is chosen.
(function () {
  'use strict';

  // Red, green, blue and navigation.
  var KEYS = 0x1 | 0x2 | 0x8 | 0x10;
  var NOT_FOUND = 404;
  var PRESENTING = 2;

  // Key codes by name; the browser's own constants are read over them at start.
  var keyCodes = {
    VK_UP: 38, VK_DOWN: 40, VK_ENTER: 13, VK_RED: 403, VK_GREEN: 404, VK_BLUE: 406, VK_BACK: 461
  };

  var names = ['news', 'weather', 'programmes', 'about'];
  var chosen = 0;
  // An answer that comes when another page has been chosen is not shown.
  var reading = null;

  function byId(id) {
    return document.getElementById(id);
  }

  function setClass(element, name, isOn) {
    if (isOn) element.classList.add(name);
    else element.classList.remove(name);
  }

  function attempt(read) {
    try {
      var value = read();
      return value === undefined ? null : value;
    } catch (error) {
      return null;
    }
  }

  function timeOf(date) {
    return date.getHours() + ':' + ('0' + date.getMinutes()).slice(-2);
  }

  // --- the picture ---

  // A page is { picture, headline, note, paragraphs, rows: [[name, value]] }; only the headline must be there.
  function show(page, isTrouble) {
    byId('picture').src = page.picture || 'images/text.svg';
    byId('headline').textContent = page.headline;
    byId('note').textContent = page.note || '';
    setClass(byId('note'), 'trouble', Boolean(isTrouble));
    byId('paragraphs').textContent = '';
    (page.paragraphs || []).forEach(function (text) {
      byId('paragraphs').appendChild(document.createElement('p')).textContent = text;
    });
    byId('rows').textContent = '';
    (page.rows || []).forEach(function (row) {
      var line = byId('rows').appendChild(document.createElement('div'));
      line.appendChild(document.createElement('dt')).textContent = row[0];
      line.appendChild(document.createElement('dd')).textContent = row[1];
    });
  }

  function programmesPage() {
    var channel = attempt(function () { return byId('video').currentChannel; });
    var programmes = attempt(function () { return byId('video').programmes; });
    var rows = [];
    for (var i = 0; programmes && i < programmes.length && rows.length < 4; i++) {
      var start = new Date(programmes[i].startTime * 1000);
      rows.push([timeOf(start), programmes[i].name]);
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
    byId('clock').textContent = timeOf(new Date());
    names.forEach(function (each, index) {
      setClass(byId('section-' + each), 'focused', index === chosen);
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
    setClass(byId('invitation'), 'closed', !isOff);
    setClass(byId('checks'), 'closed', true);
  }

  function toggleChecks() {
    setClass(byId('checks'), 'closed', !byId('checks').classList.contains('closed'));
  }

  var actions = {
    VK_UP: function () { choose(-1); },
    VK_DOWN: function () { choose(1); },
    VK_ENTER: function () {
      if (names[chosen] === 'about') location.href = 'about/index.html?from=' + names[chosen];
    },
    VK_RED: toggleText,
    VK_GREEN: function () { showChosen(); },
    VK_BLUE: toggleChecks,
    VK_BACK: function () { setClass(byId('checks'), 'closed', true); }
  };

  function onKey(event) {
    var isOff = document.body.classList.contains('text-off');
    Object.keys(actions).forEach(function (name) {
      if (keyCodes[name] !== event.keyCode || (isOff && name !== 'VK_RED')) return;
      event.preventDefault();
      actions[name]();
    });
  }

  // --- start ---

  function startApplication() {
    var app = byId('appmgr').getOwnerApplication(document);
    app.show();
    app.privateData.keyset.setValue(KEYS);
    for (var name in keyCodes) {
      if (KeyEvent[name] !== undefined) keyCodes[name] = KeyEvent[name];
    }
  }

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
    var result = verdict.check(checks);
    if (result === 'fail') toggleChecks();
    verdict.give(result);
  }

  window.addEventListener('load', function () {
    attempt(startApplication);
    attempt(function () {
      startPicture(function () {
        if (names[chosen] === 'programmes') show(programmesPage());
        arrived();
      });
    });
    attempt(function () {
      byId('video').addStreamEventListener('dvb://current/ticker', 'demo', function (event) {
        byId('ticker').textContent = 'Live: ' + event.text;
      });
    });
    document.addEventListener('keydown', onKey, false);
    // The address can name the page to begin with: index.html?weather
    chosen = Math.max(0, names.indexOf(location.search.slice(1)));
    showChosen(arrived);
    setInterval(function () { byId('clock').textContent = timeOf(new Date()); }, 10000);
  }, false);
}());
