// The start.

// For browsers that announce object elements by themselves; not listened to.
function _hbbtv_vantrel_onWebKitObjectAdded(event) {
  _hbbtv_vantrel_log("Trigger object added cb: " + event.target.type);
  _hbbtv_vantrel_initialize(event.target);
}

function _hbbtv_vantrel_main() {
  _hbbtv_vantrel_log("Hbbtv_js_main");
  window.removeEventListener("webkitobjectadded", _hbbtv_vantrel_onWebKitObjectAdded, true);
  _hbbtv_vantrel_log("Using mutation observer");
  if (!_hbbtv_vantrel_buildObserverQuery().length)
    return;
  _hbbtv_vantrel_installTouches();
  _hbbtv_vantrel_observe();
}

window.onload = () => _hbbtv_vantrel_log("Started");
_hbbtv_vantrel_main();
window.oipfObjectFactory = _hbbtv_vantrel_createObjectFactory();
