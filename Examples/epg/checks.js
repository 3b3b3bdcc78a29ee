// What the guide checks about its television. Searches take their time, so what the checks look at is
// gathered first; each check then judges it.
var checks = (function () {
  'use strict';

  var BROADCAST = 1;
  var CONTAINS = 6;
  var FINISHED = 0;
  var IDLE = 3;
  var LIMIT_MS = 8000;

  var seen = {};

  function manager() {
    return view.byId('manager');
  }

  function names(results) {
    return objects.toArray(results).map(function (programme) { return programme.name; });
  }

  // Asks `search` with `begin` and calls `next` with its states up to the one that is wanted.
  function until(search, wanted, begin, next) {
    var states = [];
    function hear(event) {
      if (event.search !== search) return;
      states.push(event.state);
      if (event.state !== wanted) return;
      manager().removeEventListener('MetadataSearch', hear, false);
      next(states);
    }
    manager().addEventListener('MetadataSearch', hear, false);
    begin();
  }

  function searchTitles(title, next) {
    var search = manager().createSearch(BROADCAST);
    var results = search.result;
    search.setQuery(search.createQuery('Programme.name', CONTAINS, title.toUpperCase()));
    until(search, FINISHED, function () {
      seen.atOnce = [results.getResults(0, 3), results.length];
    }, function () {
      seen.titles = { wanted: title, names: names(results), total: results.totalSize,
        past: results[results.length], item: results.item(0).name };
      until(search, FINISHED, function () { results.getResults(results.totalSize, 5); }, function () {
        seen.pastEnd = { length: results.length, total: results.totalSize };
        next();
      });
    });
  }

  function searchSchedule(channel, next) {
    var search = manager().createSearch(BROADCAST);
    search.findProgrammesFromStream(channel, null, 4);
    until(search, FINISHED, function () { search.result.getResults(0, 10); }, function () {
      seen.schedule = { ccid: channel.ccid, programmes: objects.toArray(search.result) };
      until(search, IDLE, function () {
        search.result.getResults(2, 1);
        search.result.abort();
      }, function (states) {
        seen.aborted = { states: states, length: search.result.length };
        next();
      });
    });
  }

  return {
    prepare: function (done) {
      var timer = setTimeout(done, LIMIT_MS);
      objects.attempt(function () {
        var channel = television.channels()[television.currentIndex()].object;
        searchSchedule(channel, function () {
          searchTitles(seen.schedule.programmes[0].name, function () {
            clearTimeout(timer);
            done();
          });
        });
      });
    },

    all: [
      ['The search manager knows the channels', function (require) {
        var channels = manager().getChannelConfig().channelList;
        require(channels.length > 0, 'got ' + channels.length);
        return channels.length + ' channels';
      }],
      ['Results are never there at once', function (require) {
        require(seen.atOnce && seen.atOnce[0] === false && seen.atOnce[1] === 0, 'got ' + seen.atOnce);
      }],
      ['A programme is found by its title, in any case', function (require) {
        require(seen.titles && seen.titles.names.length > 0, 'nothing was found');
        seen.titles.names.forEach(function (name) {
          require(name.indexOf(seen.titles.wanted) >= 0, 'it also found ' + name);
        });
        return seen.titles.wanted + ', ' + seen.titles.total + ' times';
      }],
      ['Items and array notation agree, and end', function (require) {
        require(seen.titles && seen.titles.item === seen.titles.names[0], 'they do not agree');
        require(seen.titles.past === undefined, 'array notation does not end');
      }],
      ['Past the last result there is none', function (require) {
        require(seen.pastEnd && seen.pastEnd.length === 0, 'there is');
        require(seen.pastEnd.total === seen.titles.total, 'the total size has changed');
      }],
      ['A schedule begins with what is on, in order of time', function (require) {
        var programmes = seen.schedule ? seen.schedule.programmes : [];
        require(programmes.length > 0 && programmes.length <= 4, programmes.length + ' programmes');
        require(programmes[0].startTime * 1000 <= Date.now(), 'the first has not begun');
        programmes.forEach(function (programme, index) {
          require(programme.channelID === seen.schedule.ccid, 'one is of ' + programme.channelID);
          require(index === 0 || programme.startTime >= programmes[index - 1].startTime, 'one is too early');
        });
        return programmes.length + ' programmes';
      }],
      ['A search that was ended tells of it, and of nothing else', function (require) {
        require(seen.aborted && seen.aborted.states.join() === String(IDLE), 'states ' +
          (seen.aborted && seen.aborted.states));
        require(seen.aborted.length === 0, 'results are left');
      }],
      ['Unknown fields and targets are refused', function (require) {
        var search = manager().createSearch(BROADCAST);
        require(search.createQuery('Programme.colour', 0, 'red') === null, 'there is a query');
        require(manager().createSearch(7) === null, 'there is a search');
      }]
    ]
  };
}());
