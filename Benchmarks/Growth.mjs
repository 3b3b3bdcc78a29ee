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

// Each kind of thing: title, file, and our times and the yardstick's, in microseconds.
const micro = 1e-3;
const milli = 1e3;
const kinds = [
  ['channels of a list, each', 'television.json', (report, n) => [
    times(report, 'ReadChannelList/real_time', 'real_time').map((t) => t * micro / n),
    times(report, 'CallForChannelList/real_time', 'real_time').map((t) => t * micro / n)]],
  ['programmes of a search, each', 'search.json', (report, n) => [
    times(report, 'Search/manual_time', 'page').map((t) => t * milli / n),
    times(report, 'Search/manual_time', 'bare').map((t) => t * milli / n)]],
  ['elements of a page, each', 'page-load.json', (report, n) => [
    report.with.map(({ shown }) => shown * milli / n),
    report.without.map(({ shown }) => shown * milli / n)]],
  ['live objects, each', 'bindings.json', (report) => [
    times(report, 'MakeAndReadLive/binding', 'cpu_time').map((t) => t * micro),
    times(report, 'MakeAndReadLive/hand', 'cpu_time').map((t) => t * micro)]],
  ['listeners of an event, each', 'bindings.json', (report, n) => [
    times(report, 'DispatchToListeners', 'cpu_time').map((t) => t * micro / n),
    times(report, 'CallBare/hand', 'cpu_time').map((t) => t * micro / n)]],
  ['one stream event, of so many subscriptions', 'television.json', (report) => [
    times(report, 'StreamEventToListener/real_time', 'real_time').map((t) => t * micro),
    times(report, 'StreamEventBare/real_time', 'real_time').map((t) => t * micro)]],
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
