// What the bundle shows to its host and asks of it: two exports, and only the agreed imports.
import assert from 'node:assert/strict';
import { execFileSync } from 'node:child_process';
import { mkdtempSync, readdirSync, rmSync } from 'node:fs';
import { tmpdir } from 'node:os';
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

test('With the platform\'s own WebKit headers it asks for the same functions by the same names', (t) => {
  const place = mkdtempSync(path.join(tmpdir(), 'hbbtv-symbols-'));
  t.after(() => rmSync(place, { recursive: true, force: true }));
  const run = (program, ...words) => execFileSync(program, words, { cwd: place, encoding: 'utf8' });
  // Of a bundle that is built as a whole, the objects have no symbols yet.
  run('cmake', '-S', root, '-B', place, '--preset', 'release', '-DHBBTV_DESKTOP_HOST=OFF', '-DHBBTV_PLATFORM_WEBKIT=ON',
    '-DHBBTV_SMALL_BUNDLE=OFF', `-DHBBTV_WEBKIT_INCLUDE=${path.join(root, 'Tests/Symbols')}`);
  const objects = ['InjectedBundle', 'PageHandlers']
    .map((name) => `InjectedBundle/CMakeFiles/bundle_runtime.dir/Src/${name}.cpp.o`);
  run('ninja', ...objects);
  const named = run('readelf', '--syms', '--wide', ...objects).split('\n').map((line) => line.trim().split(/\s+/))
    .filter((words) => /WK[A-Z]/.test(words[7]) && words[4] === 'GLOBAL');
  const defined = named.filter(([, , , , , , section, name]) => section !== 'UND' && !name.startsWith('_Z'));
  assert.deepEqual(defined.map((words) => [words[7], words[5]]), [['WKBundleInitialize', 'DEFAULT']]);
  const asked = named.filter((words) => words[6] === 'UND').map((words) => words[7]).filter((name) => !name.startsWith('_Z'));
  assert.deepEqual([...new Set(asked)].sort(), hostFunctions);
});
