// How a page says whether all is well: how many checks passed in the page's element "summary", one line a check
// in "verdict", and last of all, over a finished picture, its attribute data-verdict, "pass" or "fail". This
// script adds "verdict" to the page's elements, in a panel "checks" that is closed at first.
var verdict = (function () {
  'use strict';

  var lines = view.element('ol', '');

  function addPanel() {
    var panel = view.element('section', [view.element('h2', 'What was checked'), lines], 'panel closed');
    panel.id = 'checks';
    lines.id = 'verdict';
    document.body.appendChild(panel);
  }

  function require(condition, problem) {
    if (!condition) throw new Error(problem);
  }

  // The line of a check, as it passed with what it saw or failed with a problem.
  function note(check, isPassed, text) {
    var words = check[0] + (text ? ': ' + text : '');
    lines.appendChild(view.element('li', words, isPassed ? 'passed' : 'failed'));
    return isPassed;
  }

  function noteFailure(check, problem) {
    return note(check, false, problem.description || problem.message || problem);
  }

  function conclude(checks, passed) {
    var result = passed === checks.length ? 'pass' : 'fail';
    view.byId('summary').className = result;
    view.setText('summary', passed + ' of ' + checks.length + ' checks passed');
    return result;
  }

  addPanel();

  // Each check is [what is checked, function (require)]: it returns what it saw, for its line, and fails by
  // throwing.
  return {
    require: require,

    // Returns the verdict.
    check: function (checks) {
      return conclude(checks, checks.filter(function (check) {
        try {
          return note(check, true, check[1](require));
        } catch (error) {
          return noteFailure(check, error);
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
            return noteFailure(check, error);
          }).then(function (isPassed) { return passed + (isPassed ? 1 : 0); });
        });
      }, Promise.resolve(0)).then(function (passed) { return conclude(checks, passed); });
    },

    // A failure is shown at once.
    give: function (result) {
      if (result === 'fail') view.open('checks');
      lines.setAttribute('data-verdict', result);
    }
  };
}());
