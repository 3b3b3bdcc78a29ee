// What pages do alike with their elements. `what` is an element or its id.
var view = (function () {
  'use strict';

  function byId(id) {
    return document.getElementById(id);
  }

  function elementOf(what) {
    return typeof what === 'string' ? byId(what) : what;
  }

  // Writes only what is new: a picture that does not change is not painted.
  function setText(what, text) {
    var element = elementOf(what);
    if (element.textContent !== text) element.textContent = text;
  }

  function setClass(what, name, isOn) {
    var classes = elementOf(what).classList;
    if (isOn) classes.add(name);
    else classes.remove(name);
  }

  function isOpen(what) {
    return !elementOf(what).classList.contains('closed');
  }

  // As a viewer reads it; `time` is a date or its milliseconds.
  function clockTime(time) {
    var date = new Date(time);
    return date.getHours() + ':' + ('0' + date.getMinutes()).slice(-2);
  }

  function showClock() {
    setText('clock', clockTime(Date.now()));
  }

  // `content` is a text or a list of elements.
  function element(kind, content, className) {
    var made = document.createElement(kind);
    if (Array.isArray(content)) content.forEach(function (each) { made.appendChild(each); });
    else made.textContent = content;
    if (className) made.className = className;
    return made;
  }

  // Fills an element anew with what make(item, index) makes of each item.
  function fill(what, items, make) {
    elementOf(what).textContent = '';
    items.forEach(function (item, index) { elementOf(what).appendChild(make(item, index)); });
  }

  return {
    byId: byId,
    setText: setText,
    setClass: setClass,
    isOpen: isOpen,
    clockTime: clockTime,
    element: element,
    fill: fill,

    // The same with as many items as there is room for, that at `index` among them.
    fillAround: function (what, items, index, room, make) {
      var first = Math.max(0, Math.min(index - room / 2, items.length - room));
      fill(what, items.slice(first, first + room), function (item, row) { return make(item, first + row); });
    },

    // A line of a "dl": [name, value, class].
    nameAndValue: function (row) {
      return element('div', [element('dt', row[0]), element('dd', row[1])], row[2]);
    },

    open: function (what) { setClass(what, 'closed', false); },
    close: function (what) { setClass(what, 'closed', true); },
    toggle: function (what) { setClass(what, 'closed', isOpen(what)); },

    // The value on a card.
    setValue: function (id, text) {
      setText(byId(id).querySelector('.value'), text);
    },

    // Keeps the time of day in the element "clock".
    startClock: function () {
      showClock();
      setInterval(showClock, 10000);
    }
  };
}());
