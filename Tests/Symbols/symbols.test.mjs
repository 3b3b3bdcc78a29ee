// What the bundle shows to its host and asks of it: two exports, and only the agreed imports.
import assert from 'node:assert/strict';
import { execFileSync } from 'node:child_process';
import { readdirSync } from 'node:fs';
import path from 'node:path';
import { test } from 'node:test';
import { fileURLToPath } from 'node:url';

const root = path.join(path.dirname(fileURLToPath(import.meta.url)), '../..');
const build = path.resolve(root, process.env.HBBTV_BUILD_DIR ?? 'build/release');

const hostFunctions = [
  'WKBundleAddUserScript', 'WKBundleFrameGetJavaScriptContext', 'WKBundleFrameIsMainFrame',
  'WKBundlePageGetMainFrame', 'WKBundlePageSetPageLoaderClient', 'WKBundlePageSetUIClient',
  'WKBundlePostMessage', 'WKBundlePostSynchronousMessage', 'WKBundleScriptWorldNormalWorld',
  'WKBundleSetClient', 'WKRelease', 'WKStringCreateWithUTF8CString', 'WKStringGetMaximumUTF8CStringSize',
  'WKStringGetUTF8CString',
];
const agreed = [
  new RegExp(`^(${hostFunctions.join('|')})$`),
  /^(JS[A-Z]\w+|kJSClassDefinitionEmpty)$/, // JavaScriptCore
  /^g_\w+$/, // GLib, GObject, GIO
  /@(GLIBC|GLIBCXX|CXXABI|GCC)_[\w.]+$/, // the C and C++ runtimes; with them come the three below
  /^(__gmon_start__|_ITM_(de)?registerTMCloneTable)$/,
];

function bundle() {
  const found = readdirSync(build, { recursive: true }).find((file) => file.endsWith('hbbtv-injected-bundle.so'));
  assert.ok(found, `no hbbtv-injected-bundle.so under ${build}`);
  return path.join(build, found);
}

// [type letter, name with version] of each dynamic symbol.
function symbols(which) {
  const lines = execFileSync('nm', ['-D', which, bundle()], { encoding: 'utf8' }).trim().split('\n');
  return lines.map((line) => line.trim().split(/\s+/).slice(-2)).map(([, name]) => name).sort();
}

test('The bundle exports its two entries and nothing else', () => {
  assert.deepEqual(symbols('--defined-only'), ['WKBundleInitialize', 's_soupDsmccFileRequest']);
});

test('The bundle imports only what its host provides', () => {
  const imports = symbols('--undefined-only');
  assert.ok(imports.includes('WKBundleSetClient'), 'the list of imports reads wrong');
  assert.deepEqual(imports.filter((name) => !agreed.some((pattern) => pattern.test(name))), []);
});
