// The channels of the television, and the one that is shown beside the guide.
var television = (function () {
  'use strict';

  var NO_CHANNEL_NUMBER = 0xffffffff;

  var video = null;
  var channels = [];
  // The channel on the screen, by its ccid.
  var current = '';

  // What `read` returns, or null where the receiver cannot tell.
  function attempt(read) {
    try {
      var value = read();
      return value === undefined ? null : value;
    } catch (error) {
      return null;
    }
  }

  function toArray(collection) {
    var items = [];
    for (var i = 0; collection && i < collection.length; i++) items.push(collection[i]);
    return items;
  }

  function indexOf(ccid) {
    for (var i = 0; i < channels.length; i++) {
      if (channels[i].ccid === ccid) return i;
    }
    return -1;
  }

  function readCurrent() {
    var channel = attempt(function () { return video.currentChannel; });
    current = channel ? channel.ccid : '';
  }

  // Read once: asking a channel's object costs more than asking an array.
  function describe(channel, index) {
    var number = channel.majorChannel === NO_CHANNEL_NUMBER ? index + 1 : channel.majorChannel;
    return { object: channel, ccid: channel.ccid, name: channel.name,
      longName: channel.longName || channel.name, number: number };
  }

  return {
    attempt: attempt,
    toArray: toArray,
    indexOf: indexOf,

    // `manager` gives the channels, in the order of their numbers; `element` shows them. `on` has
    // changed() and failed(error).
    start: function (manager, element, on) {
      video = element;
      var list = attempt(function () { return manager.getChannelConfig().channelList; });
      channels = toArray(list).filter(function (channel) {
        return !channel.hidden;
      }).sort(function (a, b) { return a.majorChannel - b.majorChannel; }).map(describe);
      function onChanged() {
        readCurrent();
        on.changed();
      }
      video.onChannelChangeSucceeded = onChanged;
      video.onPlayStateChange = onChanged;
      video.onChannelChangeError = function (channel, error) { on.failed(error); };
      attempt(function () { video.bindToCurrentChannel(); });
      readCurrent();
    },

    channels: function () { return channels; },

    named: function (ccid) {
      return channels[indexOf(ccid)] || null;
    },

    // Where the guide begins: the channel on the screen, or the first.
    currentIndex: function () { return Math.max(0, indexOf(current)); },
    isCurrent: function (ccid) { return ccid === current; },

    tune: function (channel) {
      attempt(function () { video.setChannel(channel.object, false); });
    }
  };
}());
