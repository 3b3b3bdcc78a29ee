// Reads a D-Bus description with the comments that gdbus-codegen takes for documentation: in front of each element
//
//     <!-- FileRequest:
//          @handle: one line about each argument
//          What it means. -->

import { readFileSync } from 'node:fs';

import { SaxesParser } from 'saxes';

const MEMBERS = ['method', 'signal', 'property'];

function commentOf(text, name) {
  const lines = text.trim().split('\n').map((line) => line.trim());
  if (lines.shift() !== `${name}:`) return null;
  const described = new Map();
  while (lines[0]?.startsWith('@')) {
    const [, argument, words] = /^@(\w+): (.*)$/.exec(lines[0]) ?? [];
    if (!argument) return null;
    described.set(argument, words);
    lines.shift();
  }
  return { described, doc: lines.join('\n').trim() };
}

// { name, doc, methods, signals }; of a member { name, doc, inputs, outputs }; of an argument { name, type, doc }.
export function readInterface(path) {
  const parser = new SaxesParser({ position: true });
  const found = { methods: [], signals: [] };
  let lastComment = '';
  let member = null;
  const fail = (reason) => { throw new Error(`${path}:${parser.line}: ${reason}`); };
  const take = (name) => commentOf(lastComment, name) ?? fail(`${name} has no comment that begins with "${name}:"`);

  parser.on('error', (error) => fail(error.message));
  parser.on('comment', (text) => { lastComment = text; });
  parser.on('opentag', ({ name: tag, attributes: { name, type, direction } }) => {
    if (tag === 'interface') {
      if (found.name) fail('expected exactly one interface');
      Object.assign(found, { name, doc: take(name).doc });
    } else if (MEMBERS.includes(tag)) {
      if (tag === 'property') fail('properties are not supported');
      member = { name, ...take(name), inputs: [], outputs: [], used: new Set() };
      if (!member.doc) fail(`${name}: the comment does not say what it means`);
      found[`${tag}s`].push(member);
    } else if (tag === 'arg') {
      const doc = member.described.get(name);
      if (!doc) fail(`${member.name}: the comment does not describe @${name}`);
      member.used.add(name);
      member[direction === 'in' ? 'inputs' : 'outputs'].push({ name, type, doc });
    }
    lastComment = '';
  });
  parser.on('closetag', ({ name: tag }) => {
    if (!MEMBERS.includes(tag)) return;
    const unused = [...member.described.keys()].find((name) => !member.used.has(name));
    if (unused) fail(`${member.name}: there is no argument @${unused}`);
  });
  parser.write(readFileSync(path, 'utf8')).close();
  if (!found.name) fail('expected exactly one interface');
  return found;
}
