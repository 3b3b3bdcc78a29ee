// What the player checks about its television: it plays, pauses, seeks, changes the audio track, reaches the end and
// fails. They are done one after the other, each from where the one before it has left the medium.
// makeChecks(media, open, limit) has the page's list, open(index) plays from it, and nothing takes longer than `limit`
// milliseconds.
function makeChecks(media, open, limit) {
  'use strict';

  var LOOK_MS = 20;
  var DAMAGED = 4;
  var NOT_FOUND = 5;
  var TWO_LANGUAGES = 'The ball in two languages';

  var require = verdict.require;

  // Resolves once it holds, to what it answered; `seen` tells what stood in the way when it never does.
  function until(holds, seen) {
    var deadline = Date.now() + limit;
    return new Promise(function (resolve, reject) {
      (function look() {
        var answer = holds();
        if (answer) resolve(answer);
        else if (Date.now() > deadline) reject(new Error(seen()));
        else setTimeout(look, LOOK_MS);
      }());
    });
  }

  function inState(state) {
    return until(function () { return medium.state() === state || medium.error() !== null; }, function () {
      return 'still in state ' + medium.state();
    }).then(function () {
      require(medium.state() === state, 'error ' + medium.error() + ' in state ' + medium.state());
    });
  }

  function positionPasses(milliseconds) {
    return until(function () { return medium.position() > milliseconds; }, function () {
      return 'still at ' + medium.position() + ' ms';
    });
  }

  // The first medium of the list with this title or of this kind.
  function openFirst(wanted) {
    var found = media.filter(function (item) { return item.title === wanted || item.kind === wanted; })[0];
    require(found, 'not in the list');
    open(media.indexOf(found));
  }

  function plays(kind) {
    openFirst(kind);
    return inState(medium.PLAYING).then(function () {
      return positionPasses(300);
    }).then(function () {
      require(medium.duration() > 0, 'no duration');
      return medium.duration() / 1000 + ' s';
    });
  }

  function fails(title, error) {
    openFirst(title);
    return until(function () { return medium.error() !== null; }, function () {
      return 'in state ' + medium.state();
    }).then(function () {
      require(medium.error() === error, 'error ' + medium.error());
      return 'error ' + error;
    });
  }

  return [
    ['A file that is missing is told of', function () { return fails('A missing file', NOT_FOUND); }],
    ['So is one that is broken', function () { return fails('A broken file', DAMAGED); }],
    ['Sound alone plays', function () { return plays('MP3'); }],
    ['A stream of segments plays', function () { return plays('HLS'); }],
    ['An adaptive stream plays', function () { return plays('DASH'); }],
    ['A film plays, and its position moves', function () { return plays(TWO_LANGUAGES); }],
    ['Pause keeps the position', function () {
      medium.pause();
      var position;
      return inState(medium.PAUSED).then(function () {
        position = medium.position();
        var later = Date.now() + 200;
        return until(function () { return Date.now() > later; });
      }).then(function () {
        require(position > 0 && medium.position() === position, 'from ' + position + ' to ' + medium.position());
        return position + ' ms';
      });
    }],
    ['The audio track can be changed', function () {
      var audio = medium.audio();
      require(audio.all.length > 1 && audio.active >= 0, audio.all.length + ' tracks, heard ' + audio.active);
      medium.nextAudio();
      return until(function () { return medium.audio().active !== audio.active; }, function () {
        return 'still ' + medium.audio().active;
      }).then(function () {
        return medium.audio().all[medium.audio().active].language;
      });
    }],
    ['The end is reached, after a seek near to it', function () {
      medium.play();
      return inState(medium.PLAYING).then(function () {
        medium.seek(medium.duration());
        return inState(medium.FINISHED);
      });
    }],
    ['It plays again, from where it is sought to', function () {
      openFirst(TWO_LANGUAGES);
      return inState(medium.PLAYING).then(function () {
        var middle = Math.round(medium.duration() / 2);
        medium.seek(middle);
        return positionPasses(middle);
      }).then(function () {
        medium.pause();
        return inState(medium.PAUSED);
      }).then(function () {
        var middle = medium.duration() / 2;
        require(medium.position() < middle + 1500, 'at ' + medium.position() + ' ms');
        return medium.position() + ' ms';
      });
    }]
  ];
}
