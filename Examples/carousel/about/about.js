// The second page leads back by the link that it shows.
(function () {
  'use strict';

  var link = document.getElementById('back');
  document.getElementById('address').textContent = decodeURI(location.href);
  document.addEventListener('keydown', function (event) {
    var isBack = [13, 461, window.KeyEvent && KeyEvent.VK_BACK].indexOf(event.keyCode) >= 0;
    if (!isBack) return;
    event.preventDefault();
    location.href = link.href;
  }, false);
}());
