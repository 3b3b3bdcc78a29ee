#!/usr/bin/env node
// Writes the tables of THIRD_PARTY_NOTICES.md, down to what is needed only to build and test, as a CycloneDX list.
//
//     Packaging/make-sbom.mjs NOTICES VERSION OUTPUT
//
// A version in backquotes is what that module of pkg-config tells.
import { spawnSync } from 'node:child_process';
import { readFileSync, writeFileSync } from 'node:fs';

const [notices, version, output] = process.argv.slice(2);

// Nothing for a module that is not there: a bundle alone is built without a desktop.
const versionOf = (cell) => (cell.startsWith('`')
  ? spawnSync('pkg-config', ['--silence-errors', '--modversion', cell.slice(1, -1)], { encoding: 'utf8' }).stdout.trim()
  : cell);

const rows = readFileSync(notices, 'utf8').split('## Only to build and test')[0].split('\n')
  .filter((line) => line.startsWith('| ') && !line.startsWith('| Component '))
  .map((line) => line.split('|').slice(1, -1).map((cell) => cell.trim()));
const licences = (expression) => [{ expression }];
writeFileSync(output, `${JSON.stringify({
  bomFormat: 'CycloneDX',
  specVersion: '1.5',
  version: 1,
  metadata: {
    component: { type: 'application', name: 'hbbtv-injected-bundle', version, licenses: licences('BSD-2-Clause') },
  },
  components: rows.map(([name, cell, licence, description]) => {
    const found = versionOf(cell);
    return { type: 'library', name, ...(found && { version: found }), description: description.replaceAll('`', ''),
      licenses: licences(licence) };
  }),
}, null, 2)}\n`);
