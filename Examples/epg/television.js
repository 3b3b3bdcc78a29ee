// The channels of the television, and the one that is shown beside the guide.
var television = (function () {
  'use strict';

  /** @type {hbbtv.OipfElement<hbbtv.OipfVideoBroadcast>} */
  var video;
  var channels = [];
  // The channel on the screen, by its ccid.
  var current = '';

  function indexOf(ccid) {
    return channels.map(function (channel) { return channel.ccid; }).indexOf(ccid);
  }

  function readCurrent() {
    var channel = objects.attempt(function () { return video.currentChannel; });
    current = channel ? channel.ccid : '';
  }

  // Read once: asking a channel's object costs more than asking an array.
  function describe(channel, index) {
    return { object: channel, ccid: channel.ccid, name: channel.name,
      longName: channel.longName || channel.name, number: objects.numberOf(channel, index) };
  }

  return {
    indexOf: indexOf,

    // `manager` gives the channels, `element` shows them. `on` has changed() and failed(error).
    start: function (manager, element, on) {
      video = element;
      channels = objects.channelsOf(manager).map(describe);
      function onChanged() {
        readCurrent();
        on.changed();
      }
      video.onChannelChangeSucceeded = onChanged;
      video.onPlayStateChange = onChanged;
      video.onChannelChangeError = function (channel, error) { on.failed(error); };
      objects.attempt(function () { video.bindToCurrentChannel(); });
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
      objects.attempt(function () { video.setChannel(channel.object, false); });
    }
  };
}());
