// Everything that asks the search manager: the schedules of channels, and programmes by their titles.
// Programmes are copied into plain objects { name, text, start, end, age, ccid }, times in milliseconds.
var searches = (function () {
  'use strict';

  var BROADCAST = 1;
  var CONTAINS = 6;
  var FINISHED = 0;
  var FAILED = 4;

  /** @type {hbbtv.OipfElement<hbbtv.OipfSearchManager>} */
  var manager;
  // Each { search, done }: `done` hears whether what was asked last was found.
  var asked = [];

  function copy(programme) {
    var start = programme.startTime * 1000;
    var rating = programme.parentalRating[0];
    return { name: programme.name, text: programme.description, start: start,
      end: start + programme.duration * 1000, age: rating ? rating.value : 0, ccid: programme.channelID };
  }

  function finish(entry, isFound) {
    var done = entry.done;
    entry.done = null;
    if (done) done(isFound);
  }

  function onSearch(search, state) {
    if (state !== FINISHED && state !== FAILED) return;
    asked.forEach(function (entry) {
      if (entry.search === search) finish(entry, state === FINISHED);
    });
  }

  return {
    start: function (element) {
      manager = element;
      manager.onMetadataSearch = onSearch;
    },

    // A search to be used again and again, for one question after another. One that failed is replaced: the
    // receiver may have forgotten it.
    newSearch: function () {
      /** @type {{search: hbbtv.MetadataSearch | null, done: ((isFound: boolean) => void) | null}} */
      var entry = { search: null, done: null };
      asked.push(entry);

      function begin() {
        entry.search = entry.search ||
          objects.attempt(function () { return manager.createSearch(BROADCAST); });
        return entry.search;
      }

      return {
        isRunning: function () { return entry.done !== null; },

        toTitles: function (text) {
          var search = begin();
          var query = search && search.createQuery('Programme.name', CONTAINS, text);
          if (search && query) search.setQuery(query);
          else entry.search = null;
        },

        toSchedule: function (channel, time) {
          var search = begin();
          if (search) search.findProgrammesFromStream(channel.object, Math.floor(time / 1000));
        },

        // Calls `done`, later, with the programmes, how many there are altogether, and where these begin; or
        // with null.
        read: function (offset, count, done) {
          /** @param {boolean} isFound */
          function answer(isFound) {
            var results = isFound && entry.search ? entry.search.result : null;
            if (results) {
              done(objects.toArray(results).map(copy), results.totalSize, results.offset);
              return;
            }
            entry.search = null;
            done(null, 0, 0);
          }
          entry.done = answer;
          if (entry.search) entry.search.result.getResults(offset, count);
          else setTimeout(function () { if (entry.done === answer) finish(entry, false); }, 0);
        },

        abort: function () {
          entry.done = null;
          if (entry.search) entry.search.result.abort();
        }
      };
    }
  };
}());

// What is on each channel, from now on, fetched page by page as far as somebody looks.
var schedules = (function () {
  'use strict';

  var PAGE = 16;
  var AHEAD = 2 * 3600000;
  // As many channels are asked about at a time as the guide shows.
  var WORKERS = 5;

  var known = {};
  var waiting = [];
  var idle = [];
  var workers = 0;
  var changed = function () {};

  // Not any more once another time of day is looked at.
  function isWanted(entry) {
    return known[entry.channel.ccid] === entry;
  }

  function isShort(entry) {
    return !entry.isComplete && !entry.hasFailed && entry.until < entry.wanted;
  }

  function add(entry, programmes) {
    programmes.forEach(function (programme) {
      entry.programmes.push(programme);
      entry.until = Math.max(entry.until, programme.end);
    });
  }

  function release(entry, worker) {
    entry.isLoading = false;
    idle.push(worker);
    changed();
    work();
  }

  function load(entry, worker, offset) {
    worker.read(offset, PAGE, function (programmes, total, first) {
      entry.hasFailed = !programmes;
      add(entry, programmes || []);
      var next = first + (programmes ? programmes.length : 0);
      entry.isComplete = Boolean(programmes) && next >= total;
      if (isShort(entry) && isWanted(entry)) load(entry, worker, next);
      else release(entry, worker);
    });
  }

  function work() {
    waiting = waiting.filter(isWanted);
    while (waiting.length > 0 && (idle.length > 0 || workers < WORKERS)) {
      var worker = idle.pop();
      if (!worker) {
        worker = searches.newSearch();
        workers++;
      }
      var entry = waiting.shift();
      worker.toSchedule(entry.channel, entry.until);
      load(entry, worker, 0);
    }
  }

  return {
    // `onChanged` is called whenever more is known.
    start: function (onChanged) {
      changed = onChanged;
    },

    forget: function () {
      known = {};
      waiting = [];
    },

    // What is known of a channel between two times: { programmes, isLoading, hasFailed }. Asks for the rest,
    // and for what comes soon after it.
    between: function (channel, from, until) {
      var entry = known[channel.ccid];
      var isFar = entry && !entry.isComplete && from > entry.until + AHEAD;
      if (!entry || from < entry.from || isFar) {
        entry = known[channel.ccid] = { channel: channel, from: from, until: from, wanted: from,
          programmes: [], isComplete: false, isLoading: false, hasFailed: false };
      }
      entry.wanted = Math.max(entry.wanted, until + AHEAD);
      if (isShort(entry) && !entry.isLoading) {
        entry.isLoading = true;
        waiting.push(entry);
        work();
      }
      return {
        programmes: entry.programmes.filter(function (programme) {
          return programme.end > from && programme.start < until;
        }),
        isLoading: entry.isLoading,
        hasFailed: entry.hasFailed
      };
    }
  };
}());
