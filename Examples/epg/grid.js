// The guide itself: channels below each other, two hours beside each other, and one programme in focus.
var grid = (function () {
  'use strict';

  var HALF_HOUR = 1800000;
  var SPAN = 4 * HALF_HOUR;
  var ROWS = 5;
  var LEFT = 276;
  var WIDTH = 876;
  // Narrower cells have no room for a text.
  var NARROW = 46;

  var byId = view.byId;
  var channel = 0;
  var firstChannel = 0;
  // The time in focus, and the one at the left edge.
  var time = 0;
  var from = 0;

  function halfHour(milliseconds) {
    return Math.floor(milliseconds / HALF_HOUR) * HALF_HOUR;
  }

  function place(milliseconds) {
    return Math.round(Math.max(0, Math.min(1, (milliseconds - from) / SPAN)) * WIDTH);
  }

  function rowOf(index) {
    return schedules.between(television.channels()[index], from, from + SPAN);
  }

  // The programme in focus, or what stands in its place: { start, end } without a name.
  function focused() {
    if (television.channels().length === 0) return null;
    var gap = { start: from, end: from + SPAN, ccid: television.channels()[channel].ccid };
    var programmes = rowOf(channel).programmes;
    for (var i = 0; i < programmes.length; i++) {
      if (programmes[i].start <= time && programmes[i].end > time) return programmes[i];
      if (programmes[i].end <= time) gap.start = programmes[i].end;
      else gap.end = Math.min(gap.end, programmes[i].start);
    }
    return gap;
  }

  // --- the picture ---

  function cell(text, start, end, className) {
    var left = place(start);
    var width = place(end) - left - 4;
    var shown = width < NARROW ? '' : (start < from ? '\u25c2 ' : '') + text;
    var made = view.element('div', shown, 'cell ' + className);
    made.style.left = LEFT + left + 'px';
    made.style.width = Math.max(2, width) + 'px';
    return made;
  }

  function showRow(index, focus) {
    var shown = television.channels()[index];
    var row = document.createElement('li');
    var isCurrent = television.isCurrent(shown.ccid);
    var name = view.element('div', shown.name, isCurrent ? 'channel current' : 'channel');
    name.insertBefore(view.element('span', shown.number, 'number'), name.firstChild);
    row.appendChild(name);
    var known = rowOf(index);
    known.programmes.forEach(function (programme) {
      var kind = programme === focus ? 'focused' : times.isRunning(programme) ? 'running' : '';
      row.appendChild(cell(programme.name, programme.start, programme.end, kind));
    });
    if (known.programmes.length === 0) {
      var text = known.hasFailed ? 'The television could not tell' : known.isLoading ? '' : 'No information';
      row.appendChild(cell(text, from, from + SPAN, index === channel ? 'empty focused' : 'empty'));
    }
    return row;
  }

  function showHours() {
    view.setText('day', times.dayName(Math.max(time, from)));
    byId('hours').textContent = '';
    for (var at = from; at < from + SPAN; at += HALF_HOUR) {
      var label = view.element('span', view.clockTime(at), 'label');
      label.style.left = LEFT + place(at) + 'px';
      byId('hours').appendChild(label);
    }
    var now = Date.now();
    view.setClass('now', 'closed', now < from || now >= from + SPAN);
    byId('now').style.left = LEFT + place(now) + 'px';
  }

  function show() {
    var focus = focused();
    var count = television.channels().length;
    showHours();
    byId('rows').textContent = '';
    for (var index = firstChannel; index < Math.min(count, firstChannel + ROWS); index++) {
      byId('rows').appendChild(showRow(index, focus));
    }
    if (count === 0) byId('rows').appendChild(view.element('li', 'The television has no channels', 'empty'));
  }

  // --- moving ---

  // Brings the focus into the picture; what is over is not in the guide.
  function settle() {
    var count = television.channels().length;
    channel = Math.max(0, Math.min(channel, count - 1));
    firstChannel = Math.max(0, Math.min(firstChannel, channel, count - 1));
    firstChannel = Math.max(firstChannel, channel - ROWS + 1);
    time = Math.max(time, Date.now());
    if (time < from) from = halfHour(time);
    while (time >= from + SPAN) from += 2 * HALF_HOUR;
    from = Math.max(from, halfHour(Date.now()));
  }

  return {
    focused: focused,
    show: show,

    // Whether the programmes of all rows are there, or known to be missing.
    isFilled: function () {
      return television.channels().slice(firstChannel, firstChannel + ROWS).every(function (shown, row) {
        return !rowOf(firstChannel + row).isLoading;
      });
    },

    goTo: function (index, milliseconds) {
      channel = index;
      time = milliseconds;
      from = halfHour(Math.max(milliseconds, Date.now()));
      settle();
    },

    moveChannel: function (by) {
      channel += by;
      settle();
    },

    // To the programme before or after; from a programme that began before the left edge, the picture moves.
    moveProgramme: function (by) {
      var focus = focused();
      if (!focus) return;
      time = by > 0 ? focus.end : Math.max(focus.start, from) - 1;
      settle();
      // A programme is entered at its start, as far as that is to be seen.
      var entered = focused();
      time = Math.max(entered.start, from, Date.now());
    },

    moveDays: function (by) {
      time += by * 86400000;
      from += by * 86400000;
      settle();
    },

    PAGE: ROWS
  };
}());
