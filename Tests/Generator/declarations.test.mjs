// The TypeScript declarations of the reference: pages that are right pass the compiler, wrong ones do not.

import assert from 'node:assert/strict';
import { readFileSync } from 'node:fs';
import { createRequire } from 'node:module';
import { describe, it } from 'node:test';
import { fileURLToPath } from 'node:url';

import ts from 'typescript';

const at = (path) => fileURLToPath(new URL(path, import.meta.url));
const DECLARATIONS = at('../../Docs/api/hbbtv.d.ts');
const OPTIONS = {
  strict: true, noEmit: true, types: [], lib: ['lib.es2020.d.ts', 'lib.dom.d.ts'], target: ts.ScriptTarget.ES2020,
};

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
  ['a handler for other arguments', 'video.onChannelChangeError = (channel: Channel) => {};',
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
  ['an array\'s method on a list', 'config.channelList.forEach(() => {});', /'forEach' does not exist/],
  ['the result of an object that there is none of', 'oipfObjectFactory.createIMSObject().x;',
    /'x' does not exist on type 'never'/],
];
const GIVEN = `
declare const app: OipfApplicationManager; declare const video: OipfVideoBroadcast; declare const av: OipfAVControl;
declare const config: ChannelConfig; declare const element: OipfElement<OipfVideoBroadcast>;
export {};
`;

// All wrong pages are compiled in one go: reading the DOM's declarations is what takes the time.
const sources = new Map(WRONG.map(([, text], i) => [at(`page/wrong-${i}.ts`), GIVEN + text]));
const host = ts.createCompilerHost(OPTIONS);
const { getSourceFile, fileExists } = host;
host.fileExists = (path) => sources.has(path) || fileExists.call(host, path);
host.getSourceFile = (path, ...rest) => (sources.has(path)
  ? ts.createSourceFile(path, sources.get(path), OPTIONS.target) : getSourceFile.call(host, path, ...rest));
const program = ts.createProgram([DECLARATIONS, at('page/page.ts'), ...sources.keys()], OPTIONS, host);

const messagesOf = (path) => ts.getPreEmitDiagnostics(program, program.getSourceFile(path))
  .map(({ file, start, messageText }) => {
    const line = file ? file.getLineAndCharacterOfPosition(start).line + 1 : 'none';
    return `line ${line}: ${ts.flattenDiagnosticMessageText(messageText, '\n')}`;
  });

describe('the declarations', () => {
  it('compile', () => assert.deepEqual(messagesOf(DECLARATIONS), []));

  it('let a page through that uses the main objects as they are', () => {
    assert.deepEqual(messagesOf(at('page/page.ts')), []);
  });

  for (const [i, [what, , message]] of WRONG.entries()) {
    it(`refuse ${what}`, () => {
      assert.match(messagesOf([...sources.keys()][i]).join('\n'), message);
    });
  }

  it('add to no interface of the DOM but where they say so', () => {
    const namesIn = (path) => [...readFileSync(path, 'utf8').matchAll(/^(?:declare )?(?:interface|type) (\w+)/gm)]
      .map(([, name]) => name);
    const dom = new Set(namesIn(createRequire(import.meta.url).resolve('typescript/lib/lib.dom.d.ts')));
    assert.deepEqual(namesIn(DECLARATIONS).filter((name) => dom.has(name)), ['ParentNode']);
  });
});
