// How a page says whether all is well: one line a check in the element "verdict", how many passed in
// "summary", and last of all, over a finished picture, the attribute data-verdict, "pass" or "fail".
var verdict = (function () {
  'use strict';

  function byId(id) {
    return document.getElementById(id);
  }

  function require(condition, problem) {
    if (!condition) throw new Error(problem);
  }

  // The line of a check, as it passed with what it saw or failed with a problem.
  function note(check, isPassed, text) {
    var line = document.createElement('li');
    line.className = isPassed ? 'passed' : 'failed';
    line.textContent = check[0] + (text ? ': ' + text : '');
    byId('verdict').appendChild(line);
    return isPassed;
  }

  function words(problem) {
    return problem.description || problem.message || problem;
  }

  function conclude(checks, passed) {
    var result = passed === checks.length ? 'pass' : 'fail';
    byId('summary').className = result;
    byId('summary').textContent = passed + ' of ' + checks.length + ' checks passed';
    return result;
  }

  // Each check is [what is checked, function (require)]: it returns what it saw, for its line, and fails by
  // throwing.
  return {
    // Returns the verdict.
    check: function (checks) {
      return conclude(checks, checks.filter(function (check) {
        try {
          return note(check, true, check[1](require));
        } catch (error) {
          return note(check, false, words(error));
        }
      }).length);
    },

    // For checks that return promises of what they saw: one after the other. Resolves to the verdict.
    checkInTurn: function (checks) {
      return checks.reduce(function (before, check) {
        return before.then(function (passed) {
          return Promise.resolve(require).then(check[1]).then(function (seen) {
            return note(check, true, seen);
          }, function (error) {
            return note(check, false, words(error));
          }).then(function (isPassed) { return passed + (isPassed ? 1 : 0); });
        });
      }, Promise.resolve(0)).then(function (passed) { return conclude(checks, passed); });
    },

    give: function (result) {
      byId('verdict').setAttribute('data-verdict', result);
    }
  };
}());
