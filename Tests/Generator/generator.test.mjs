// What the binding generator writes and what it refuses.
//
// Each folder of cases/ holds the description of one tiny class, Thing, and expected.txt. For the case "empty" that is
// the whole output, for every other case what its feature changes in the output of "empty".
//
//   node Tests/Generator/generator.test.mjs            compares
//   node Tests/Generator/generator.test.mjs --update   writes every expected.txt anew; read the difference before
//                                                      committing it

import assert from 'node:assert/strict';
import { spawnSync } from 'node:child_process';
import {
  existsSync, mkdirSync, mkdtempSync, readFileSync, readdirSync, rmSync, statSync, utimesSync, writeFileSync,
} from 'node:fs';
import { tmpdir } from 'node:os';
import { join } from 'node:path';
import { after, describe, it } from 'node:test';
import { fileURLToPath } from 'node:url';

const HERE = fileURLToPath(new URL('.', import.meta.url));
const CASES = join(HERE, 'cases');
const GENERATOR = join(HERE, '../../InjectedBundle/gen/generate.mjs');
const OUTPUTS = ['CThingBase.h', 'jiThing.h', 'jiThing.cpp', 'members.js'];
const UPDATE = process.argv.includes('--update');

const scratch = mkdtempSync(join(tmpdir(), 'generator-'));
after(() => rmSync(scratch, { recursive: true }));
const makeFolder = () => mkdtempSync(join(scratch, 'run-'));

const generate = (idl, out) => spawnSync(process.execPath,
  [GENERATOR, '--idl', idl, '--out', out, '--members', join(out, 'members.js')], { encoding: 'utf8' });

// Only the lines that differ, so that the result does not depend on the lines around them.
function changedLines(before, after) {
  const files = [before, after].map((text) => {
    const file = join(makeFolder(), 'text');
    writeFileSync(file, text);
    return file;
  });
  const { status, stdout, stderr } = spawnSync('diff',
    ['--old-line-format=-%L', '--new-line-format=+%L', '--unchanged-line-format=', ...files], { encoding: 'utf8' });
  assert.ok([0, 1].includes(status), stderr);
  return stdout;
}

function outputOf(name) {
  const out = makeFolder();
  const { status, stderr } = generate(join(CASES, name), out);
  assert.equal(status, 0, stderr);
  return Object.fromEntries(OUTPUTS.map((file) => [file, readFileSync(join(out, file), 'utf8')]));
}

const frame = outputOf('empty');

function reportOf(name) {
  const output = name === 'empty' ? frame : outputOf(name);
  return OUTPUTS
    .map((file) => [file, name === 'empty' ? output[file] : changedLines(frame[file], output[file])])
    .filter(([, text]) => text)
    .map(([file, text]) => `==== ${file}\n${text}`)
    .join('\n');
}

describe('the generated code', () => {
  for (const name of readdirSync(CASES)) {
    it(`is as expected for: ${name}`, () => {
      const file = join(CASES, name, 'expected.txt');
      const report = reportOf(name);
      if (UPDATE) writeFileSync(file, report);
      assert.equal(report, existsSync(file) ? readFileSync(file, 'utf8') : '');
    });
  }

  it('is not written again when nothing changed, so that nothing is compiled again', () => {
    const out = makeFolder();
    const file = join(out, 'jiThing.cpp');
    assert.equal(generate(join(CASES, 'empty'), out).status, 0);
    utimesSync(file, 1, 1);
    assert.equal(generate(join(CASES, 'empty'), out).status, 0);
    assert.equal(statSync(file).mtimeMs, 1000);
    assert.equal(generate(join(CASES, 'attribute'), out).status, 0);
    assert.notEqual(statSync(file).mtimeMs, 1000);
  });
});

// A description whose faulty line is the fifth.
const thing = (line, rest = '') =>
  `/** A thing. */\ninterface Thing {\n  // A member\n  /** Text. */\n  ${line}\n};\n${rest}`;
const LISTENS = 'Thing includes EventListeners;\n';
const MIXIN = readFileSync(join(CASES, 'event-handler/EventListeners.idl'), 'utf8');

const REFUSED = [
  ['a type that nobody declares', thing('attribute Nothing size;'), 5, /unknown type Nothing of size/],
  ['a result type that nobody declares', thing('Nothing find();'), 5, /unknown type Nothing of find/],
  ['an argument type that nobody declares', thing('undefined find(Nothing name);'), 5, /unknown type Nothing of name/],
  ['a union type', thing('attribute (long or DOMString) size;'), 5, /type of size is not supported/],
  ['an unknown extended attribute', thing('[Fast] attribute long size;'), 5, /unknown extended attribute \[Fast\]/],
  ['an extended attribute in the wrong place', thing('[CustomGetter] undefined find();'), 5,
    /unknown extended attribute \[CustomGetter\]/],
  ['a method whose callback every class has', thing('any getProperty(DOMString name);'), 5,
    /getProperty is the name of a callback/],
  ['a handler on a class without listeners', thing('attribute EventHandler onMove;'), 5,
    /only a class that includes EventListeners has handlers/],
  ['a member declared twice', thing('attribute long size; /** Again. */ attribute long size;'), 5,
    /size is declared twice/],
  ['a member without doc comment', '/** A thing. */\ninterface Thing {\n  // Size.\n  attribute long size;\n};\n',
    4, /size has no doc comment/],
  ['a class without doc comment', 'interface Thing {\n};\n', 1, /Thing has no doc comment/],
  ['a class in a file of another name', '/** A thing. */\ninterface Other {};\n', 2, /must be in Other\.idl/],
  ['two classes in one file', '/** A thing. */\ninterface Thing {};\n/** Another. */\ninterface Other {};\n', null,
    /exactly one interface/],
  ['a base class', '/** A thing. */\ninterface Thing : Other {};\n', 2, /inheritance is not supported/],
  ['an ignored argument that is required', thing('undefined find([Ignored] any name);'), 5, /must be optional/],
  ['array notation without a length', thing('getter DOMString item(unsigned long index);'), null,
    /needs a plain unsigned long length/],
  ['array notation that is custom', thing('[Custom] getter DOMString item(unsigned long index);'), 5,
    /cannot be custom/],
  ['a read-only handler', thing('readonly attribute EventHandler onMove;', LISTENS), 5,
    /plain "attribute EventHandler"/],
  ['a custom handler', thing('[CustomSetter] attribute EventHandler onMove;', LISTENS), 5,
    /plain "attribute EventHandler"/],
  ['a setter of a read-only attribute', thing('[CustomSetter] readonly attribute long size;'), 5, /has no setter/],
  ['a static member', thing('static attribute long size;'), 5, /static is not supported/],
  ['a default value', thing('undefined find(optional long count = 3);'), 5, /default values are not supported/],
  ['an overload that is never reached', thing('undefined find(long a); /** Again. */ undefined find(long b);'), 5,
    /declared twice with the same arguments/],
  ['an overload beside a custom operation', thing('[Custom] any find(any a); /** Again. */ any find(any a, any b);'), 5,
    /declared once/],
  ['a constant that is no integer', thing('const long SIZE = 1.5;'), 5, /whole number of 32 bits/],
  ['a constant that does not fit', thing('const long SIZE = 0x80000000;'), 5, /whole number of 32 bits/],
  ['a constructor and an instance at once',
    '/** A thing. */\n[GlobalConstructor, GlobalInstance]\ninterface Thing {};\n', 3, /either the constructor or an instance/],
  ['a partial class', '/** A thing. */\npartial interface Thing {};\n', 2, /partial interfaces are not supported/],
  ['a comment whose list of arguments is no list',
    thing('/** Text. @arguments long a */ attribute EventHandler onMove;', LISTENS), 5,
    /onMove: "@arguments long a": /],
  ['a comment whose list of arguments names an unknown type',
    thing('/** Text. @arguments (Nothing a) */ [Custom] any find(any a);'), 5,
    /unknown type Nothing of a/],
  ['a list of arguments where the declaration has one',
    thing('/** Text. @arguments (long a) */ any find(any a);'), 5,
    /belongs to handlers and custom operations/],
  ['another mixin', '/** A thing. */\ninterface Thing {};\nThing includes Others;\n', 3, /may stand beside/],
  ['what is no Web IDL', thing('attribute long;'), 5, /./],
];

describe('the generator', () => {
  for (const [fault, text, line, reason] of REFUSED) {
    it(`refuses ${fault} with file, line and reason`, () => {
      const idl = makeFolder();
      const out = join(makeFolder(), 'out');
      const file = join(idl, 'Thing.idl');
      writeFileSync(file, text);
      writeFileSync(join(idl, 'EventListeners.idl'), MIXIN);
      const { status, stderr } = generate(idl, out);
      assert.equal(status, 1, stderr);
      assert.ok(stderr.startsWith(`${file}:${line ? `${line}:` : ''}`), stderr);
      assert.match(stderr, /^[^:]+:\d+: /);
      assert.match(stderr, reason);
      assert.doesNotMatch(stderr, /\n {4}at /, 'a stack trace is no reason');
      assert.ok(!existsSync(out), 'nothing is written');
    });
  }

  it('refuses listener operations that the runtime does not serve', () => {
    for (const [right, wrong] of [['any listener', 'DOMString listener'], [', [Ignored] optional any useCapture', '']]) {
      const idl = makeFolder();
      writeFileSync(join(idl, 'Thing.idl'), thing('attribute long size;', LISTENS));
      writeFileSync(join(idl, 'EventListeners.idl'), MIXIN.replace(right, wrong));
      const { status, stderr } = generate(idl, makeFolder());
      assert.equal(status, 1, stderr);
      assert.match(stderr, /EventListeners\.idl:\d+: addEventListener: EventListeners has operations of/);
    }
  });

  it('refuses a folder without descriptions, or one that is not there', () => {
    const empty = join(makeFolder(), 'empty');
    for (const make of [() => {}, () => mkdirSync(empty)]) {
      make();
      const { status, stderr } = generate(empty, makeFolder());
      assert.equal(status, 1);
      assert.ok(stderr.includes(empty), stderr);
      assert.doesNotMatch(stderr, /\n {4}at /);
    }
  });

  it('prints its usage when an option is missing or unknown', () => {
    for (const wrong of [[], ['--fast']]) {
      const { status, stderr } = spawnSync(process.execPath, [GENERATOR, ...wrong], { encoding: 'utf8' });
      assert.equal(status, 2, stderr);
      assert.match(stderr, /usage: /);
    }
  });
});
