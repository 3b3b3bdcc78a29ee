// Line differences, by the diff program.

import { spawnSync } from 'node:child_process';
import { mkdtempSync, rmSync, writeFileSync } from 'node:fs';
import { tmpdir } from 'node:os';
import { join } from 'node:path';

function run(options, before, after) {
  const folder = mkdtempSync(join(tmpdir(), 'diff-'));
  try {
    const files = [join(folder, 'before'), join(folder, 'after')];
    writeFileSync(files[0], before);
    writeFileSync(files[1], after);
    const { status, stdout, stderr, error } = spawnSync('diff', [...options, ...files], { encoding: 'utf8' });
    if (error || status > 1) throw error ?? new Error(stderr);
    return stdout;
  } finally {
    rmSync(folder, { recursive: true });
  }
}

// For a person: with context and line numbers. Empty when the texts are equal.
export const unifiedDiff = (before, after) =>
  run(['-u', '--label', 'expected', '--label', 'generated'], before, after);

// Only the lines that differ, so that the result does not depend on the lines around them.
export const changedLines = (before, after) =>
  run(['--old-line-format=-%L', '--new-line-format=+%L', '--unchanged-line-format='], before, after);
