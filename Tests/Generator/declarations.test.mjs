// The TypeScript declarations, as their npm package brings them: pages that are right pass the compiler, wrong ones do not.

import assert from 'node:assert/strict';
import { execFileSync } from 'node:child_process';
import { existsSync, mkdirSync, mkdtempSync, readFileSync, readdirSync, rmSync } from 'node:fs';
import { createRequire } from 'node:module';
import { tmpdir } from 'node:os';
import { join } from 'node:path';
import { after, describe, it } from 'node:test';
import { fileURLToPath } from 'node:url';

import ts from 'typescript';

const at = (path) => fileURLToPath(new URL(path, import.meta.url));

// The package, as a page's developer installs it.
const API = at('../../Docs/api');
const home = mkdtempSync(join(tmpdir(), 'hbbtv-types-'));
after(() => rmSync(home, { recursive: true }));
const [packed] = JSON.parse(execFileSync('npm', ['pack', '--json', '--pack-destination', home],
  { cwd: API, encoding: 'utf8', stdio: ['ignore', 'pipe', 'ignore'] }));
const INSTALLED = join(home, 'node_modules', packed.name);
mkdirSync(INSTALLED, { recursive: true });
execFileSync('tar', ['-xzf', join(home, packed.filename), '-C', INSTALLED, '--strip-components=1']);

const BESIDE_OTHERS = {
  strict: true, noEmit: true, types: [`${packed.name}/types`], lib: ['lib.es2020.d.ts', 'lib.dom.d.ts'], target: ts.ScriptTarget.ES2020,
  module: ts.ModuleKind.ES2020, moduleResolution: ts.ModuleResolutionKind.Bundler,
};
const OPTIONS = { ...BESIDE_OTHERS, types: [packed.name], allowJs: true };
// Plain JavaScript does not say of what type its own functions' parameters are.
const PLAIN = { ...OPTIONS, checkJs: true, noImplicitAny: false };

// What each wrong page is, and what the compiler says.
const WRONG = [
  ['an unknown constant', 'Keyset.PURPLE;', /'PURPLE' does not exist/],
  ['a constant that is changed', 'KeyEvent.VK_RED = 1;', /read-only/],
  ['an object made by hand', 'new Channel();', /not constructable/],
  ['a property that cannot be set', 'video.fullScreen = true;', /read-only/],
  ['a text for a number', 'av.seek("1000");', /'string' is not assignable/],
  ['an argument too few', 'av.play();', /Expected 1 arguments/],
  ['an argument too many', 'app.getOwnerApplication(document, 1);', /Expected 0-1 arguments/],
  ['no form of an overload', 'video.createChannelObject(0, 1, 2);',
    /'number' is not assignable to parameter of type 'string'/],
  ['another class', 'video.setChannel(video);', /is not assignable to parameter of type 'Channel'/],
  ['a result that may be null', 'app.getOwnerApplication().show();', /possibly 'null'/],
  ['a result that may be undefined', 'config.channelList.item(0).name;', /possibly 'undefined'/],
  ['a handler for other arguments', 'video.onChannelChangeError = (channel: hbbtv.Channel) => {};',
    /'number' is not assignable to type 'Channel'/],
  ['a handler that is no function', 'video.onPlayStateChange = "play()";', /'string' is not assignable/],
  ['an unknown event', 'app.addEventListener("HighMemory", () => {});', /'"HighMemory"' is not assignable/],
  ['a value that the event does not carry', 'element.addEventListener("PlayStateChange", (e) => e.channel);',
    /'channel' does not exist/],
  ['a listener that is no function', 'app.addEventListener("LowMemory", null);', /'null' is not assignable/],
  ['a member of another kind of element',
    'document.querySelector(\'object[type="video/mp4"]\')!.bindToCurrentChannel();',
    /'bindToCurrentChannel' does not exist/],
  ['the element\'s own width, which is a text', 'element.width = "640";', /'string' is not assignable/],
  ['an element of an id that nothing is said of', 'document.getElementById("video")!.bindToCurrentChannel();',
    /'bindToCurrentChannel' does not exist on type 'HTMLElement'/],
  ['an array\'s method on a list', 'config.channelList.forEach(() => {});', /'forEach' does not exist/],
  ['the result of an object that there is none of', 'oipfObjectFactory.createIMSObject().x;',
    /'x' does not exist on type 'never'/],
];
const GIVEN = `
declare const app: hbbtv.OipfApplicationManager; declare const video: hbbtv.OipfVideoBroadcast;
declare const av: hbbtv.OipfAVControl; declare const config: hbbtv.ChannelConfig;
declare const element: hbbtv.OipfElement<hbbtv.OipfVideoBroadcast>;
export {};
`;

// Files are read once for all programs: reading the DOM's declarations is what takes the time.
const texts = new Map(WRONG.map(([, text], i) => [at(`page/wrong-${i}.ts`), GIVEN + text]));
const parsed = new Map();
function compile(files, options) {
  const host = ts.createCompilerHost(options);
  const { getSourceFile, fileExists } = host;
  host.getCurrentDirectory = () => home;
  host.fileExists = (path) => texts.has(path) || fileExists.call(host, path);
  host.getSourceFile = (path, ...rest) => {
    if (!parsed.has(path)) {
      parsed.set(path, texts.has(path)
        ? ts.createSourceFile(path, texts.get(path), options.target) : getSourceFile.call(host, path, ...rest));
    }
    return parsed.get(path);
  };
  return ts.createProgram(files, options, host);
}

const messages = (diagnostics) => diagnostics.map(({ file, start, messageText }) => {
  const line = file ? file.getLineAndCharacterOfPosition(start).line + 1 : 'none';
  return `${file?.fileName} line ${line}: ${ts.flattenDiagnosticMessageText(messageText, '\n')}`;
});
const all = (program) => messages(ts.getPreEmitDiagnostics(program));

describe('the package', () => {
  it('holds the declarations, the pages and the licence, and nothing else', () => {
    const expected = readdirSync(API).filter((file) => /\.(ts|md)$|^(LICENSE|package\.json)$/.test(file));
    assert.deepEqual(packed.files.map(({ path }) => path).sort(), expected.sort());
    assert.ok(['hbbtv.d.ts', 'types.d.ts', 'README.md', 'LICENSE'].every((file) => expected.includes(file)));
  });
});

describe('the declarations', () => {
  const program = compile([at('page/page.d.ts'), at('page/page.ts'), ...texts.keys()], OPTIONS);
  const messagesOf = (path) => messages(ts.getPreEmitDiagnostics(program, program.getSourceFile(path)));

  it('let a page through that uses the main objects as they are, and finds them in each way that there is', () => {
    assert.deepEqual(messagesOf(at('page/page.ts')), []);
    assert.deepEqual(messagesOf(join(INSTALLED, 'hbbtv.d.ts')), []);
    assert.deepEqual(messagesOf(join(INSTALLED, 'types.d.ts')), []);
  });

  it('let one through that is plain JavaScript', () => {
    assert.deepEqual(all(compile([at('page/page.d.ts'), at('page/plain.js')], OPTIONS)), []);
  });

  it('go with a page\'s own names, and with other declarations of the globals', () => {
    assert.deepEqual(all(compile([at('page/others.ts')], BESIDE_OTHERS)), []);
  });

  for (const [i, [what, , message]] of WRONG.entries()) {
    it(`refuse ${what}`, () => {
      assert.match(messagesOf([...texts.keys()][i]).join('\n'), message);
    });
  }

  it('add to no interface of the DOM but where they say so', () => {
    const namesIn = (path) => [...readFileSync(path, 'utf8').matchAll(/^(?:declare )?(?:interface|type) (\w+)/gm)]
      .map(([, name]) => name);
    const dom = new Set(namesIn(createRequire(import.meta.url).resolve('typescript/lib/lib.dom.d.ts')));
    const ours = ['hbbtv.d.ts', 'types.d.ts'].flatMap((file) => namesIn(join(INSTALLED, file)));
    assert.deepEqual(ours.filter((name) => dom.has(name)), ['ParentNode', 'Document']);
  });
});

describe('the examples', () => {
  const EXAMPLES = at('../../Examples');
  const pages = readdirSync(EXAMPLES).filter((folder) => existsSync(join(EXAMPLES, folder, 'index.html')));

  // What an example would say of its ids in a declaration is what its markup says.
  function idsOf(markup) {
    const ids = [...markup.matchAll(/<(\w+)\b([^>]*?)\bid="([^"]+)"([^>]*)>/g)].map(([, tag, before, id, after]) => {
      const [, type] = /\btype="([^"]+)"/.exec(before + after) ?? [];
      return `"${id}": ${tag === 'object' ? `OipfElements["${type}"]` : `HTMLElementTagNameMap["${tag}"]`};`;
    });
    return `declare namespace hbbtv { interface ElementsById { ${ids.join(' ')} } }`;
  }

  for (const page of pages) {
    it(`use the objects of ${page} as they are declared`, () => {
      const markup = readFileSync(join(EXAMPLES, page, 'index.html'), 'utf8');
      const scripts = [...markup.matchAll(/<script src="([^"]+)"/g)].map(([, path]) => join(EXAMPLES, page, path));
      const ids = join(EXAMPLES, page, 'ids.d.ts');
      texts.set(ids, idsOf(markup));
      assert.ok(scripts.length > 1);
      assert.deepEqual(all(compile([ids, ...scripts], PLAIN)), []);
    });
  }
});
