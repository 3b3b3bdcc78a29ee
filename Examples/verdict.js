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

  return {
    // Each check is [what is checked, function (require)]: it returns what it saw, for its line, and fails by
    // throwing. Returns the verdict.
    check: function (checks) {
      var passed = checks.filter(function (check) {
        var line = document.createElement('li');
        byId('verdict').appendChild(line);
        try {
          var seen = check[1](require);
          line.className = 'passed';
          line.textContent = check[0] + (seen ? ': ' + seen : '');
          return true;
        } catch (error) {
          line.className = 'failed';
          line.textContent = check[0] + ': ' + (error.description || error.message || error);
          return false;
        }
      }).length;
      var result = passed === checks.length ? 'pass' : 'fail';
      byId('summary').className = result;
      byId('summary').textContent = passed + ' of ' + checks.length + ' checks passed';
      return result;
    },

    give: function (result) {
      byId('verdict').setAttribute('data-verdict', result);
    }
  };
}());
