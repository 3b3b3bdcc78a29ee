// @ts-check
// Plain JavaScript, with as much said of elements as the compiler's strictest checks need.

/** @type {hbbtv.OipfElement<hbbtv.OipfVideoBroadcast> | null} */
var video = document.getElementById('video');
if (video) {
  video.onPlayStateChange = function (state) { if (state === 2) debug(this.width + state); };
  video.bindToCurrentChannel();
}
var film = /** @type {hbbtv.OipfElement<hbbtv.OipfAVControl>} */ (document.createElement('object'));
film.type = 'video/mp4';
film.play(1);
/** @type {hbbtv.OipfElements["video/mp4"] | null} */
var found = document.querySelector('#film');
if (found) found.seek(Keyset.RED);
document.getElementById('declared').getOwnerApplication(document)?.show();
var manager = document.querySelector('object[type="application/oipfSearchManager"]');
if (manager) manager.createSearch(1)?.result.getResults(0, 10);
