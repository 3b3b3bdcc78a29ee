// Serves the test pages and the examples on a free port of the loopback.
import { createReadStream, existsSync, statSync } from "node:fs";
import { createServer } from "node:http";
import { extname, join, normalize, resolve, sep } from "node:path";
import { fileURLToPath } from "node:url";

const sourceRoot = resolve(fileURLToPath(import.meta.url), "../../../..");

const applicationType = "application/vnd.hbbtv.xhtml+xml; charset=utf-8";
const mimeTypes = {
  ".html": "text/html; charset=utf-8",
  ".xhtml": "application/xhtml+xml; charset=utf-8",
  ".hbbtv": applicationType,
  ".js": "text/javascript; charset=utf-8",
  ".css": "text/css; charset=utf-8",
  ".json": "application/json",
  ".png": "image/png",
  ".svg": "image/svg+xml",
  ".mp4": "video/mp4"
};

// URL prefix to folder.
const folders = {
  "/pages/": join(sourceRoot, "Tests/Browser/pages"),
  "/examples/": join(sourceRoot, "Examples"),
  "/InjectedBundle/": join(sourceRoot, "InjectedBundle"),
  "/node_modules/": join(sourceRoot, "node_modules")
};

function fileOf(pathname) {
  const prefix = Object.keys(folders).find(candidate => pathname.startsWith(candidate));
  if (!prefix)
    return undefined;
  const file = normalize(join(folders[prefix], decodeURIComponent(pathname.slice(prefix.length))));
  const inside = file.startsWith(folders[prefix] + sep) && existsSync(file) && statSync(file).isFile();
  return inside ? file : undefined;
}

function typeOf(file) {
  if (file.endsWith(".hbbtv.xhtml"))
    return applicationType;
  return mimeTypes[extname(file)] ?? "application/octet-stream";
}

export class PageServer {
  static async start() {
    const server = new PageServer();
    await new Promise(resolvePort => server.#http.listen(0, "127.0.0.1", resolvePort));
    return server;
  }

  // Path to { type, body } for pages that a test writes itself.
  #written = new Map();
  // The paths that were asked for.
  requested = new Set();
  #http = createServer((request, response) => this.#answer(request, response));

  get origin() {
    return `http://127.0.0.1:${this.#http.address().port}`;
  }

  url(path) {
    return new URL(path, this.origin).href;
  }

  // Puts a page under /written/<name> and answers its URL.
  write(name, body) {
    this.#written.set(`/written/${name}`, { type: mimeTypes[extname(name)], body });
    return this.url(`/written/${name}`);
  }

  #answer(request, response) {
    const { pathname } = new URL(request.url, this.origin);
    const headers = { "Cache-Control": "no-store" };
    this.requested.add(pathname);
    const written = this.#written.get(pathname);
    if (written) {
      response.writeHead(200, { ...headers, "Content-Type": written.type }).end(written.body);
      return;
    }
    const file = fileOf(pathname);
    if (!file) {
      response.writeHead(404, headers).end();
      return;
    }
    headers["Content-Type"] = typeOf(file);
    response.writeHead(200, headers);
    createReadStream(file).pipe(response);
  }

  close() {
    this.#http.closeAllConnections?.();
    return new Promise(closed => this.#http.close(closed));
  }
}
