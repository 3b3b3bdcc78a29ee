#!/usr/bin/env node
// A static web server for HbbTV applications, on the loopback interface only.
//
//     Tools/Scripts/serve.mjs [FOLDER] [--port N]
//
// FOLDER is Examples/ when left out. Without --port the system chooses a free one. The first line printed is
// the address, for people and scripts alike. Pages end in .html, .xhtml (application/xhtml+xml) or
// .hbbtv.xhtml (application/vnd.hbbtv.xhtml+xml). Ends with Ctrl+C.
// Tests import `startServer` instead.

import { createReadStream, realpathSync } from 'node:fs';
import { stat } from 'node:fs/promises';
import { createServer } from 'node:http';
import path from 'node:path';
import { fileURLToPath } from 'node:url';
import { parseArgs } from 'node:util';

// Longest suffix first: the first that fits wins.
const contentTypes = [
  ['.hbbtv.xhtml', 'application/vnd.hbbtv.xhtml+xml; charset=utf-8'],
  ['.xhtml', 'application/xhtml+xml; charset=utf-8'],
  ['.html', 'text/html; charset=utf-8'],
  ['.css', 'text/css; charset=utf-8'],
  ['.js', 'text/javascript; charset=utf-8'],
  ['.mjs', 'text/javascript; charset=utf-8'],
  ['.json', 'application/json'],
  ['.xml', 'application/xml; charset=utf-8'],
  ['.svg', 'image/svg+xml'],
  ['.png', 'image/png'],
  ['.jpg', 'image/jpeg'],
  ['.woff2', 'font/woff2'],
  ['.mp4', 'video/mp4'],
  ['.mpd', 'application/dash+xml'],
];

export function contentType(file) {
  const name = file.toLowerCase();
  return contentTypes.find(([suffix]) => name.endsWith(suffix))?.[1] ?? 'application/octet-stream';
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

// Resolves to { url, close }: the address ends in a slash, and closing waits for no client.
export async function startServer(folder, { port = 0 } = {}) {
  const root = path.resolve(folder);
  const server = createServer(async (request, response) => {
    const answer = (status, headers = {}) => response.writeHead(status, { 'Cache-Control': 'no-store', ...headers });
    if (request.method !== 'GET' && request.method !== 'HEAD') {
      answer(405, { Allow: 'GET, HEAD' }).end();
      return;
    }
    const found = await find(root, request.url.replace(/[?#].*$/s, ''));
    if (!found) {
      answer(404, { 'Content-Type': 'text/plain' }).end('Not found\n');
    } else if (found.redirect) {
      answer(301, { Location: found.redirect }).end();
    } else {
      answer(200, { 'Content-Type': contentType(found.file), 'Content-Length': found.size });
      if (request.method === 'HEAD') response.end();
      else createReadStream(found.file).on('error', () => response.destroy()).pipe(response);
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
    options = parseArgs({ allowPositionals: true, options: { port: { type: 'string', default: '0' } } });
    if (options.positionals.length > 1) throw new Error('one folder at most');
    if (!/^\d{1,5}$/.test(options.values.port)) throw new Error(`not a port: ${options.values.port}`);
  } catch (error) {
    console.error(`serve.mjs: ${error.message}\nusage: serve.mjs [FOLDER] [--port N]`);
    process.exit(2);
  }
  const folder = options.positionals[0] ?? path.join(here, '../../Examples');
  const isFolder = (await stat(folder).catch(() => null))?.isDirectory();
  if (!isFolder) {
    console.error(`serve.mjs: not a folder: ${folder}`);
    process.exit(1);
  }
  try {
    console.log((await startServer(folder, { port: Number(options.values.port) })).url);
  } catch (error) {
    console.error(`serve.mjs: ${error.message}`);
    process.exit(1);
  }
}

if (process.argv[1] && realpathSync(process.argv[1]) === fileURLToPath(import.meta.url)) await main();
