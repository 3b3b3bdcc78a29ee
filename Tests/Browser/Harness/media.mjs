// The media that pages play in tests, made once for all test programs of a build folder.
import { execFile } from "node:child_process";
import { resolve } from "node:path";
import { fileURLToPath } from "node:url";
import { promisify } from "node:util";
import { build } from "./programs.mjs";

const makeMediaScript = resolve(fileURLToPath(import.meta.url), "../../../../Tools/Scripts/make-media");

export const mediaFolder = resolve(build, "media");

// Resolves when all is there; programs that come together wait for each other.
export async function makeMedia() {
  await promisify(execFile)(makeMediaScript, [mediaFolder]);
}
