// The information page's picture and keys: four sections, of which one is shown.
(function () {
  'use strict';

  var KEYS = remote.GREEN + remote.YELLOW + remote.BLUE + remote.NAVIGATION;
  // Asked for by name, whether the description mentions them or not.
  var ASKED = ['+DL', '+PVR', '+DRM', '+TRICKMODE', '+RTSP', '+WIDGETS'];
  var YOUNGEST = 4;
  var OLDEST = 18;
  var ROW_HEIGHT = 46;

  var byId = view.byId;
  var setText = view.setText;
  var setClass = view.setClass;

  var names = ['capabilities', 'settings', 'gateway', 'parental'];
  var sections = {};
  var chosen = 0;
  var page = 0;
  // What CI Plus modules did since the page was opened, the latest.
  var changes = [];

  // --- the sections ---

  // Each is { summary, headline, note, trouble, chips: [[text, isOn]], rows: [[name, value, kind]] }.

  function troubled(headline, reason) {
    return { summary: 'not told', headline: headline, note: reason, trouble: true, chips: [], rows: [] };
  }

  function languages(codes) {
    return codes.split(',').map(objects.languageName).join(', ') || 'not set';
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
    view.fill('rows', rows.slice(page * count, (page + 1) * count), view.nameAndValue);
    byId('pages').textContent = pages > 1 ? '\u25c0  ' + (page + 1) + ' / ' + pages + '  \u25b6' : '';
  }

  function showEverything() {
    var section = sections[names[chosen]];
    showSections();
    setText('headline', section.headline);
    setText('note', section.note);
    setClass('note', 'trouble', Boolean(section.trouble));
    view.fill('chips', section.chips, function (chip) { return view.element('li', chip[0], chip[1] ? 'on' : ''); });
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
    view.close(id === 'checks' ? 'source' : 'checks');
    view.toggle(id);
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
      view.close('source');
      view.close('checks');
    }
  };

  // --- start ---

  function onModule() {
    var told = receiver.gateway();
    var change = told.discovered ? ' connected' : ' removed';
    if (!told.trouble) changes.push(view.clockTime(Date.now()) + change);
    changes = changes.slice(-4);
    readEverything();
  }

  window.addEventListener('load', function () {
    remote.request(KEYS);
    remote.listen(function (name) { return actions[name]; });
    view.startClock();
    receiver.listen(onModule);
    // The address can name the section to begin with: index.html?parental
    chosen = Math.max(0, names.indexOf(location.search.slice(1)));
    readEverything();
    verdict.give(verdict.check(checks));
  }, false);
}());
