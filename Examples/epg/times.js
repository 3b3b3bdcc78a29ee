// Days, durations and what is on, as a viewer of the guide reads them.
var times = (function () {
  'use strict';

  var DAYS = ['Sun', 'Mon', 'Tue', 'Wed', 'Thu', 'Fri', 'Sat'];
  var MONTHS = ['Jan', 'Feb', 'Mar', 'Apr', 'May', 'Jun', 'Jul', 'Aug', 'Sep', 'Oct', 'Nov', 'Dec'];

  // Whole days from today to that time, as the calendar counts them.
  function daysAhead(milliseconds) {
    var today = new Date().setHours(0, 0, 0, 0);
    return Math.round((new Date(milliseconds).setHours(0, 0, 0, 0) - today) / 86400000);
  }

  return {
    dayName: function (milliseconds) {
      var days = daysAhead(milliseconds);
      if (days === 0) return 'Today';
      if (days === 1) return 'Tomorrow';
      var time = new Date(milliseconds);
      return DAYS[time.getDay()] + ' ' + time.getDate() + ' ' + MONTHS[time.getMonth()];
    },

    durationText: function (milliseconds) {
      var whole = Math.round(milliseconds / 60000);
      var hours = Math.floor(whole / 60);
      if (hours === 0) return whole + ' min';
      return hours + ' h' + (whole % 60 ? ' ' + whole % 60 + ' min' : '');
    },

    isRunning: function (programme) {
      var now = Date.now();
      return programme.start <= now && programme.end > now;
    }
  };
}());
