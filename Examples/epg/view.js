// What all parts of the guide's picture use: elements, and times as a viewer reads them.
var view = (function () {
  'use strict';

  var DAYS = ['Sun', 'Mon', 'Tue', 'Wed', 'Thu', 'Fri', 'Sat'];
  var MONTHS = ['Jan', 'Feb', 'Mar', 'Apr', 'May', 'Jun', 'Jul', 'Aug', 'Sep', 'Oct', 'Nov', 'Dec'];

  function byId(id) {
    return document.getElementById(id);
  }

  function clockTime(milliseconds) {
    var time = new Date(milliseconds);
    return time.getHours() + ':' + ('0' + time.getMinutes()).slice(-2);
  }

  // Whole days from today to that time, as the calendar counts them.
  function daysAhead(milliseconds) {
    var today = new Date().setHours(0, 0, 0, 0);
    return Math.round((new Date(milliseconds).setHours(0, 0, 0, 0) - today) / 86400000);
  }

  function dayName(milliseconds) {
    var days = daysAhead(milliseconds);
    if (days === 0) return 'Today';
    if (days === 1) return 'Tomorrow';
    var time = new Date(milliseconds);
    return DAYS[time.getDay()] + ' ' + time.getDate() + ' ' + MONTHS[time.getMonth()];
  }

  function minutes(milliseconds) {
    var whole = Math.round(milliseconds / 60000);
    var hours = Math.floor(whole / 60);
    if (hours === 0) return whole + ' min';
    return hours + ' h' + (whole % 60 ? ' ' + whole % 60 + ' min' : '');
  }

  return {
    byId: byId,
    clockTime: clockTime,
    dayName: dayName,
    minutes: minutes,

    setText: function (id, text) {
      if (byId(id).textContent !== text) byId(id).textContent = text;
    },

    setClass: function (id, name, isOn) {
      if (isOn) byId(id).classList.add(name);
      else byId(id).classList.remove(name);
    },

    isOpen: function (id) {
      return !byId(id).classList.contains('closed');
    },

    element: function (kind, text, className) {
      var made = document.createElement(kind);
      made.textContent = text;
      if (className) made.className = className;
      return made;
    },

    isRunning: function (programme) {
      var now = Date.now();
      return programme.start <= now && programme.end > now;
    }
  };
}());
