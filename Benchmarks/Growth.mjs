// How cost grows: what one of 10 to 10,000 things takes, ours beside the yardstick, one panel a kind of thing. Prints a
// table and draws the curves. Ends with 1 when ours bends upwards where its yardstick does not: when their ratio at 10,000
// is above that of the others; with 2 when the machine was too noisy to judge.
//
//     node Growth.mjs FOLDER PICTURE.svg    with 10/, 100/, 1000/ and 10000/ in the folder, each with bindings.json,
//                                           television.json, search.json and page-load.json of so many things
import path from 'node:path';
import { plot } from '../Tools/Scripts/lib/plot.mjs';
import { median, read, spread, times, tooNoisy } from './results.mjs';

const [folder, picture] = process.argv.slice(2);
const counts = [10, 100, 1000, 10000];

// Our times of a Google Benchmark report and the yardstick's, in microseconds, and the same for each of `n` things.
const inReport = (ours, bare, clock) => (report) =>
  [ours, bare].map((name) => times(report, name, clock).map((nanoseconds) => nanoseconds / 1e3));
const each = (of) => (report, n) => of(report).map((values) => values.map((value) => value / n));
const inMilliseconds = (ours, bare) => [ours, bare].map((values) => values.map((value) => value * 1e3));

// Each kind of thing: title, file, and the two lists of times in it.
const kinds = [
  ['channels of a list, each', 'television.json',
    each(inReport('ReadChannelList/real_time', 'CallForChannelList/real_time', 'real_time'))],
  ['programmes of a search, each', 'search.json', each((report) => inMilliseconds(
    times(report, 'Search/manual_time', 'page'), times(report, 'Search/manual_time', 'bare')))],
  ['elements of a page, each', 'page-load.json', each((report) => inMilliseconds(
    report.with.map(({ shown }) => shown), report.without.map(({ shown }) => shown)))],
  // Its report is of one object already.
  ['live objects, each', 'bindings.json', inReport('MakeAndReadLive/binding', 'MakeAndReadLive/hand', 'cpu_time')],
  ['listeners of an event, each', 'bindings.json', each(inReport('DispatchToListeners', 'CallBare/hand', 'cpu_time'))],
  ['one stream event, of so many subscriptions', 'television.json',
    inReport('StreamEventToListener/real_time', 'StreamEventBare/real_time', 'real_time')],
];

const curves = kinds.map(([title, file, of]) => {
  const measured = counts.map((n) => of(read(path.join(folder, String(n)), file), n));
  const points = measured.map((both) => both.map(median));
  const ratios = points.map(([ours, bare]) => ours / bare);
  const bend = ratios.at(-1) / median(ratios.slice(0, -1));
  const noise = Math.max(...measured.map(([, bare]) => spread(bare)));
  // A few parts in a hundred are the machine's.
  return { title, points, noise, bend, judgement: noise > tooNoisy ? 'noisy' : bend > 1.15 ? 'upwards' : 'ok' };
});

const width = Math.max(...curves.map(({ title }) => title.length));
console.log(`\n${'ours / yardstick, us'.padEnd(width)}  ${counts.map((n) => String(n).padStart(17)).join('')}    spread      bend`);
for (const { title, points, noise, bend, judgement } of curves) {
  const shown = (value) => value.toFixed(value < 100 ? 1 : 0);
  const cells = points.map(([ours, bare]) => `${shown(ours)} / ${shown(bare)}`.padStart(17));
  console.log(`${title.padEnd(width)}  ${cells.join('')}  ${`${(noise * 100).toFixed(0)} %`.padStart(8)}  ${
    bend.toFixed(2).padStart(8)}  ${judgement}`);
}

const series = (points, of, name) => ({ name, points: points.map((both, k) => [counts[k], both[of]]) });
plot(picture, {
  title: 'Microseconds, of 10 to 10,000',
  xLabel: 'how many',
  columns: 3,
  logarithmic: true,
  panels: curves.map(({ title, points }) => (
    { title, series: [series(points, 0, 'with the bundle'), series(points, 1, 'bare')] })),
});
const any = (wanted) => curves.some(({ judgement }) => judgement === wanted);
process.exitCode = any('upwards') ? 1 : any('noisy') ? 2 : 0;
