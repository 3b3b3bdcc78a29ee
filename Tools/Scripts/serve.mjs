#!/usr/bin/env node
// A static web server for HbbTV applications, on the loopback interface only.
//
//     Tools/Scripts/serve.mjs [FOLDER] [--port N] [--mount PATH=FOLDER]...
//
// FOLDER is Examples/ when left out. Without --port the system chooses a free one. --mount serves another folder
// below a path of its own, such as player/media=build/media. The first line printed is the address, for people
// and scripts alike. Host/Shell/Content/content-types.txt says what is served as what, in UTF-8 where it is text; parts of
// files are served, as media players ask for. Ends with Ctrl+C.
// Tests import `startServer` or `sendFile` instead.

import { createReadStream, readFileSync, realpathSync } from 'node:fs';
import { stat } from 'node:fs/promises';
import { createServer } from 'node:http';
import path from 'node:path';
import { fileURLToPath } from 'node:url';
import { parseArgs } from 'node:util';

const contentTypes = readFileSync(new URL('../../Host/Shell/Content/content-types.txt', import.meta.url), 'utf8')
  .split('\n').filter((line) => line.startsWith('.')).map((line) => line.split(' '));

export function contentType(file) {
  const name = file.toLowerCase();
  const type = contentTypes.find(([ending]) => name.endsWith(ending))?.[1] ?? 'application/octet-stream';
  return /^text\/|xhtml\+xml$|\/xml$/.test(type) ? `${type}; charset=utf-8` : type;
}

// The file behind a request path, or null where it is none of the folder's: outside, missing, not a file.
async function find(folder, requestPath) {
  let file;
  try {
    file = path.join(folder, decodeURIComponent(requestPath));
  } catch {
    return null;
  }
  if (file !== folder && !file.startsWith(folder + path.sep)) return null;
  try {
    let found = await stat(file);
    if (found.isDirectory()) {
      if (!requestPath.endsWith('/')) return { redirect: requestPath + '/' };
      file = path.join(file, 'index.html');
      found = await stat(file);
    }
    return found.isFile() ? { file, size: found.size } : null;
  } catch {
    return null;
  }
}

// The first and the last byte of a "Range" header's one range; null where the whole file is meant: several
// ranges and other units may be ignored. Undefined when the file has no such part.
function partOf(range, size) {
  const [, first, last] = /^bytes=(\d*)-(\d*)$/.exec(range ?? '') ?? [];
  if (!first && !last) return null;
  const part = first ? [Number(first), last ? Math.min(Number(last), size - 1) : size - 1]
    : [Math.max(0, size - Number(last)), size - 1];
  return part[0] <= part[1] ? part : undefined;
}

// Answers with a file, or with the part of it that is asked for.
export function sendFile(request, response, file, size, headers = {}) {
  const part = partOf(request.headers.range, size);
  if (part === undefined) {
    response.writeHead(416, { ...headers, 'Content-Range': `bytes */${size}` }).end();
    return;
  }
  const [start, end] = part ?? [0, size - 1];
  response.writeHead(part ? 206 : 200, {
    'Content-Type': contentType(file),
    'Content-Length': end - start + 1,
    'Accept-Ranges': 'bytes',
    ...(part && { 'Content-Range': `bytes ${start}-${end}/${size}` }),
    ...headers,
  });
  if (request.method === 'HEAD' || size === 0) response.end();
  else createReadStream(file, { start, end }).on('error', () => response.destroy()).pipe(response);
}

// Resolves to { url, close }: the address ends in a slash, and closing waits for no client. What `mounts` names
// is served from another folder: { 'player/media': folder }.
export async function startServer(folder, { port = 0, mounts = {} } = {}) {
  const roots = [...Object.entries(mounts), ['', folder]]
    .map(([prefix, root]) => [`/${prefix}/`.replace(/\/+/g, '/'), path.resolve(root)]);
  const server = createServer(async (request, response) => {
    const answer = (status, headers = {}) => response.writeHead(status, { 'Cache-Control': 'no-store', ...headers });
    if (request.method !== 'GET' && request.method !== 'HEAD') {
      answer(405, { Allow: 'GET, HEAD' }).end();
      return;
    }
    const requested = request.url.replace(/[?#].*$/s, '');
    const [prefix, root] = roots.find(([prefix]) => requested.startsWith(prefix)) ?? ['/', roots.at(-1)[1]];
    const found = await find(root, requested.slice(prefix.length - 1));
    if (!found) {
      answer(404, { 'Content-Type': 'text/plain' }).end('Not found\n');
    } else if (found.redirect) {
      answer(301, { Location: prefix.slice(0, -1) + found.redirect }).end();
    } else {
      sendFile(request, response, found.file, found.size, { 'Cache-Control': 'no-store' });
    }
  });
  await new Promise((resolve, reject) => server.once('error', reject).listen(port, '127.0.0.1', resolve));
  return {
    url: `http://127.0.0.1:${server.address().port}/`,
    close: () => new Promise((resolve) => {
      server.close(resolve);
      server.closeAllConnections();
    }),
  };
}

async function main() {
  const here = path.dirname(fileURLToPath(import.meta.url));
  let options;
  try {
    options = parseArgs({
      allowPositionals: true,
      options: {
        port: { type: 'string', default: '0' },
        mount: { type: 'string', multiple: true, default: [] },
      },
    });
    if (options.positionals.length > 1) throw new Error('one folder at most');
    if (!/^\d{1,5}$/.test(options.values.port)) throw new Error(`not a port: ${options.values.port}`);
    const wrong = options.values.mount.find((mount) => !/^[^=]+=./.test(mount));
    if (wrong !== undefined) throw new Error(`not a path and a folder: ${wrong}`);
  } catch (error) {
    console.error(`serve.mjs: ${error.message}\nusage: serve.mjs [FOLDER] [--port N] [--mount PATH=FOLDER]...`);
    process.exit(2);
  }
  const folder = options.positionals[0] ?? path.join(here, '../../Examples');
  const mounts = Object.fromEntries(options.values.mount.map((mount) => mount.split(/=(.*)/s, 2)));
  for (const served of [folder, ...Object.values(mounts)]) {
    if ((await stat(served).catch(() => null))?.isDirectory()) continue;
    console.error(`serve.mjs: not a folder: ${served}`);
    process.exit(1);
  }
  try {
    console.log((await startServer(folder, { port: Number(options.values.port), mounts })).url);
  } catch (error) {
    console.error(`serve.mjs: ${error.message}`);
    process.exit(1);
  }
}

if (process.argv[1] && realpathSync(process.argv[1]) === fileURLToPath(import.meta.url)) await main();
