// The types of `object` elements, the profiles of HbbTV that they came with, and what makes their native objects.

var _hbbtv_vantrel_plugins = [
  {
    name: "HbbTV Application Manager", profile: "1.1.1", visual: false,
    mime: "application/oipfApplicationManager", members: "OipfApplicationManager",
    create: _hbbtv_vantrel_createApplicationManagerCallback
  },
  {
    name: "HbbTV Configuration", profile: "1.1.1", visual: false,
    mime: "application/oipfConfiguration", members: "OipfConfiguration",
    create: _hbbtv_vantrel_createConfigurationCallback
  },
  {
    name: "HbbTV Capabilities", profile: "1.1.1", visual: false,
    mime: "application/oipfCapabilities", members: "OipfCapabilities",
    create: _hbbtv_vantrel_createCapabilitiesCallback
  },
  {
    name: "HbbTV DRM Agent", profile: "1.2.1", visual: false,
    mime: "application/oipfDrmAgent", members: "OipfDrmAgent",
    create: _hbbtv_vantrel_createDrmAgentCallback
  },
  {
    name: "HbbTV Gateway Info", profile: "1.1.1", visual: false,
    mime: "application/oipfGatewayInfo", members: "OipfGatewayInfo",
    create: _hbbtv_vantrel_createGatewayInfoCallback
  },
  {
    name: "HbbTV Parental Control Manager", profile: "1.1.1", visual: false,
    mime: "application/oipfParentalControlManager", members: "OipfParentalControlManager",
    create: _hbbtv_vantrel_createParentalControlManagerCallback
  },
  {
    name: "HbbTV Search Manager", profile: "1.2.1", visual: false,
    mime: "application/oipfSearchManager", members: "OipfSearchManager",
    create: _hbbtv_vantrel_createSearchManagerCallback
  },
  {
    name: "HbbTV Live Playback", profile: "1.1.1", visual: true,
    mime: "video/broadcast", members: "OipfVideoBroadcast",
    create: _hbbtv_vantrel_createVideoBroadcastCallback
  },
  {
    name: "HbbTV AVControl",
    profiles: [
      {
        profile: "1.1.1",
        mimes: [
          "audio/mp3", "audio/mp4", "audio/mpeg", "video/mp4", "video/mpeg", "video/mpeg4", "video/x-ms-wmv",
          "application/vnd.apple.mpegurl", "application/vnd.oipf.contentaccessstreaming+xml"
        ]
      },
      {
        profile: "1.2.1",
        mimes: ["application/dash+xml", "video/vnd.3gpp.mpd"]
      },
      {
        profile: "1.2.1; +PlayReady",
        mimes: [
          "video/vnd.ms-playready.media.pyv", "audio/vnd.ms-playready.media.pya",
          "application/vnd.ms-playready.initiator+xml"
        ]
      }
    ],
    members: "OipfAVControl",
    visual: true,
    create: _hbbtv_vantrel_createVideoMpegCallback
  }
];

// The user agent's, read before a page can say that it is another one.
var _hbbtv_vantrel_profile = (() => {
  // The dots are any-character dots on purpose: user agents write the version in more than one way.
  const found = /HbbTV\/(\d.\d.\d)/i.exec(navigator.userAgent);
  return found ? found[1] : "";
})();

function _hbbtv_vantrel_currentProfile() {
  return _hbbtv_vantrel_profile;
}

function _hbbtv_vantrel_checkProfile(found, current) {
  // A profile with capability suffixes is never offered.
  if (_hbbtv_vantrel_kept.indexOf(found, ";") > 0)
    return false;
  // The same order for proper versions, without setting up a collator in every frame.
  if (_hbbtv_vantrel_kept.match(/^\d\.\d\.\d$/, current))
    return found <= current;
  return _hbbtv_vantrel_kept.compare(found, current) <= 0;
}

// Calls take(type, entry) for every type that the profile has, in the order of the registry.
function _hbbtv_vantrel_eachType(profile, take) {
  for (let i = 0; i < _hbbtv_vantrel_plugins.length; ++i) {
    const entry = _hbbtv_vantrel_plugins[i];
    const offers = entry.profiles || [entry];
    for (let j = 0; j < offers.length; ++j) {
      if (!_hbbtv_vantrel_checkProfile(offers[j].profile, profile))
        continue;
      const mimes = offers[j].mimes || [offers[j].mime];
      for (let k = 0; k < mimes.length; ++k)
        take(mimes[k], entry);
    }
  }
}

function _hbbtv_vantrel_supportedMimeTypes(profile) {
  const mimes = [];
  _hbbtv_vantrel_eachType(profile, mime => _hbbtv_vantrel_define(mimes, mimes.length, mime));
  if (_hbbtv_vantrel_logs)
    _hbbtv_vantrel_log("Supported mimetypes for profile " + profile + ": " + mimes);
  return mimes;
}

function _hbbtv_vantrel_buildObserverQuery() {
  const queries = [];
  const mimes = _hbbtv_vantrel_supportedMimeTypes(_hbbtv_vantrel_currentProfile());
  for (let i = 0; i < mimes.length; ++i)
    _hbbtv_vantrel_define(queries, i, { element: "object[type=" + mimes[i] + "]" });
  return queries;
}

// Type in lower case to registry entry, of the profile that this browser has.
var _hbbtv_vantrel_offered = (() => {
  const offered = { __proto__: null };
  _hbbtv_vantrel_eachType(_hbbtv_vantrel_profile, (mime, entry) => {
    offered[_hbbtv_vantrel_kept.lower(mime)] = entry;
  });
  return offered;
})();

// The type is expected in lower case.
function _hbbtv_vantrel_pluginInfo(mimetype) {
  return _hbbtv_vantrel_offered[mimetype];
}
