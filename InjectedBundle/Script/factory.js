// What makes the native objects, and window.oipfObjectFactory.

function _hbbtv_vantrel_createApplicationManagerCallback() {
  return _hbbtv_vantrel_natives.createApplicationManagerObject();
}

function _hbbtv_vantrel_createConfigurationCallback() {
  return _hbbtv_vantrel_natives.createConfigurationObject();
}

function _hbbtv_vantrel_createCapabilitiesCallback() {
  return _hbbtv_vantrel_natives.createCapabilitiesObject();
}

function _hbbtv_vantrel_createDrmAgentCallback() {
  return _hbbtv_vantrel_natives.createDrmAgentObject();
}

function _hbbtv_vantrel_createGatewayInfoCallback() {
  return _hbbtv_vantrel_natives.createGatewayInfoObject();
}

function _hbbtv_vantrel_createParentalControlManagerCallback() {
  return _hbbtv_vantrel_natives.createParentalControlManagerObject();
}

function _hbbtv_vantrel_createSearchManagerCallback() {
  return _hbbtv_vantrel_natives.createSearchManagerObject();
}

function _hbbtv_vantrel_createChannelConfigCallback() {
  return _hbbtv_vantrel_natives.createChannelConfig();
}

// Transparent whatever its state.
function _hbbtv_vantrel_createVideoBroadcastCallback(object) {
  const oipf = _hbbtv_vantrel_natives.createVideoBroadcastObject();
  const record = _hbbtv_vantrel_recordOf(object);
  record.hole = _hbbtv_vantrel_create_hole(oipf);
  _hbbtv_vantrel_show(record, oipf);
  return oipf;
}

// Transparent while playing or paused.
function _hbbtv_vantrel_createVideoMpegCallback(object) {
  const oipf = _hbbtv_vantrel_natives.createVideoMpegObject();
  _hbbtv_vantrel_visibility_check(object, oipf, ({ playState }) => playState === 1 || playState === 2);
  return oipf;
}

function _hbbtv_vantrel_unsupportedCallback() {
  throw _hbbtv_vantrel_kept.TypeError("Object is not supported.");
}

// ---- window.oipfObjectFactory ----

function _hbbtv_vantrel_createObjectElement(type) {
  const object = _hbbtv_vantrel_createElement("object");
  _hbbtv_vantrel_kept.setAttribute(object, "type", type);
  _hbbtv_vantrel_initialize(object);
  return object;
}

function _hbbtv_vantrel_createObjectFactory() {
  const unsupported = _hbbtv_vantrel_unsupportedCallback;
  return {
    isObjectSupported: mimetype => _hbbtv_vantrel_pluginInfo(_hbbtv_vantrel_kept.lower(mimetype)) !== undefined,
    createVideoBroadcastObject: () => _hbbtv_vantrel_createObjectElement("video/broadcast"),
    createVideoMpegObject: () => _hbbtv_vantrel_createObjectElement("video/mpeg"),
    createApplicationManagerObject: _hbbtv_vantrel_createApplicationManagerCallback,
    createCapabilitiesObject: _hbbtv_vantrel_createCapabilitiesCallback,
    createChannelConfig: _hbbtv_vantrel_createChannelConfigCallback,
    createConfigurationObject: _hbbtv_vantrel_createConfigurationCallback,
    createDrmAgentObject: _hbbtv_vantrel_createDrmAgentCallback,
    createGatewayInfoObject: _hbbtv_vantrel_createGatewayInfoCallback,
    createParentalControlManagerObject: _hbbtv_vantrel_createParentalControlManagerCallback,
    createSearchManagerObject: _hbbtv_vantrel_createSearchManagerCallback,
    createStatusViewObject: unsupported,
    createCodManagerObject: unsupported,
    createDownloadManagerObject: unsupported,
    createDownloadTriggerObject: unsupported,
    createIMSObject: unsupported,
    createNotifSocketObject: unsupported,
    createRecordingSchedulerObject: unsupported,
    createRemoteControlFunctionObject: unsupported,
    createMDTFObject: unsupported,
    createRemoteManagementObject: unsupported
  };
}
