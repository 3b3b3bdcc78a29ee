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

  return {
    byId: byId,
    setText: setText,
    setClass: setClass,
    isOpen: isOpen,
    clockTime: clockTime,

    open: function (what) { setClass(what, 'closed', false); },
    close: function (what) { setClass(what, 'closed', true); },
    toggle: function (what) { setClass(what, 'closed', isOpen(what)); },

    // The value on a card.
    setValue: function (id, text) {
      setText(byId(id).querySelector('.value'), text);
    },

    element: function (kind, text, className) {
      var made = document.createElement(kind);
      made.textContent = text;
      if (className) made.className = className;
      return made;
    },

    // Keeps the time of day in the element "clock".
    startClock: function () {
      showClock();
      setInterval(showClock, 10000);
    }
  };
}());
