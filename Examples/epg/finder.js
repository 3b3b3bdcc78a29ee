// Search by title: a keyboard on the screen, and beside it what was found, page by page.
var finder = (function () {
  'use strict';

  var KEYS = ['abcdefghij', 'klmnopqrst', 'uvwxyz-\' \u2190', '1234567890'];
  var DELETE = '\u2190';
  var PAGE = 5;
  var LONGEST = 24;

  var byId = view.byId;
  var search = null;
  var text = '';
  var row = 0;
  var column = 0;
  // Which of the results is in focus, counted over all of them; -1 while the keyboard has it.
  var chosen = -1;
  var found = nothing();

  // `state`: '' before a search, then 'searching', 'found' or 'failed'.
  function nothing() {
    return { state: '', programmes: [], offset: 0, total: 0 };
  }

  function shown() {
    return found.programmes[chosen - found.offset] || null;
  }

  // --- asking ---

  function receive(programmes, total, offset) {
    found = programmes ? { state: 'found', programmes: programmes, offset: offset, total: total } : nothing();
    if (!programmes) found.state = 'failed';
    if (chosen >= found.total) chosen = found.total - 1;
    turn();
    finder.onChanged();
  }

  function read(offset) {
    found.state = 'searching';
    search.read(offset, PAGE, receive);
  }

  // Results that are on the screen stay until those around the focus have come.
  function turn() {
    if (chosen >= 0 && !shown() && found.state === 'found') read(Math.floor(chosen / PAGE) * PAGE);
  }

  // Another text: what runs is ended, what was found is no answer any more.
  function ask() {
    search = search || searches.newSearch();
    if (search.isRunning()) search.abort();
    chosen = -1;
    found = nothing();
    if (text.trim() === '') return;
    search.toTitles(text.trim());
    read(0);
  }

  function setText(next) {
    if (next.length > LONGEST) return;
    text = next;
    ask();
  }

  function type(key) {
    if (key === DELETE) setText(text.slice(0, -1));
    else if (key !== ' ' || text !== '') setText(text + key);
  }

  // --- the picture ---

  function message() {
    if (found.state === 'failed') return 'The search failed. The yellow key tries again.';
    if (text === '') return 'Enter a part of the title.';
    if (found.state === 'found' && found.total === 0) return 'No programme has this in its title.';
    return '';
  }

  function heading() {
    if (found.programmes.length > 0) {
      var last = found.offset + found.programmes.length;
      return (found.offset + 1) + ' \u2013 ' + last + ' of ' + found.total;
    }
    return found.state === 'searching' ? 'Searching' : '';
  }

  function showKeyboard() {
    byId('keyboard').textContent = '';
    KEYS.forEach(function (keys, at) {
      keys.split('').forEach(function (key, index) {
        var isFocused = chosen < 0 && at === row && index === column;
        var label = view.element('span', key === ' ' ? '\u2423' : key, isFocused ? 'focused' : '');
        byId('keyboard').appendChild(label);
      });
    });
  }

  function resultRow(programme, index) {
    var channel = television.named(programme.ccid);
    var when = times.isRunning(programme) ? 'Now'
      : times.dayName(programme.start) + ' ' + view.clockTime(programme.start);
    return view.element('li', [
      view.element('span', when, 'when'),
      view.element('span', programme.name, 'name'),
      view.element('span', channel ? channel.name : '', 'where')
    ], found.offset + index === chosen ? 'focused' : '');
  }

  function show() {
    view.setText('entry', text);
    showKeyboard();
    view.setText('found', heading());
    view.fill('results', found.programmes, resultRow);
    view.setText('message', message());
    view.setClass('message', 'closed', message() === '');
  }

  // --- the remote control ---

  function moveInResults(by) {
    chosen = Math.max(0, Math.min(chosen + by, found.total - 1));
    turn();
  }

  function moveInKeyboard(across, down) {
    row = (row + down + KEYS.length) % KEYS.length;
    column += across;
    if (column >= KEYS[row].length && found.programmes.length > 0) chosen = found.offset;
    column = Math.max(0, Math.min(column, KEYS[row].length - 1));
  }

  return {
    // Called whenever results have come.
    onChanged: function () {},

    show: show,
    // The result in focus, or null.
    focused: shown,

    move: function (across, down) {
      if (chosen < 0) moveInKeyboard(across, down);
      else if (across < 0) chosen = -1;
      else moveInResults(down);
    },

    turn: function (by) {
      if (chosen >= 0) moveInResults(by * PAGE);
      else if (by > 0 && found.programmes.length > 0) chosen = found.offset;
    },

    // Presses the key in focus.
    press: function () {
      type(KEYS[row][column]);
    },

    type: type,
    erase: function () { type(DELETE); },
    clear: function () { setText(''); },
    again: ask,

    enter: function () {
      if (found.state === '') ask();
    },

    // Nobody waits for results any more.
    leave: function () {
      if (!search || !search.isRunning()) return;
      search.abort();
      found = nothing();
      chosen = -1;
    }
  };
}());
