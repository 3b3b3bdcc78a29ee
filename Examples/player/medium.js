// The medium that the television plays: everything that touches the A/V object is here, nothing of the picture
// is. What the receiver does not tell is null, zero or empty.
var medium = (function () {
  'use strict';

  var STOPPED = 0;
  var PLAYING = 1;
  var PAUSED = 2;
  var CONNECTING = 3;
  var BUFFERING = 4;
  var FINISHED = 5;
  var ERROR = 6;
  // Of a set-up that the television has no player for; it stays stopped.
  var NO_PLAYER = 3;

  var LOUD = 100;
  // A seek ends here at the latest, so that the end of a medium is played and not skipped.
  var BEFORE_END_MS = 500;

  /** @type {hbbtv.OipfElement<hbbtv.OipfAVControl>} */
  var video;
  var item = null;
  var error = null;
  var isMuted = false;
  // Where a seek is on its way to; the next step starts there.
  var target = null;

  function isRolling() {
    return video.playState === PLAYING || video.playState === PAUSED;
  }

  // Remembers why nothing plays before anybody is told of the state.
  function takeState(state, reason) {
    error = state === ERROR || (state === STOPPED && reason === NO_PLAYER) ? reason : null;
    if (state !== PLAYING && state !== PAUSED) target = null;
  }

  return {
    STOPPED: STOPPED,
    PLAYING: PLAYING,
    PAUSED: PAUSED,
    CONNECTING: CONNECTING,
    BUFFERING: BUFFERING,
    FINISHED: FINISHED,
    ERROR: ERROR,

    // `on` has one function an event: state(), position(), components(), fullScreen().
    start: function (element, on) {
      video = element;
      video.onPlayStateChange = function (state, reason) {
        takeState(state, reason);
        on.state();
      };
      video.onPlayPositionChanged = function () {
        target = null;
        on.position();
      };
      video.onSelectedComponentChanged = function () { on.components(); };
      video.onFullScreenChange = function () { on.fullScreen(); };
    },

    item: function () { return item; },
    // The error's number while there is one, else null.
    error: function () { return error; },
    state: function () { return video.playState; },
    isRolling: isRolling,

    // Leaves what plays now and plays another; its address is relative to the page.
    open: function (wanted) {
      video.stop();
      item = wanted;
      error = null;
      video.type = item.type;
      video.data = item.url;
      video.play(1);
    },

    play: function () { video.play(1); },
    pause: function () { video.play(0); },
    stop: function () { video.stop(); },

    // Milliseconds.
    position: function () { return target === null ? video.playPosition : target; },
    duration: function () { return Math.max(0, video.playTime); },

    seek: function (milliseconds) {
      var last = this.duration() - BEFORE_END_MS;
      if (!isRolling() || last <= 0) return;
      var wanted = Math.round(Math.max(0, Math.min(milliseconds, last)));
      if (video.seek(wanted)) target = wanted;
    },

    seekBy: function (milliseconds) { this.seek(this.position() + milliseconds); },

    // The audio tracks, and which of them is heard (-1: none).
    audio: function () { return objects.componentsOf(video, video.COMPONENT_TYPE_AUDIO); },

    nextAudio: function () {
      var found = this.audio();
      if (found.all.length > 1) video.selectComponent(found.all[(found.active + 1) % found.all.length]);
    },

    isMuted: function () { return isMuted; },
    toggleMuted: function () {
      isMuted = !isMuted;
      video.setVolume(isMuted ? 0 : LOUD);
    },

    isFullScreen: function () { return video.fullScreen; },
    toggleFullScreen: function () { video.setFullScreen(!video.fullScreen); }
  };
}());
