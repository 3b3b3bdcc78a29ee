// What a sanitizer finds in a web process ends the test program at once, with the report.
import assert from "node:assert/strict";
import { execFile } from "node:child_process";
import { dirname, resolve } from "node:path";
import { describe, it } from "node:test";
import { fileURLToPath } from "node:url";
import { build } from "./Harness/programs.mjs";

describe("A sanitized test program", { skip: !process.env.HBBTV_SANITIZER }, () => {
  for (const fault of ["heap-buffer-overflow", "heap-use-after-free", "signed integer overflow"]) {
    it(`fails with the report of a ${fault}`, async () => {
      const environment = { HBBTV_BUNDLE: resolve(build, "Tests/Browser/faulty-bundle.so"), HBBTV_FAULT: fault };
      const program = `import { Television } from "./Harness/television.mjs";
const television = await Television.start({ environment: ${JSON.stringify(environment)} });
await television.open("plain.html");
await television.close();`;
      const cwd = dirname(fileURLToPath(import.meta.url));
      const [error, output] = await new Promise(ended => execFile(process.execPath,
        ["--input-type=module", "--eval", program], { cwd, timeout: 60000 },
        (error, _, output) => ended([error, output])));
      assert.equal(error?.code, 1, output);
      assert.match(output, new RegExp(`${fault}[^]*FaultyBundle\\.cpp[^]*SUMMARY: \\w+Sanitizer`));
    });
  }
});
