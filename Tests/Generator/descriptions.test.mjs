// The descriptions of the real classes: all are accepted, and their numbers are the ones that pages rely on.

import assert from 'node:assert/strict';
import { it } from 'node:test';
import { fileURLToPath } from 'node:url';

import { readInterfaces } from '../../InjectedBundle/gen/interfaces.mjs';

const interfaces = readInterfaces(fileURLToPath(new URL('../../InjectedBundle/idl', import.meta.url)));
const constantsOf = (name) => interfaces.get(name).constants;
const valuesOf = (name) => Object.fromEntries(constantsOf(name).map((constant) => [constant.name, constant.value]));

it('There are 33 classes, ten of them with constants', () => {
  assert.equal(interfaces.size, 33);
  assert.deepEqual([...interfaces.values()].filter(({ constants }) => constants.length).map(({ name }) => name), [
    'Channel', 'KeyEvent', 'Keyset', 'MetadataSearch', 'OipfAVControl', 'OipfVideoBroadcast', 'Programme', 'Query',
    'SearchResults', 'StreamEvent',
  ]);
});

it('Only the four classes that pages find on the window are marked as global', () => {
  const marked = (mark) => [...interfaces.values()].filter((each) => each[mark]).map(({ name }) => name);
  assert.deepEqual(marked('globalConstructor'), ['Channel', 'KeyEvent', 'Keyset']);
  assert.deepEqual(marked('globalInstance'), ['PrivateObjectFactory']);
});

it('No two key codes are alike, and the runs of consecutive ones have no gap', () => {
  const codes = valuesOf('KeyEvent');
  const names = Object.keys(codes);
  assert.equal(names.length, 170);
  assert.equal(new Set(Object.values(codes)).size, 170);

  const run = (first, count, value) => names.slice(names.indexOf(first), names.indexOf(first) + count)
    .forEach((name, i) => assert.equal(codes[name], value + i, name));
  for (const c of '0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZ') assert.equal(codes[`VK_${c}`], c.charCodeAt(0));
  run('VK_NUMPAD0', 10, 96);
  run('VK_F1', 12, 112);
  run('VK_RED', 46, 403);
  assert.equal(codes.VK_VOLUME_DOWN, 448);
  run('VK_MUTE', 15, 449);
  assert.equal(codes.VK_PLAY_PAUSE, 463);
});

it('Key groups are the bits of a mask, from the first to the eleventh', () => {
  assert.deepEqual(constantsOf('Keyset').map(({ value }) => value), Array.from({ length: 11 }, (_, bit) => 2 ** bit));
});

it('ISDB-C and ISDB-S channels share one id type, the only two that do', () => {
  const types = constantsOf('Channel').filter(({ name }) => name.startsWith('ID_'));
  const { ID_ISDB_C, ID_ISDB_S, ID_ISDB_T } = valuesOf('Channel');
  assert.deepEqual([ID_ISDB_C, ID_ISDB_S, ID_ISDB_T], [20, 20, 21]);
  assert.equal(new Set(types.map(({ value }) => value)).size, types.length - 1);
});

it('Every collection can be read by index', () => {
  const collections = [...interfaces.keys()].filter((name) => /Collection$|List$|Results$/.test(name));
  assert.equal(collections.length, 7);
  for (const name of collections) assert.equal(interfaces.get(name).getter?.name, 'item', name);
});
