// The room plan holds: no include goes upward, and every header compiles by itself.
import assert from 'node:assert/strict';
import { execFile, execFileSync, spawnSync } from 'node:child_process';
import { readFileSync, readdirSync } from 'node:fs';
import { availableParallelism, cpus } from 'node:os';
import path from 'node:path';
import { test } from 'node:test';
import { fileURLToPath } from 'node:url';

import { violations } from './check-rooms.mjs';

const here = path.dirname(fileURLToPath(import.meta.url));
const root = path.join(here, '../..');
const build = path.resolve(root, process.env.HBBTV_BUILD_DIR ?? 'build/release');
const { rooms } = JSON.parse(readFileSync(path.join(here, 'rooms.json'), 'utf8'));

// Source files below the tree's own folders, as paths from the source root.
function sources(pattern) {
  const folders = readdirSync(root, { withFileTypes: true })
    .filter((entry) => entry.isDirectory() && !entry.name.startsWith('.') && !['build', 'node_modules'].includes(entry.name));
  return folders.flatMap(({ name }) => readdirSync(path.join(root, name), { recursive: true })
    .map((file) => path.join(name, file)).filter((file) => pattern.test(file)));
}

test('The check sees what goes against the table', () => {
  const table = { Low: { rooms: [], libraries: [] }, High: { rooms: ['Low'], libraries: ['GIO'] } };
  const refused = [
    ['Low/a.h', '#include "High/b.h"\n', /Low must not include High/],
    ['Low/a.cpp', '  #  include  <gio/gio.h>\n', /does without GIO/],
    ['Low/a.cpp', '#include <glib.h>\n', /does without GLib/],
    ['High/b.cpp', '#include "b.h"\n', /not written from the source root/],
    ['High/b.cpp', '#include "../Low/a.h"\n', /not written from the source root/],
    ['Nowhere/c.cpp', '', /no room/],
  ];
  for (const [file, text, message] of refused) assert.match(violations(file, text, table).join('\n'), message, text);

  const accepted = [
    ['High/b.cpp', '#include "High/b.h"\n\n#include <string>\n\n#include <gio/gio.h>\n\n#include "Low/a.h"\n'],
    ['Low/a.h', '#include <sys/socket.h>\n// #include "High/b.h"\n'],
  ];
  for (const [file, text] of accepted) assert.deepEqual(violations(file, text, table), [], text);
});

test('Every include keeps to the room table', () => {
  const files = sources(/\.(h|cpp|c)$/);
  assert.ok(files.length > 50, `only ${files.length} source files were found`);
  const found = files.flatMap((file) => violations(file, readFileSync(path.join(root, file), 'utf8'), rooms));
  assert.deepEqual(found, []);
});

test('No room leans on one that leans on it', () => {
  const circles = [];
  const follow = (room, way) => {
    if (way.includes(room)) circles.push([...way, room].join(' -> '));
    else for (const next of rooms[room].rooms) follow(next, [...way, room]);
  };
  for (const room of Object.keys(rooms)) follow(room, []);
  assert.deepEqual(circles, []);
});

test('No text is half merged', () => {
  const texts = sources(/\.(h|cpp|c|js|mjs|md|html|idl|xml|txt|cmake|json)$/);
  const found = texts.filter((file) => /^(<{7}|>{7}) /m.test(readFileSync(path.join(root, file), 'utf8')));
  assert.deepEqual(found, []);
});

test('Every C++ source is formatted', () => {
  const { status, error, stderr } = spawnSync('clang-format-14', ['--dry-run', '--Werror', ...sources(/\.(h|cpp|c)$/)],
    { cwd: root, encoding: 'utf8', maxBuffer: 1 << 26 });
  assert.equal(status, 0, error?.message ?? stderr);
});

// The include folders and the language of the whole build. Which libraries a room may use is the table's business.
function buildFlags(commands) {
  const flags = new Set(['-std=c++20']);
  for (const { command } of commands) {
    // The shell undoes the quoting that the build tool put there for it.
    const words = execFileSync('sh', ['-c', `printf '%s\\0' ${command}`], { encoding: 'utf8' }).split('\0');
    words.forEach((word, i) => {
      if (/^-I./.test(word)) flags.add(word);
      if (words[i - 1] === '-isystem') flags.add(`-isystem${word}`);
    });
  }
  return [...flags];
}

function compile(header, flags) {
  return new Promise((resolve) => {
    const child = execFile('c++', [...flags, '-Wall', '-Wextra', '-Werror', '-fsyntax-only', '-x', 'c++', '-'],
      { cwd: build }, (error, _output, errors) => resolve(error ? `${header}:\n${errors}` : null));
    child.stdin.end(`#include "${header}"\n`);
  });
}

test('Every header compiles by itself', async () => {
  const commands = JSON.parse(readFileSync(path.join(build, 'compile_commands.json'), 'utf8'));
  const flags = buildFlags(commands);
  // What a source of the build includes before all else has been compiled by itself.
  const compiled = new Set(commands.map(({ file }) =>
    /^(?:\s|\/\/.*)*#include "([^"]+)"/.exec(readFileSync(file, 'utf8'))?.[1]));
  const headers = sources(/^(?!Tests|Benchmarks).*\.h$/);
  assert.ok(headers.length > 30, `only ${headers.length} headers were found`);
  const queue = headers.filter((header) => !compiled.has(header));
  const found = [];
  const worker = async () => {
    for (let header = queue.pop(); header; header = queue.pop()) found.push(await compile(header, flags));
  };
  await Promise.all(Array.from({ length: availableParallelism?.() ?? cpus().length }, worker));
  assert.deepEqual(found.filter(Boolean), []);
});
