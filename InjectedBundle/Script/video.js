// Visual objects: the hole for the video plane and the black background.

function _hbbtv_vantrel_fill(element) {
  const style = _hbbtv_vantrel_kept.style(element);
  _hbbtv_vantrel_kept.setStyle(style, "width", "inherit");
  _hbbtv_vantrel_kept.setStyle(style, "height", "inherit");
  return style;
}

// A browser may have an event of its own kind for it.
function _hbbtv_vantrel_detailOf(event) {
  try {
    return _hbbtv_vantrel_kept.eventDetail(event);
  } catch (e) {
    return event.detail;
  }
}

function _hbbtv_vantrel_create_hole(oipf) {
  const hole = _hbbtv_vantrel_createElement("hole");
  const { objectText } = _hbbtv_vantrel_kept;
  _hbbtv_vantrel_log("Created hole " + objectText(hole) + " for " + objectText(oipf));
  _hbbtv_vantrel_fill(hole);
  _hbbtv_vantrel_kept.addListener(hole, "geometrychanged", event => _hbbtv_vantrel_attempt(() => {
    const detail = _hbbtv_vantrel_detailOf(event);
    if (_hbbtv_vantrel_logs)
      _hbbtv_vantrel_log("Got hole geometrychanged: ", _hbbtv_vantrel_attempt(() => _hbbtv_vantrel_kept.json(detail)));
    const record = _hbbtv_vantrel_find(_hbbtv_vantrel_kept.parentNode(hole));
    if (record && record.oipf)
      record.oipf.setWindow(detail.x, detail.y, detail.width, detail.height);
  }), false);
  return hole;
}

function _hbbtv_vantrel_create_background() {
  const background = _hbbtv_vantrel_createElement("div");
  _hbbtv_vantrel_kept.setAttribute(background, "class", "_hbbtv_vantrel_background");
  _hbbtv_vantrel_kept.setStyle(_hbbtv_vantrel_fill(background), "background-color", "black");
  return background;
}

// Also those of an element that this one was cloned from, or whose markup was read back and parsed again.
function _hbbtv_vantrel_removeStandIns(object) {
  _hbbtv_vantrel_eachChild(object, child => {
    if (_hbbtv_vantrel_kept.localName(child) === "hole"
        || _hbbtv_vantrel_kept.getAttribute(child, "class") === "_hbbtv_vantrel_background")
      _hbbtv_vantrel_kept.removeChild(object, child);
  });
}

function _hbbtv_vantrel_visibility_check(object, oipf, rule) {
  const record = _hbbtv_vantrel_recordOf(object);
  record.rule = rule;
  record.hole = _hbbtv_vantrel_create_hole(oipf);
  record.background = _hbbtv_vantrel_create_background();
  record.update = () => _hbbtv_vantrel_attempt(() => _hbbtv_vantrel_show(record, oipf));
  record.sizes = { __proto__: null };
  _hbbtv_vantrel_define(object, "hole", record.hole);
  _hbbtv_vantrel_define(object, "background", record.background);
  _hbbtv_vantrel_show(record, oipf);
}

function _hbbtv_vantrel_show(record, oipf) {
  const { object, rule, shown } = record;
  const chosen = !rule || rule(oipf) ? record.hole : record.background;
  const isThere = shown && _hbbtv_vantrel_kept.parentNode(shown) === object;
  record.shown = chosen;
  if (rule)
    _hbbtv_vantrel_define(object, "fallback", chosen);
  if (!isThere)
    _hbbtv_vantrel_kept.appendChild(object, chosen);
  else if (shown !== chosen)
    _hbbtv_vantrel_kept.replaceChild(object, chosen, shown);
}

function _hbbtv_vantrel_hideVideo(record) {
  const { object } = record;
  _hbbtv_vantrel_removeStandIns(object);
  if (record.rule) {
    _hbbtv_vantrel_kept.deleteProperty(object, "hole");
    _hbbtv_vantrel_kept.deleteProperty(object, "background");
    _hbbtv_vantrel_kept.deleteProperty(object, "fallback");
  }
  record.rule = record.hole = record.background = record.shown = record.update = null;
}

// A page that writes new children takes the hole along. It comes back with the next frame, not at once: a page that
// empties the element whenever something comes into it would never end.
function _hbbtv_vantrel_restore(record) {
  const isMissing = () => record.shown && _hbbtv_vantrel_kept.parentNode(record.shown) !== record.object;
  if (record.restoring || !isMissing())
    return;
  record.restoring = true;
  _hbbtv_vantrel_kept.onNextFrame(() => {
    record.restoring = false;
    if (record.oipf && isMissing())
      _hbbtv_vantrel_attempt(() => _hbbtv_vantrel_show(record, record.oipf));
  });
}

// A listener pins the native object, so it is there only while the element is in the document.
function _hbbtv_vantrel_follow(record) {
  if (!record.oipf || !record.update || record.following || !_hbbtv_vantrel_kept.isConnected(record.object))
    return;
  record.following = true;
  record.oipf.addEventListener("PlayStateChange", record.update, false);
  record.update();
}

function _hbbtv_vantrel_unfollow(record) {
  if (!record.following)
    return;
  record.following = false;
  _hbbtv_vantrel_attempt(() => record.oipf.removeEventListener("PlayStateChange", record.update, false));
}
