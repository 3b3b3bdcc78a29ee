#!/usr/bin/env node
// Binding generator: turns the interface descriptions into ji<Name>.{h,cpp} and C<Name>Base.h, and the members table
// of the bootstrap script. Generated code converts, checks and forwards; it never decides anything.
//
// Usage: generate.mjs --idl DIR --out DIR [--members FILE]
//   --idl DIR       folder of the <Name>.idl files
//   --out DIR       where the C++ files go; a file whose content is unchanged is left alone
//   --members FILE  writes the names of the classes' attributes and methods as a script

import { mkdirSync, readFileSync, writeFileSync } from 'node:fs';
import { dirname, join } from 'node:path';
import { parseArgs } from 'node:util';

import { readInterfaces } from './interfaces.mjs';
import { baseHeader, bindingHeader, bindingSource, membersScript } from './emit.mjs';

function writeIfChanged(path, content) {
  try {
    if (readFileSync(path, 'utf8') === content) return;
  } catch {
    mkdirSync(dirname(path), { recursive: true });
  }
  writeFileSync(path, content);
}

// Null when there is an option that is not known.
function readOptions() {
  const text = { type: 'string' };
  try {
    return parseArgs({ options: { idl: text, out: text, members: text } }).values;
  } catch (error) {
    console.error(error.message);
    return null;
  }
}

function main() {
  const values = readOptions();
  if (!values?.idl || !values.out) {
    console.error('usage: generate.mjs --idl DIR --out DIR [--members FILE]');
    return 2;
  }
  let interfaces;
  try {
    interfaces = readInterfaces(values.idl);
  } catch (error) {
    console.error(error.message);
    return 1;
  }
  for (const [name, description] of interfaces) {
    writeIfChanged(join(values.out, `ji${name}.h`), bindingHeader(description));
    writeIfChanged(join(values.out, `ji${name}.cpp`), bindingSource(description));
    writeIfChanged(join(values.out, `C${name}Base.h`), baseHeader(description));
  }
  if (values.members) writeIfChanged(values.members, membersScript([...interfaces.values()]));
  return 0;
}

process.exitCode = main();
