// What the zapper checks about its television once it shows a channel.
var checks = (function () {
  'use strict';

  var byId = view.byId;

  function channelList() {
    return byId('video').getChannelConfig().channelList;
  }

  return [
    ['The channel list has channels', function (require) {
      var channels = channelList();
      require(channels.length > 0, 'got ' + channels.length);
      return channels.length + ' channels';
    }],
    ['Items and array notation agree, and end', function (require) {
      var channels = channelList();
      var last = channels.length - 1;
      require(channels[last].ccid === channels.item(last).ccid, 'the last channel is another');
      require(channels[last + 1] === undefined, 'array notation does not end');
      require(channels.item(last + 1) === undefined, 'items do not end');
    }],
    ['A channel is found by its id and by its triplet', function (require) {
      var channels = channelList();
      var last = channels[channels.length - 1];
      require(channels.getChannel(last.ccid).name === last.name, 'another by id');
      var same = channels.getChannelByTriplet(last.onid, last.tsid, last.sid);
      require(same.ccid === last.ccid, 'another by triplet');
      return last.name;
    }],
    ['The picture is shown', function (require) {
      require(byId('video').playState === television.PRESENTING, 'play state ' + byId('video').playState);
    }],
    ['The current channel is in the list', function (require) {
      var current = byId('video').currentChannel;
      require(current && current.name, 'got ' + current);
      require(channelList().getChannel(current.ccid).name === current.name, 'it is not');
      return current.name;
    }],
    ['Its programmes are its own, and one is on', function (require) {
      var programmes = byId('video').programmes;
      require(programmes && programmes.length > 0, 'no programmes');
      require(programmes[0].channelID === byId('video').currentChannel.ccid, 'of ' + programmes[0].channelID);
      var now = television.nowAndNext().now;
      require(now, 'none is on');
      return now && now.name;
    }],
    ['Components come by type and all together', function (require) {
      var video = byId('video');
      var counts = [0, 1, 2].map(function (type) { return video.getComponents(type).length; });
      var all = video.getComponents().length;
      require(all > 0 && counts[0] + counts[1] + counts[2] === all, counts.join(' + ') + ' and ' + all);
      return all + ' components';
    }],
    ['One audio component is on', function (require) {
      var active = byId('video').getCurrentActiveComponents(byId('video').COMPONENT_TYPE_AUDIO);
      require(active.length === 1 && active[0].type === 1, active.length + ' are');
      return active[0].encoding + ' ' + active[0].language;
    }],
    ['A stream event can be asked for and given up', function () {
      function ignore() {}
      byId('video').addStreamEventListener('dvb://current/zapper', 'demo', ignore);
      byId('video').removeStreamEventListener('dvb://current/zapper', 'demo', ignore);
    }],
    ['A channel of one\'s own making carries its numbers', function (require) {
      var made = byId('video').createChannelObject(12, 1, 2, 3);
      var numbers = [made.idType, made.onid, made.tsid, made.sid].join(', ');
      require(numbers === '12, 1, 2, 3', 'got ' + numbers);
    }]
  ];
}());
