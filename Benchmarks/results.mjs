// What the benchmark programs have written, as lists of repetitions; a list is judged by its median.
import { readFileSync } from 'node:fs';
import path from 'node:path';

// The value below which a share of the numbers lies.
function quantile(numbers, share) {
  const sorted = [...numbers].sort((a, b) => a - b);
  const place = (sorted.length - 1) * share;
  const below = Math.floor(place);
  return sorted[below] + (place - below) * ((sorted[below + 1] ?? sorted[below]) - sorted[below]);
}

export const median = (numbers) => quantile(numbers, 0.5);

// A yardstick whose own repetitions spread further says nothing about a goal.
export const tooNoisy = 0.15;

// How far apart the middle half of the repetitions lies, as a share of their median.
export const spread = (numbers) => (quantile(numbers, 0.75) - quantile(numbers, 0.25)) / median(numbers);

export const read = (folder, name) => JSON.parse(readFileSync(path.join(folder, name), 'utf8'));

// Nanoseconds for each item of a Google Benchmark case, one number a repetition.
export function times(report, name, clock) {
  const runs = report.benchmarks.filter((run) => run.run_type === 'iteration' && run.run_name === name);
  const failed = runs.find((run) => run.error_occurred);
  if (!runs.length || failed) throw new Error(`${name}: ${failed?.error_message ?? 'was not run'}`);
  return runs.map((run) => run[clock] / (run.items_per_second ? itemsPerIteration(run) : 1));
}

function itemsPerIteration(run) {
  return Math.round(run.items_per_second * run.cpu_time * 1e-9);
}
