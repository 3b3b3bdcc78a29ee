// The files of Docs/api, made from the interface descriptions.

import { readFileSync } from 'node:fs';
import { fileURLToPath } from 'node:url';

import { readInterfaces } from '../interfaces.mjs';
import { bootstrapScript } from '../script.mjs';
import { declarations } from './declarations.mjs';
import { Pages } from './pages.mjs';
import { readWindow } from './window.mjs';

const at = (path) => fileURLToPath(new URL(path, import.meta.url));

// File name to content.
export function apiReference() {
  const interfaces = readInterfaces(at('../../idl'));
  const window = readWindow(bootstrapScript());
  const pages = new Pages(interfaces, { ...window, index: readFileSync(at('index.md'), 'utf8') });
  return new Map([
    ...pages.all(),
    ['hbbtv.d.ts', declarations(interfaces, window, readFileSync(at('head.d.ts'), 'utf8'))],
  ]);
}
