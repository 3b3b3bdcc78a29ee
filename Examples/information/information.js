// The information page's picture and keys: four sections, of which one is shown.
(function () {
  'use strict';

  // Colour keys and navigation.
  var KEYS = 0x2 | 0x4 | 0x8 | 0x10;
  var LANGUAGES = { deu: 'Deutsch', eng: 'English', fra: 'Fran\u00e7ais' };
  // Asked for by name, whether the description mentions them or not.
  var ASKED = ['+DL', '+PVR', '+DRM', '+TRICKMODE', '+RTSP', '+WIDGETS'];
  var YOUNGEST = 4;
  var OLDEST = 18;
  var ROW_HEIGHT = 46;

  // Key codes by name; the browser's own constants are read over them at start.
  var keyCodes = {
    VK_LEFT: 37, VK_UP: 38, VK_RIGHT: 39, VK_DOWN: 40, VK_GREEN: 404, VK_YELLOW: 405,
    VK_BLUE: 406, VK_BACK: 461
  };

  var names = ['capabilities', 'settings', 'gateway', 'parental'];
  var sections = {};
  var chosen = 0;
  var page = 0;
  // What CI Plus modules did since the page was opened, the latest.
  var changes = [];

  function byId(id) {
    return document.getElementById(id);
  }

  function setClass(id, name, isOn) {
    if (isOn) byId(id).classList.add(name);
    else byId(id).classList.remove(name);
  }

  function isOpen(id) {
    return !byId(id).classList.contains('closed');
  }

  function clockTime() {
    var now = new Date();
    return now.getHours() + ':' + ('0' + now.getMinutes()).slice(-2);
  }

  // --- the sections ---

  // Each is { summary, headline, note, trouble, chips: [[text, isOn]], rows: [[name, value, kind]] }.

  function troubled(headline, reason) {
    return { summary: 'not told', headline: headline, note: reason, trouble: true, chips: [], rows: [] };
  }

  function languages(codes) {
    return codes.split(',').map(function (code) { return LANGUAGES[code] || code; }).join(', ') || 'not set';
  }

  function settingsSection() {
    var told = receiver.settings();
    if (told.trouble) return troubled('No settings', told.trouble);
    return {
      summary: languages(told.menus),
      headline: told.country || 'No country',
      note: 'Where this television is set up, and the languages it prefers',
      chips: [],
      rows: [['Audio', languages(told.audio)], ['Subtitles', languages(told.subtitles)],
        ['Menus', languages(told.menus)]]
    };
  }

  function formatRow(format) {
    var how = [format.type, format.transport, format.drm ? 'protected' : ''].filter(Boolean).join(', ');
    return [format.name, how, 'wide'];
  }

  function capabilitiesSection() {
    var told = receiver.capabilities();
    byId('source-text').textContent = told.xml ? told.xml.replace(/></g, '>\n<') : told.trouble;
    if (told.trouble) return troubled('No description', told.trouble);
    var profile = told.profiles[0] || { name: 'No profile', options: [] };
    var asked = ASKED.map(function (name) {
      var has = receiver.hasCapability(name);
      return ['Has ' + name, has ? 'yes' : 'no', has ? 'yes' : 'no'];
    });
    return {
      summary: told.formats.length + ' formats',
      headline: profile.name,
      note: 'Its profile, the options, and the formats it plays',
      chips: profile.options.map(function (option) { return [option, true]; }),
      rows: told.formats.map(formatRow).concat(asked)
    };
  }

  function gatewaySection() {
    var told = receiver.gateway();
    if (told.trouble) return troubled('Not for this page', told.trouble);
    return {
      summary: told.discovered ? 'module connected' : 'no module',
      headline: told.discovered ? 'Module connected' : 'No module',
      note: 'For content that a CI Plus module protects',
      chips: changes.map(function (change) { return [change, true]; }),
      rows: [['CI Plus', told.supported ? 'supported' : 'not supported']].concat(
        told.drmTypes.map(function (type, index) { return ['DRM system ' + (index + 1), type || 'empty']; }))
    };
  }

  function parentalSection() {
    var told = receiver.parental();
    if (told.trouble) return troubled('No parental control', told.trouble);
    if (told.length === 0) return troubled('No parental control', 'no rating scheme');
    var threshold = told[0].threshold;
    var isLocked = threshold.value > 0;
    var ages = [];
    for (var age = YOUNGEST; age <= OLDEST; age++) {
      ages.push([String(age), isLocked && age > threshold.value]);
    }
    return {
      summary: isLocked ? 'locked above ' + threshold.name : 'nothing locked',
      headline: isLocked ? 'Locked above ' + threshold.name : 'Nothing locked',
      note: isLocked ? 'Programmes with a higher rating ask for a PIN' : 'Programmes for every age are shown',
      chips: ages,
      rows: [['Rating scheme', told[0].name], ['Threshold', threshold.name],
        ['Region', threshold.region || 'everywhere']]
    };
  }

  // --- the picture ---

  function readEverything() {
    sections = {
      capabilities: capabilitiesSection(),
      settings: settingsSection(),
      gateway: gatewaySection(),
      parental: parentalSection()
    };
    showEverything();
  }

  function element(kind, text, className) {
    var made = document.createElement(kind);
    made.textContent = text;
    if (className) made.className = className;
    return made;
  }

  function showSections() {
    names.forEach(function (name, index) {
      setClass('section-' + name, 'focused', index === chosen);
      setClass('section-' + name, 'missing', Boolean(sections[name].trouble));
      byId('section-' + name).querySelector('.label').textContent = sections[name].summary;
    });
  }

  // As many rows as there is room for below the chips; the rest are on further pages.
  function showRows(rows) {
    var room = byId('page').offsetHeight - byId('rows').offsetTop;
    var count = Math.floor(room / ROW_HEIGHT);
    var pages = Math.max(1, Math.ceil(rows.length / count));
    page = Math.min(page, pages - 1);
    byId('rows').textContent = '';
    rows.slice(page * count, (page + 1) * count).forEach(function (row) {
      var line = element('div', '', row[2]);
      line.appendChild(element('dt', row[0]));
      line.appendChild(element('dd', row[1]));
      byId('rows').appendChild(line);
    });
    byId('pages').textContent = pages > 1 ? '\u25c0  ' + (page + 1) + ' / ' + pages + '  \u25b6' : '';
  }

  function showEverything() {
    var section = sections[names[chosen]];
    byId('clock').textContent = clockTime();
    showSections();
    byId('headline').textContent = section.headline;
    byId('note').textContent = section.note;
    setClass('note', 'trouble', Boolean(section.trouble));
    byId('chips').textContent = '';
    section.chips.forEach(function (chip) {
      byId('chips').appendChild(element('li', chip[0], chip[1] ? 'on' : ''));
    });
    showRows(section.rows);
  }

  // --- the remote control ---

  function choose(by) {
    chosen = (chosen + by + names.length) % names.length;
    page = 0;
    showEverything();
  }

  function turn(by) {
    page = Math.max(0, page + by);
    showEverything();
  }

  function toggle(id) {
    var other = id === 'checks' ? 'source' : 'checks';
    setClass(other, 'closed', true);
    setClass(id, 'closed', isOpen(id));
  }

  var actions = {
    VK_UP: function () { choose(-1); },
    VK_DOWN: function () { choose(1); },
    VK_LEFT: function () { turn(-1); },
    VK_RIGHT: function () { turn(1); },
    VK_GREEN: function () { toggle('source'); },
    VK_YELLOW: readEverything,
    VK_BLUE: function () { toggle('checks'); },
    VK_BACK: function () {
      setClass('source', 'closed', true);
      setClass('checks', 'closed', true);
    }
  };

  function onKey(event) {
    Object.keys(actions).forEach(function (name) {
      if (keyCodes[name] !== event.keyCode) return;
      event.preventDefault();
      actions[name]();
    });
  }

  // --- start ---

  function onModule() {
    var told = receiver.gateway();
    if (!told.trouble) changes.push(clockTime() + (told.discovered ? ' connected' : ' removed'));
    changes = changes.slice(-4);
    readEverything();
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
    receiver.attempt(startApplication);
    document.addEventListener('keydown', onKey, false);
    receiver.listen(onModule);
    // The address can name the section to begin with: index.html?parental
    chosen = Math.max(0, names.indexOf(location.search.slice(1)));
    readEverything();
    setInterval(function () { byId('clock').textContent = clockTime(); }, 10000);
    var result = verdict.check(checks);
    if (result === 'fail') toggle('checks');
    verdict.give(result);
  }, false);
}());
