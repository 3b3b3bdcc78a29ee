// The references in Docs: as the descriptions would make them now, without a dead link, without a gap.

import assert from 'node:assert/strict';
import { mkdtempSync, readFileSync, readdirSync, rmSync, writeFileSync } from 'node:fs';
import { tmpdir } from 'node:os';
import { dirname, join } from 'node:path';
import { after, describe, it } from 'node:test';
import { fileURLToPath } from 'node:url';

import { readInterface } from '../../gen/dbus/reference/interfaces.mjs';
import { dbusReference } from '../../gen/dbus/reference/reference.mjs';
import { readInterfaces } from '../../InjectedBundle/gen/interfaces.mjs';
import { apiReference } from '../../InjectedBundle/gen/reference/reference.mjs';
import {
  MEANINGS, attributeType, eventOf, isHandler, listsOf, resultType,
} from '../../InjectedBundle/gen/reference/types.mjs';

const at = (path) => fileURLToPath(new URL(path, import.meta.url));
const interfaces = [...readInterfaces(at('../../InjectedBundle/idl')).values()];
const scratch = mkdtempSync(join(tmpdir(), 'reference-'));
after(() => rmSync(scratch, { recursive: true }));

// As GitHub makes them.
const anchorsOf = (markdown) => [...markdown.matchAll(/^#+ (.*)$/gm)]
  .map(([, title]) => title.toLowerCase().replace(/[^\w\- ]/g, '').replaceAll(' ', '-'));

for (const [name, make] of [['api', apiReference], ['dbus', dbusReference]]) {
  describe(`Docs/${name}`, () => {
    const folder = at(`../../Docs/${name}`);
    const files = make();

    it('is what the descriptions say now', () => {
      const stale = [...files].filter(([file, text]) =>
        !readdirSync(folder).includes(file) || readFileSync(join(folder, file), 'utf8') !== text).map(([file]) => file);
      const left = readdirSync(folder).filter((file) => !files.has(file));
      assert.deepEqual([...stale, ...left], [], 'these files are out of date; write them anew with: npm run reference');
    });

    it('leads nowhere that does not exist', () => {
      for (const [file, text] of files) {
        for (const [, link] of file.endsWith('.md') ? text.matchAll(/\]\(([^)]+)\)/g) : []) {
          const [path, anchor] = link.split('#');
          const target = readFileSync(path ? join(folder, dirname(file), path) : join(folder, file), 'utf8');
          assert.ok(!anchor || anchorsOf(target).includes(anchor), `${file}: ${link}`);
        }
      }
    });
  });
}

describe('The doc comments', () => {
  it('say with what each handler is called', () => {
    const silent = interfaces.flatMap(({ name, attributes }) => attributes.filter(isHandler)
      .filter((handler) => !eventOf(handler).arguments && !/^Never called\b/.test(handler.doc))
      .map((handler) => `${name}.${handler.name}`));
    assert.deepEqual(silent, [], 'give "@arguments (...)", or say "without arguments" or "Never called"');
  });

  it('say of each object that may be absent when it is, or what is thrown', () => {
    const silent = interfaces.flatMap(({ name, attributes, operations }) => [
      ...attributes.filter((each) => each.type.nullable && attributeType(name, each).length === 1),
      ...operations.flatMap(({ forms }) =>
        forms.filter((form) => form.result.nullable && resultType(name, form, forms).length === 1)),
    ].filter(({ doc }) => !/\bthrows\b/i.test(doc)).map((member) => `${name}.${member.name}`));
    assert.deepEqual(silent, []);
  });

  it('are short enough to read and end as sentences do', () => {
    const all = interfaces.flatMap((each) => [each, ...each.constants, ...each.attributes,
      ...each.operations.flatMap(({ forms }) => forms)].map(({ name, doc }) => [`${each.name} ${name}`, doc]));
    for (const [name, doc] of all) assert.match(doc, /^["`A-Z].{2,698}\.$/, name);
  });

  it('leave no entry over in the table of what "any" stands for', () => {
    const keys = new Set(interfaces.flatMap(({ name, attributes, operations, listeners }) => [
      ...attributes.flatMap((each) => [`${name}.${each.name}`,
        ...each.calls.flat().map((argument) => `${name}.${each.name}.${argument.name}`)]),
      ...[[name, operations], ['EventListeners', listeners]].flatMap(([owner, list]) => list.flatMap(({ forms }) =>
        forms.flatMap((form) => [`${owner}.${form.name}`,
          ...listsOf(form).flat().map((argument) => `${owner}.${form.name}.${argument.name}`)]))),
    ]));
    assert.deepEqual(Object.keys(MEANINGS).filter((key) => !keys.has(key)), []);
  });
});

const THING = `<node>
  <!-- org.Thing:
       A thing. -->
  <interface name="org.Thing">
    <!-- Find:
         @name: What to look for.
         @found: Whether it is there.
         Looks for something. -->
    <method name="Find">
      <arg name="name" type="s" direction="in"/>
      <arg name="found" type="b" direction="out"/>
    </method>
    <!-- Lost:
         @name: What is lost.
         Something is lost. -->
    <signal name="Lost">
      <arg name="name" type="s"/>
    </signal>
  </interface>
</node>
`;

describe('A D-Bus description', () => {
  const read = (text) => {
    writeFileSync(join(scratch, 'org.Thing.xml'), text);
    return readInterface(join(scratch, 'org.Thing.xml'));
  };

  it('is read with its comments', () => {
    const { name, doc, methods: [find], signals: [lost] } = read(THING);
    assert.deepEqual([name, doc, find.name, find.doc], ['org.Thing', 'A thing.', 'Find', 'Looks for something.']);
    assert.deepEqual(find.inputs, [{ name: 'name', type: 's', doc: 'What to look for.' }]);
    assert.deepEqual(find.outputs, [{ name: 'found', type: 'b', doc: 'Whether it is there.' }]);
    assert.deepEqual([lost.doc, lost.outputs.length], ['Something is lost.', 1]);
  });

  for (const [fault, from, to, reason] of [
    ['an interface without a comment', 'org.Thing:\n', 'Thing:\n', /:4: org\.Thing has no comment/],
    ['a method without a comment', 'Find:', 'Seek:', /:9: Find has no comment that begins with "Find:"/],
    ['a method whose comment says nothing', '         Looks for something. -->', '    -->',
      /:9: Find: .* what it means/],
    ['an argument without words', '         @found: Whether it is there.\n', '', /:10: Find: .* describe @found/],
    ['words about an argument that is not there', '@name: What is lost.', '@name: Lost.\n@place: Where.',
      /there is no argument @place/],
    ['a comment that belongs to another element', '<signal', '<method name="Other"/><signal', /Other has no comment/],
    ['a property', '<signal name="Lost">', '<property name="Lost" type="s" access="read"/><signal name="Lost">',
      /properties are not supported/],
    ['what is no XML', '</node>', '', /unclosed tag/],
  ]) {
    it(`is refused for ${fault}`, () => assert.throws(() => read(THING.replace(from, to)), reason));
  }
});
