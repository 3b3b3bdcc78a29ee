// The parts of the bootstrap script, joined as the build joins them.

import { readFileSync } from 'node:fs';
import { fileURLToPath } from 'node:url';

const folder = new URL('../Script/', import.meta.url);

export const scriptParts = () => readFileSync(new URL('parts.txt', folder), 'utf8').trim().split('\n')
  .map((name) => fileURLToPath(new URL(name, folder)));

export const bootstrapScript = () => scriptParts().map((path) => `${readFileSync(path, 'utf8')}\n`).join('');
