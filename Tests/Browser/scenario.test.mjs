// The description of scenarios against the receiver that reads them.
import assert from 'node:assert/strict';
import { spawnSync } from 'node:child_process';
import { mkdtempSync, readFileSync, rmSync, writeFileSync } from 'node:fs';
import { tmpdir } from 'node:os';
import { join } from 'node:path';
import { after, describe, it } from 'node:test';

import Ajv from 'ajv';

import { scenarioReference } from '../../Tools/Scripts/lib/scenario.mjs';
import { receiver, sourceRoot } from './Harness/programs.mjs';

const read = (path) => readFileSync(join(sourceRoot, path), 'utf8');
const schema = JSON.parse(read('Docs/scenario.schema.json'));
const scratch = mkdtempSync(join(tmpdir(), 'scenario-'));
after(() => rmSync(scratch, { recursive: true }));

const resolved = (node) => (node.$ref ? schema.$defs[node.$ref.split('/').at(-1)] : node);

// Why the receiver refuses a scenario. There is no bus for one that it takes.
function refusal(scenario) {
  const file = join(scratch, 'scenario.json');
  writeFileSync(file, JSON.stringify(scenario));
  return spawnSync(receiver(), ['--scenario', file],
    { encoding: 'utf8', env: { DBUS_SESSION_BUS_ADDRESS: 'unix:path=/nowhere' } }).stderr;
}

// A value that a description takes, with all that it requires.
function sample(node) {
  const { type, required = [], properties, enum: choices, minimum } = node;
  if (choices) return choices[0];
  if ('const' in node) return node.const;
  if (type === 'object') return Object.fromEntries(required.map((key) => [key, sample(resolved(properties[key]))]));
  return { string: '0000', integer: minimum, boolean: false, array: [] }[type];
}

// Each object of a scenario: its description, and a scenario with `value` in its place.
function* objects(given, wrap = (value) => value) {
  const node = resolved(given);
  for (const variant of node.oneOf?.filter(({ type }) => type === 'object') ?? []) yield* objects(variant, wrap);
  if (node.type === 'array') yield* objects(node.items, (value) => wrap([value]));
  if (node.type !== 'object') return;
  yield [node, wrap];
  for (const [key, member] of Object.entries(node.properties))
    yield* objects(member, (value) => wrap({ ...sample(node), [key]: value }));
}

const WANTED = { string: 'must be a text', boolean: 'must be true or false', array: 'must be a list', object: 'must be an object' };

describe('The description of scenarios', () => {
  it('has the keys that the receiver has, with their types, bounds and choices', () => {
    let count = 0;
    for (const [node, wrap] of objects(schema)) {
      const known = /unknown key; there are (.*)/.exec(refusal(wrap({ ...sample(node), '?': 0 })))[1].split(', ');
      assert.deepEqual(known.sort(), Object.keys(node.properties).sort(), node.description);
      for (const key of node.required ?? []) {
        const { [key]: _, ...rest } = sample(node);
        assert.match(refusal(wrap(rest)), new RegExp(`the key "${key}" is missing`));
      }
      for (const [key, given] of Object.entries(node.properties)) {
        const member = resolved(given);
        const wanted = member.enum ? `must be one of ${member.enum.map((each) => JSON.stringify(each)).join(', ')}`
          : member.type === 'integer' ? `must be a whole number from ${member.minimum} to ${member.maximum},`
            : WANTED[member.type ?? 'string'];
        const wrong = member.enum || 'const' in member ? '?' : null;
        const told = refusal(wrap({ ...sample(node), [key]: wrong }));
        assert.ok(told.includes('const' in member ? 'must be one of' : wanted), `${key}: ${told} instead of ${wanted}`);
        count += 1;
      }
    }
    assert.ok(count > 100, `${count} keys`);
  });

  it('takes the scenarios that there are, and refuses what the receiver refuses', () => {
    const validate = new Ajv({ strictTypes: false }).compile(schema);
    const first = /```json\n([^]*?)```/.exec(read('Docs/application-developers-guide.md'))[1];
    for (const text of [read('Examples/scenarios/default.json'), first]) {
      assert.ok(validate(JSON.parse(text)), JSON.stringify(validate.errors));
      if (text === first) assert.match(refusal(JSON.parse(text)), /there is no session bus/);
    }
    for (const wrong of [{ chanels: [] }, { keys: { mask: 4096 } }, { media: { items: [{ url: '' }] } },
      { stream_events: [{ url: '*', name: 'e', text: [] }] }]) {
      assert.ok(!validate(wrong) && !/no session bus/.test(refusal(wrong)), JSON.stringify(wrong));
    }
  });

  it('is what the document says', () => {
    assert.equal(read('Docs/scenario.md'), scenarioReference(), 'write it anew with: npm run reference');
  });
});
