// The second page leads back by the link that it shows.
(function () {
  'use strict';

  function goBack() {
    location.href = document.getElementById('back').href;
  }

  document.getElementById('address').textContent = decodeURI(location.href);
  remote.listen(function (name) {
    return name === 'VK_ENTER' || name === 'VK_BACK' ? goBack : null;
  });
}());
