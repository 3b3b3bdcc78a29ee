// What pages find on their window, asked of the bootstrap script itself: it is run here without a television.

import { createContext, runInContext } from 'node:vm';

// Types of `object` elements as { mime, profile, className, visual }, and the methods of oipfObjectFactory as
// { name, supported }.
export function readWindow(script) {
  // No HbbTV token in the user agent, so that the script leaves the document alone.
  const window = { removeEventListener() {} };
  window.top = window;
  const context = createContext({
    window, navigator: { userAgent: '' }, console: { log() {} },
  });
  runInContext(script, context, { filename: 'bootstrap script' });
  // A type that no version of HbbTV offers is as good as absent.
  const plugins = context._hbbtv_vantrel_plugins;
  const isOffered = ({ profile }) => context._hbbtv_vantrel_checkProfile(profile, '9.9.9');
  const refuse = context._hbbtv_vantrel_unsupportedCallback;
  return {
    elements: plugins.flatMap(({ members, visual, ...plugin }) => (plugin.profiles ?? [plugin]).filter(isOffered)
      .flatMap(({ profile, mimes, mime }) => (mimes ?? [mime])
        .map((each) => ({ mime: each, profile, className: members, visual })))),
    factory: Object.entries(window.oipfObjectFactory).map(([name, method]) => ({ name, supported: method !== refuse })),
  };
}
