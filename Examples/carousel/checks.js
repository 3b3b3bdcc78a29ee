// What digital text checks about the carousel that it came with.
var checks = (function () {
  'use strict';

  var byId = view.byId;

  /**
   * Waits for the file, as older applications do: [status, text].
   * @returns {[number, string]}
   */
  function read(address) {
    var request = new XMLHttpRequest();
    request.open('GET', address, false);
    request.send();
    return [request.status, request.responseText];
  }

  return [
    ['The page comes from the object carousel', function (require) {
      require(location.protocol === 'dvb:', 'it comes by ' + location.protocol);
      return location.host || 'current service';
    }],
    ['With it came its sheets', function (require) {
      require(document.styleSheets.length === 3, document.styleSheets.length + ' did');
      require(getComputedStyle(byId('page')).position === 'absolute', 'its own is not in use');
      require(getComputedStyle(byId('sections').firstElementChild).borderRadius === '12px', 'a shared one is not');
    }],
    ['And its pictures', function (require) {
      require(byId('picture').naturalWidth > 0, 'there is none');
      return byId('picture').getAttribute('src');
    }],
    ['A script may wait for a file', function (require) {
      var answer = read('pages/weather.json');
      require(answer[0] === 200 && JSON.parse(answer[1]).headline, 'status ' + answer[0]);
    }],
    ['What is not broadcast is missing', function (require) {
      var status = read('pages/sports.json')[0];
      require(status === 404, 'status ' + status);
    }],
    ['Nothing outside the carousel is in it', function (require) {
      var status = read('/..%2f..%2f..%2f..%2f..%2f..%2fetc/hostname')[0];
      require(status === 404, 'status ' + status);
    }],
    ['Another service keeps its files', function (require) {
      var seen = null;
      try {
        seen = read('dvb://1.2.3/carousel/pages/news.json')[0];
      } catch (error) {
        return;
      }
      require(false, 'status ' + seen);
    }],
    ['The television is at hand', function (require) {
      var owner = byId('appmgr').getOwnerApplication(document);
      require(owner, 'there is no owner application');
      var channel = owner.privateData.currentChannel;
      require(channel && channel.name, 'no channel');
      return channel.name;
    }]
  ];
}());
