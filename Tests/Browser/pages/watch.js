// First script of every page that runs over the real bundle: keeps what goes wrong in the page, and tells
// which globals were there before any script of the page.
window.failures = [];
window.addEventListener("error", event => window.failures.push(event.message));
window.globals = {
  PrivateObjectFactory: typeof window.PrivateObjectFactory,
  KeyEvent: window.KeyEvent && window.KeyEvent.VK_RED,
  Keyset: window.Keyset && window.Keyset.RED,
  Channel: typeof window.Channel,
  debug: typeof window.debug,
  oipfObjectFactory: typeof window.oipfObjectFactory,
  foreign: Object.keys(window)
    .filter(name => /hbbtv|vantrel|oipf/i.test(name) && !/^_hbbtv_vantrel_/.test(name))
};
