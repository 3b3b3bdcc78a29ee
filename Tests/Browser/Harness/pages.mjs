// Serves the test pages, the examples and the media on a free port of the loopback.
import { existsSync, statSync } from "node:fs";
import { createServer } from "node:http";
import { join, normalize, resolve, sep } from "node:path";
import { fileURLToPath } from "node:url";
import { bootstrapScript } from "../../../InjectedBundle/gen/script.mjs";
import { contentType, sendFile } from "../../../Tools/Scripts/serve.mjs";
import { mediaFolder } from "./media.mjs";

const sourceRoot = resolve(fileURLToPath(import.meta.url), "../../../..");

// URL prefix to folder; the first that fits counts.
const folders = {
  "/media/": mediaFolder,
  "/examples/player/media/": mediaFolder,
  "/pages/": join(sourceRoot, "Tests/Browser/pages"),
  "/examples/": join(sourceRoot, "Examples")
};

function fileOf(pathname) {
  const prefix = Object.keys(folders).find(candidate => pathname.startsWith(candidate));
  if (!prefix)
    return undefined;
  const file = normalize(join(folders[prefix], decodeURIComponent(pathname.slice(prefix.length))));
  const inside = file.startsWith(folders[prefix] + sep) && existsSync(file) && statSync(file).isFile();
  return inside ? file : undefined;
}

export class PageServer {
  // Path to { type, body } for pages that a test writes itself.
  #written = new Map();
  // Path to what answers there in place of the server, for a test that needs a bad one.
  #interceptors = new Map();
  // The paths that were asked for.
  requested = new Set();
  // The user agents that have asked.
  agents = new Set();
  #http = createServer((request, response) => this.#answer(request, response));

  begin() {
    return new Promise(listening => this.#http.listen(0, "127.0.0.1", listening));
  }

  get origin() {
    return `http://127.0.0.1:${this.#http.address().port}`;
  }

  url(path) {
    return new URL(path, this.origin).href;
  }

  // Puts a page under /written/<name> and answers its URL.
  write(name, body) {
    this.#written.set(`/written/${name}`, { type: contentType(name), body });
    return this.url(`/written/${name}`);
  }

  // `answer(request, response, serve)` is called for requests of the path; serve() does what is usual. Without
  // an answer the path is the server's again.
  intercept(path, answer) {
    if (answer)
      this.#interceptors.set(path, answer);
    else
      this.#interceptors.delete(path);
  }

  #answer(request, response) {
    const { pathname } = new URL(request.url, this.origin);
    this.requested.add(pathname);
    this.agents.add(request.headers["user-agent"]);
    const serve = () => this.#serve(pathname, request, response);
    const interceptor = this.#interceptors.get(pathname);
    if (interceptor)
      interceptor(request, response, serve);
    else
      serve();
  }

  #serve(pathname, request, response) {
    const headers = { "Cache-Control": "no-store" };
    const written = pathname === "/bootstrap.js" ? { type: contentType(pathname), body: bootstrapScript() }
      : this.#written.get(pathname);
    if (written) {
      response.writeHead(200, { ...headers, "Content-Type": written.type }).end(written.body);
      return;
    }
    const file = fileOf(pathname);
    if (!file) {
      response.writeHead(404, headers).end();
      return;
    }
    const { size } = statSync(file);
    sendFile(request, response, file, size, headers);
  }

  close() {
    this.#http.closeAllConnections?.();
    return new Promise(closed => this.#http.close(closed));
  }
}
