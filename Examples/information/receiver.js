// What the television tells about itself: everything that touches the receiver's objects is here, nothing of
// the picture is. Each part is read anew; what the receiver does not tell is { trouble: the reason }.
var receiver = (function () {
  'use strict';

  var byId = view.byId;
  var toArray = objects.toArray;

  // What `read` returns, or the reason why there is nothing.
  function orTrouble(read) {
    try {
      return read();
    } catch (/** @type {any} */ error) {
      return { trouble: error.description || error.message || String(error) };
    }
  }

  function attributes(element) {
    var found = {};
    toArray(element.attributes).forEach(function (attribute) { found[attribute.name] = attribute.value; });
    return found;
  }

  // "BASE+ONE+TWO" names a profile and its options.
  function readProfile(element) {
    var parts = (element.getAttribute('name') || '').split('+');
    return { name: parts[0], options: parts.slice(1) };
  }

  function readFormats(xml, kind) {
    return toArray(xml.getElementsByTagName(kind + '_profile')).map(function (element) {
      var format = attributes(element);
      return { kind: kind, name: format.name, type: format.type, transport: format.transport || '',
        drm: format.DRMSystemID || '' };
    });
  }

  return {
    settings: function () {
      return orTrouble(function () {
        var configuration = byId('configuration').configuration;
        return {
          country: configuration.countryId,
          audio: configuration.preferredAudioLanguage,
          subtitles: configuration.preferredSubtitleLanguage,
          menus: configuration.preferredUILanguage
        };
      });
    },

    // A text that is no XML gives a document that says so, in an element "parsererror".
    capabilities: function () {
      return orTrouble(function () {
        var xml = byId('capabilities').xmlCapabilities;
        var failure = xml.getElementsByTagName('parsererror')[0];
        if (failure) throw new Error('the description is no XML');
        return {
          profiles: toArray(xml.getElementsByTagName('ui_profile')).map(readProfile),
          formats: readFormats(xml, 'video').concat(readFormats(xml, 'audio')),
          xml: new XMLSerializer().serializeToString(xml)
        };
      });
    },

    hasCapability: function (name) {
      return byId('capabilities').hasCapability(name);
    },

    gateway: function () {
      return orTrouble(function () {
        var gateway = byId('gateway');
        return {
          supported: gateway.isCSPGCIPlusSupported,
          discovered: gateway.isCSPGCIPlusDiscovered,
          drmTypes: toArray(gateway.CSPGCIPlusDRMType)
        };
      });
    },

    parental: function () {
      return orTrouble(function () {
        return toArray(byId('parental').parentalRatingSchemes).map(function (scheme) {
          var rating = scheme.threshold;
          var threshold = { name: rating.name, value: rating.value, region: rating.region };
          return { name: scheme.name, threshold: threshold };
        });
      });
    },

    // Calls `changed` whenever a CI Plus module comes or goes.
    listen: function (changed) {
      objects.attempt(function () { byId('gateway').addEventListener('DiscoverCSPGCIPlus', changed, false); });
    }
  };
}());
