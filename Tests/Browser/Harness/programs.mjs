// Where the programs are that the tests start.
import { resolve } from "node:path";
import { fileURLToPath } from "node:url";
import { existsSync, readdirSync } from "node:fs";
import { slowness } from "./wait.mjs";

export const sourceRoot = resolve(fileURLToPath(import.meta.url), "../../../..");
export const build = resolve(sourceRoot, process.env.HBBTV_BUILD_DIR ?? "build/release");

function first(what, candidates) {
  const found = candidates.find(existsSync);
  if (!found)
    throw new Error(`${what} not found, looked at ${candidates.join(", ")}`);
  return found;
}

export const shell = () => first("hbbtv-shell", [resolve(build, "Host/Shell/hbbtv-shell")]);
// Its arguments to leave when a page has loaded, and given its verdict if it gives one.
export const exitAfterLoad = ["--exit-after-load", "--check-limit", String(20 * slowness)];
export const checker = () => first("hbbtv-check-middleware", [resolve(build, "Host/Check/hbbtv-check-middleware")]);
export const receiver = () => first("hbbtv-receiver", [resolve(build, "Host/Receiver/hbbtv-receiver")]);

export const defaultScenario = resolve(sourceRoot, "Examples/scenarios/default.json");

// WebKitGTK's own small browser, in the library's private folder.
export const miniBrowser = () => first("MiniBrowser",
  readdirSync("/usr/lib").map(folder => `/usr/lib/${folder}/webkit2gtk-4.1/MiniBrowser`));
