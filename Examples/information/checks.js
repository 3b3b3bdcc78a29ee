// What the information page checks about its television.
var checks = (function () {
  'use strict';

  var byId = view.byId;

  return [
    ['The television knows its languages and country', function (require) {
      var settings = receiver.settings();
      require(!settings.trouble, settings.trouble);
      require(settings.audio && settings.subtitles && settings.menus && settings.country, 'some are empty');
      return settings.country;
    }],
    ['Its capabilities come as an XML document', function (require) {
      var xml = byId('capabilities').xmlCapabilities;
      require(xml.nodeType === Node.DOCUMENT_NODE, 'node type ' + xml.nodeType);
      require(xml.documentElement.localName === 'profilelist', 'root ' + xml.documentElement.localName);
      require(xml !== byId('capabilities').xmlCapabilities, 'two reads gave one document');
    }],
    ['They name a profile and formats', function (require) {
      var told = receiver.capabilities();
      require(!told.trouble, told.trouble);
      require(told.profiles.length > 0 && told.profiles[0].name, 'no profile');
      require(told.formats.length > 0, 'no formats');
      return told.profiles[0].name + ', ' + told.formats.length + ' formats';
    }],
    ['What the profile names, it has', function (require) {
      var profile = receiver.capabilities().profiles[0];
      [profile.name].concat(profile.options.map(function (option) { return '+' + option; }))
        .forEach(function (name) { require(receiver.hasCapability(name) === true, 'not ' + name); });
      require(receiver.hasCapability('+NO_SUCH_CAPABILITY') === false, 'it has everything');
    }],
    ['Further decoders are not reported', function (require) {
      var capabilities = byId('capabilities');
      require(capabilities.extraSDVideoDecodes === 0 && capabilities.extraHDVideoDecodes === 0, 'they are');
    }],
    ['CI Plus is told to this page', function (require) {
      var gateway = receiver.gateway();
      require(!gateway.trouble, gateway.trouble);
      require(gateway.supported === true, 'supported: ' + gateway.supported);
      return gateway.discovered ? 'a module is connected' : 'no module';
    }],
    ['A listener for modules can come and go', function () {
      function ignore() {}
      byId('gateway').addEventListener('DiscoverCSPGCIPlus', ignore, false);
      byId('gateway').removeEventListener('DiscoverCSPGCIPlus', ignore, false);
    }],
    ['One rating scheme is known, by its exact name', function (require) {
      var schemes = byId('parental').parentalRatingSchemes;
      require(schemes.length === 1 && schemes[0].name === 'dvb-si', schemes.length + ' are');
      require(schemes.getParentalRatingScheme('dvb-si').name === 'dvb-si', 'it is not found');
      require(schemes.getParentalRatingScheme('DVB-SI') === undefined, 'another name finds it too');
    }],
    ['Its threshold is an age', function (require) {
      var threshold = byId('parental').parentalRatingSchemes.item(0).threshold;
      require(threshold.scheme === 'dvb-si' && threshold.name === String(threshold.value), 'it is not');
      require(threshold.value >= 0 && threshold.value < 255, 'value ' + threshold.value);
      return threshold.name;
    }]
  ];
}());
