// What pages do alike with the receiver's objects, which may be missing, refuse, or tell nothing.
var objects = (function () {
  'use strict';

  var NO_CHANNEL_NUMBER = 0xffffffff;
  var LANGUAGES = { deu: 'Deutsch', eng: 'English', fra: 'Fran\u00e7ais' };

  // What `read` returns, or null where the receiver cannot tell: outside a television nothing here exists.
  function attempt(read) {
    try {
      var value = read();
      return value === undefined ? null : value;
    } catch (error) {
      return null;
    }
  }

  // A collection is no array; null is an empty one.
  function toArray(collection) {
    var items = [];
    for (var i = 0; collection && i < collection.length; i++) items.push(collection[i]);
    return items;
  }

  return {
    attempt: attempt,
    toArray: toArray,

    // The channels that a viewer may see, in the order of their numbers; those without one come last.
    // `source` is a video/broadcast object or a search manager.
    channelsOf: function (source) {
      var list = attempt(function () { return source.getChannelConfig().channelList; });
      return toArray(list).filter(function (channel) {
        return !channel.hidden;
      }).sort(function (a, b) { return a.majorChannel - b.majorChannel; });
    },

    // A channel without a number is counted.
    numberOf: function (channel, index) {
      return channel.majorChannel === NO_CHANNEL_NUMBER ? index + 1 : channel.majorChannel;
    },

    // The components of a type, and which of them is on (-1: none). `video` shows a channel or plays a medium.
    componentsOf: function (video, type) {
      var all = toArray(attempt(function () { return video.getComponents(type); }));
      var active = toArray(attempt(function () { return video.getCurrentActiveComponents(type); }))[0];
      var pids = all.map(function (component) { return component.pid; });
      return { all: all, active: active ? pids.indexOf(active.pid) : -1 };
    },

    languageName: function (code) {
      return LANGUAGES[code] || code;
    }
  };
}());
