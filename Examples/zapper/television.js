// The television as the zapper sees it: everything that touches the receiver's objects is here, nothing of
// the picture is. What the receiver does not tell is null or empty; only the checks ask the objects directly.
var television = (function () {
  'use strict';

  var PRESENTING = 2;

  var attempt = objects.attempt;
  /** @type {hbbtv.OipfElement<hbbtv.OipfVideoBroadcast>} */
  var video;
  var channels = [];
  // Where zapping starts from: the channel asked for last, whether it could be shown or not.
  var wanted = -1;

  function numberOf(channel) {
    return objects.numberOf(channel, channels.indexOf(channel));
  }

  function indexOf(channel) {
    return channel ? channels.map(function (each) { return each.ccid; }).indexOf(channel.ccid) : -1;
  }

  function currentChannel() {
    return attempt(function () { return video.currentChannel; });
  }

  function tune(index) {
    if (index < 0 || index >= channels.length) return false;
    wanted = index;
    video.setChannel(channels[index], false);
    return true;
  }

  return {
    PRESENTING: PRESENTING,

    numberOf: numberOf,
    currentChannel: currentChannel,

    // `on` has one function an event: changed(), failed(error), state(state), components(), fullScreen().
    start: function (element, on) {
      video = element;
      video.onPlayStateChange = function (state) { on.state(state); };
      video.onChannelChangeSucceeded = function (channel) {
        wanted = indexOf(channel);
        on.changed();
      };
      // The channel that failed is told by its number in the receiver; ours is the one asked for last.
      video.onChannelChangeError = function (channel, error) { on.failed(error); };
      video.onSelectedComponentChanged = function () { on.components(); };
      video.onFullScreenChange = function () { on.fullScreen(); };
      channels = objects.channelsOf(video);
      attempt(function () { video.bindToCurrentChannel(); });
    },

    channels: function () { return channels; },
    wantedIndex: function () { return wanted; },
    playState: function () { return video.playState; },

    // Takes the channel that the receiver shows for the one to zap from.
    follow: function () { wanted = indexOf(currentChannel()); },

    zap: function (by) {
      var count = channels.length;
      return count > 0 && tune(wanted < 0 ? 0 : (wanted + by + count) % count);
    },

    zapToNumber: function (number) {
      return tune(channels.map(numberOf).indexOf(number));
    },

    isFullScreen: function () { return video.fullScreen; },
    toggleFullScreen: function () { video.setFullScreen(!video.fullScreen); },

    // What is on now and next, as { name, start, end } with times in milliseconds; null where it is not told.
    nowAndNext: function () {
      var now = Date.now();
      var told = objects.toArray(attempt(function () { return video.programmes; }));
      var programmes = told.map(function (programme) {
        var start = programme.startTime * 1000;
        return { name: programme.name, start: start, end: start + programme.duration * 1000 };
      }).filter(function (programme) {
        return programme.end > now;
      }).sort(function (a, b) { return a.start - b.start; });
      var next = programmes[0] && programmes[0].start > now ? 0 : 1;
      return { now: next ? programmes[0] || null : null, next: programmes[next] || null };
    },

    components: function (type) { return objects.componentsOf(video, type); },

    // Goes on to the next component of a type; where there may be none, none comes after the last.
    nextComponent: function (type, mayBeNone) {
      var found = this.components(type);
      if (found.all.length === 0) return;
      var next = found.active + 1;
      if (next < found.all.length) video.selectComponent(found.all[next]);
      else if (mayBeNone) video.unselectComponent(found.all[found.active]);
      else video.selectComponent(found.all[0]);
    },

    listen: function (url, name, heard) {
      attempt(function () { video.addStreamEventListener(url, name, heard); });
    }
  };
}());
