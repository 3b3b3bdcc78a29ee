// The files of Docs/api, made from the interface descriptions: pages to read, and an npm package of declarations with them.

import { readFileSync } from 'node:fs';
import { fileURLToPath } from 'node:url';

import { readInterfaces } from '../interfaces.mjs';
import { bootstrapScript } from '../script.mjs';
import { globals, namespace } from './declarations.mjs';
import { Pages } from './pages.mjs';
import { readWindow } from './window.mjs';

const at = (path) => fileURLToPath(new URL(path, import.meta.url));

function packageDescription() {
  const [, version] = /^project\(\w+ VERSION ([\d.]+)/m.exec(readFileSync(at('../../../CMakeLists.txt'), 'utf8'));
  const description = {
    name: 'hbbtv-injected-bundle-types',
    version,
    description: 'TypeScript declarations and reference of the objects that HbbTV pages find',
    license: 'BSD-2-Clause',
    types: './hbbtv.d.ts',
    exports: { '.': { types: './hbbtv.d.ts' }, './types': { types: './types.d.ts' } },
    files: ['*.d.ts', '*.md'],
  };
  return `${JSON.stringify(description, null, 2)}\n`;
}

// File name to content.
export function apiReference() {
  const interfaces = readInterfaces(at('../../idl'));
  const window = readWindow(bootstrapScript());
  const pages = new Pages(interfaces, { ...window, index: readFileSync(at('index.md'), 'utf8') });
  return new Map([
    ...pages.all(),
    ['package.json', packageDescription()],
    ['LICENSE', readFileSync(at('../../../LICENSE'), 'utf8')],
    ['types.d.ts', namespace(interfaces, window, readFileSync(at('namespace-head.d.ts'), 'utf8'))],
    ['hbbtv.d.ts', globals(interfaces, readFileSync(at('head.d.ts'), 'utf8'))],
  ]);
}
