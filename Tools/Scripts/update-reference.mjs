#!/usr/bin/env node
// Writes the generated references anew: Docs/api from the interface descriptions and the bootstrap script, Docs/dbus
// from the D-Bus descriptions, Docs/scenario.md from the schema beside it. Pages that nothing generates any more are deleted.
//
//     npm run reference

import { mkdirSync, readdirSync, rmSync, writeFileSync } from 'node:fs';
import { join } from 'node:path';
import { fileURLToPath } from 'node:url';

import { dbusReference } from '../../gen/dbus/reference/reference.mjs';
import { apiReference } from '../../InjectedBundle/gen/reference/reference.mjs';
import { scenarioReference } from './lib/scenario.mjs';

const docs = fileURLToPath(new URL('../../Docs', import.meta.url));

function main() {
  for (const [name, make] of [['api', apiReference], ['dbus', dbusReference]]) {
    let files;
    try {
      files = make();
    } catch (error) {
      console.error(error.message);
      return 1;
    }
    const folder = join(docs, name);
    mkdirSync(folder, { recursive: true });
    for (const old of readdirSync(folder).filter((file) => !files.has(file))) rmSync(join(folder, old));
    for (const [file, text] of files) writeFileSync(join(folder, file), text);
  }
  writeFileSync(join(docs, 'scenario.md'), scenarioReference());
  return 0;
}

process.exitCode = main();
