// The script's own lines on the console, which the bundle puts into its log, and what guards the page from failures.

// The bundle says in front of the script whether anything shows these lines; without its word they are made.
var _hbbtv_vantrel_logs = globalThis._hbbtv_vantrel_logs !== false;

// A second argument is any value of the page, whose text is made only for a line that is shown.
function _hbbtv_vantrel_log(str, value) {
  if (_hbbtv_vantrel_logs)
    _hbbtv_vantrel_kept.consoleLog("[bootstrap] " + str + (arguments.length > 1 ? _hbbtv_vantrel_text(value) : ""));
}

// Without the toString of a page, which may do anything.
function _hbbtv_vantrel_text(value) {
  if (typeof value === "object" && value !== null)
    return _hbbtv_vantrel_kept.objectText(value);
  return typeof value === "function" ? _hbbtv_vantrel_kept.functionText(value) : _hbbtv_vantrel_kept.text(value);
}

// What was thrown tells by its own text what is wrong, if it has one.
function _hbbtv_vantrel_reason(thrown) {
  try {
    return _hbbtv_vantrel_kept.text(thrown);
  } catch (e) {
    return "(no text)";
  }
}

// One failure ends neither what else there is to do nor the page's script.
function _hbbtv_vantrel_attempt(action) {
  try {
    return action();
  } catch (e) {
    if (_hbbtv_vantrel_logs)
      _hbbtv_vantrel_log("Caught: " + _hbbtv_vantrel_reason(e));
    return undefined;
  }
}
