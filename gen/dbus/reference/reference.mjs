// The files of Docs/dbus, made from the D-Bus descriptions.

import { readFileSync, readdirSync } from 'node:fs';
import { join } from 'node:path';
import { fileURLToPath } from 'node:url';

import { readInterface } from './interfaces.mjs';

const at = (path) => fileURLToPath(new URL(path, import.meta.url));

const firstSentence = (doc) => doc.replace(/\n/g, ' ').match(/^.*?\.(?=\s|$)/)?.[0] ?? doc;
const code = (text) => `\`${text}\``;

function argumentTable(args, direction) {
  return args.map(({ name, type, doc }) => `| ${direction} | ${code(name)} | ${code(type)} | ${doc} |`);
}

const signature = (args) => `(${args.map(({ type }) => type).join('')})`;

function memberSection({ name, doc, inputs, outputs }, isSignal) {
  const rows = [...argumentTable(inputs, 'in'), ...argumentTable(outputs, 'out')];
  const types = [...(isSignal ? [] : [inputs]), outputs].map((args) => code(signature(args))).join(' → ');
  const table = rows.length ? ['', '| | Argument | Type | Meaning |', '|---|---|---|---|', ...rows] : [];
  return [`### ${name}`, '', types, '', doc, ...table].join('\n');
}

function page({ name, doc, methods, signals }) {
  const parts = [`# ${name}`, doc, 'What all interfaces have in common: [D-Bus reference](README.md).', '## Methods',
    ...methods.map((method) => memberSection(method, false))];
  if (signals.length) parts.push('## Signals', ...signals.map((signal) => memberSection(signal, true)));
  return `${parts.join('\n\n')}\n`;
}

function index(interfaces) {
  const rows = interfaces.map(({ name, doc, methods, signals }) =>
    `| [${name}](${name}.md) | ${methods.length} | ${signals.length} | ${firstSentence(doc)} |`);
  return readFileSync(at('index.md'), 'utf8').replace('<!-- interfaces -->',
    ['| Interface | Methods | Signals | Serves |', '|---|---|---|---|', ...rows].join('\n'));
}

// File name to content.
export function dbusReference(folder = at('..')) {
  const interfaces = readdirSync(folder).filter((file) => file.endsWith('.xml')).sort()
    .map((file) => readInterface(join(folder, file)));
  return new Map([['README.md', index(interfaces)], ...interfaces.map((each) => [`${each.name}.md`, page(each)])]);
}
