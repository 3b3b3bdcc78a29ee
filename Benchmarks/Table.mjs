// Reads what the benchmark programs have written and prints one table of ratios; each is the median of repetitions
// that were taken by turns. Ends with 1 when a ratio is over its goal, or a picture of the film was not seen.
//
//     node Table.mjs FOLDER     with bindings.json, remote-calls.json, television.json, search.json, memory.json,
//                            start-up.json, page-load.json, first-picture.json, glass.json
import { readFileSync } from 'node:fs';
import path from 'node:path';

const folder = process.argv[2];
const read = (name) => JSON.parse(readFileSync(path.join(folder, name), 'utf8'));

function median(numbers) {
  const sorted = [...numbers].sort((a, b) => a - b);
  const middle = sorted.length >> 1;
  return sorted.length % 2 ? sorted[middle] : (sorted[middle - 1] + sorted[middle]) / 2;
}

// Nanoseconds for each item of a Google Benchmark case, one number a repetition.
function times(report, name, clock) {
  const runs = report.benchmarks.filter((run) => run.run_type === 'iteration' && run.run_name === name);
  const failed = runs.find((run) => run.error_occurred);
  if (!runs.length || failed) throw new Error(`${name}: ${failed?.error_message ?? 'was not run'}`);
  return runs.map((run) => run[clock] / (run.items_per_second ? itemsPerIteration(run) : 1));
}

function itemsPerIteration(run) {
  return Math.round(run.items_per_second * run.cpu_time * 1e-9);
}

const bindings = read('bindings.json');
const remote = read('remote-calls.json');
const television = read('television.json');
const search = read('search.json');
const memory = read('memory.json');
const startUp = read('start-up.json');
const load = read('page-load.json');
const firstPicture = read('first-picture.json');
const glass = read('glass.json');
const onScreen = (height, way) => inMilliseconds(glass[height][way]);
const inProcess = (name) => ({ value: median(times(bindings, name, 'cpu_time')), unit: 'ns' });
const overBus = (name) => ({ value: median(times(remote, `${name}/real_time`, 'real_time')) / 1000, unit: 'us' });
const scales = { ns: 1, us: 1e3, ms: 1e6 };
const onTelevision = (name, unit) => ({
  value: median(times(television, `${name}/real_time`, 'real_time')) / scales[unit],
  unit,
});
const searches = (what) => ({ value: median(times(search, 'Search/manual_time', what)), unit: 'ms' });
const bytes = (value) => ({ value, unit: 'B' });
const inMilliseconds = (times) => ({ value: median(times), unit: 'ms' });
const milliseconds = (repetitions, what) => inMilliseconds(repetitions.map((times) => times[what]));
const start = [inMilliseconds(startUp.bundle), inMilliseconds(startUp.bus)];
const toFirstPicture = [inMilliseconds(firstPicture.page), inMilliseconds(firstPicture.bare)];

// What is compared, ours, the yardstick, the largest ratio that is accepted.
const rows = [
  ['property read, generated / by hand', inProcess('Read/binding'), inProcess('Read/hand'), 1.15],
  ['property write, generated / by hand', inProcess('Write/binding'), inProcess('Write/hand'), 1.15],
  ['method call, generated / by hand', inProcess('Call/binding'), inProcess('Call/hand'), 1.15],
  ['object creation, generated / by hand', inProcess('MakeObjects/binding'), inProcess('MakeObjects/hand'), 1.15],
  ['property read, 40 members / 2', inProcess('Read/many'), inProcess('Read/binding'), 1.1],
  ['property write, 40 members / 2', inProcess('Write/many'), inProcess('Write/binding'), 1.1],
  ['method call, 40 members / 2', inProcess('Call/many'), inProcess('Call/binding'), 1.1],
  ['event to 10 listeners / bare calls, object by hand', inProcess('DispatchToListeners'), inProcess('CallBare/hand'), 1.5],
  ['event to 10 listeners / bare calls, empty object', inProcess('DispatchToListeners'), inProcess('CallBare/plain'), null],
  ['DAE client call / bare generated call', overBus('ClientCall'), overBus('BareCall'), 1.05],
  // Releasing the channels, 1,000 further calls, is in neither.
  ['list of 1,000 channels / its 2,001 bare generated calls', onTelevision('ReadChannelList', 'ms'), onTelevision('CallForChannelList', 'ms'), 1.15],
  // The channel that is found is a new object, whose cache entry is retained with one remote call.
  ['getChannel, last of 1,000 / search in plain script', onTelevision('FindInList', 'us'), onTelevision('FindInArray', 'us'), null],
  ['stream event to its listener / bare handler and call', onTelevision('StreamEventToListener', 'ns'), onTelevision('StreamEventBare', 'ns'), null],
  // Ten calls for the search, two for each programme and one for each channel of twenty. Releasing is in neither.
  ['search of 10,000, 20 read, sleep apart / its 70 bare calls', searches('page'), searches('bare'), 1.15],
  // The page's search sleeps before it asks for the first time whether there are results; the bare calls do not.
  ['the same search with the sleep / its 70 bare calls', searches('page_with_sleep'), searches('bare'), null],
  ['start of the bundle / its part of the bus, plainly', ...start, null],
  ['page of 1,000 elements on screen, with bundle / without', milliseconds(load.with, 'shown'), milliseconds(load.without, 'shown'), 1.1],
  // Part of the row above: what a viewer waits for is the page on the screen.
  ['of it until the load event, with bundle / without', milliseconds(load.with, 'loaded'), milliseconds(load.without, 'loaded'), null],
  ['play(1) until the page hears that it plays / bare player', ...toFirstPicture, null],
  // Milliseconds of a processor in a second, the display server's with them. A graphics processor composes what a
  // software GL has to.
  ['film of 720p on the screen, no compositing / GTK window', onScreen(720, 'page'), onScreen(720, 'bare'), 2],
  ['film of 1080p on the screen, no compositing / GTK window', onScreen(1080, 'page'), onScreen(1080, 'bare'), 2],
  ['film of 720p on the screen, software GL / GTK window', onScreen(720, 'softwareGl'), onScreen(720, 'bare'), null],
  ['film of 1080p on the screen, software GL / GTK window', onScreen(1080, 'softwareGl'), onScreen(1080, 'bare'), null],
  ['memory of a live object, generated / by hand', bytes(memory.binding), bytes(memory.hand), null],
  ['memory of a live channel / plain object of its 17 values', bytes(memory.channel), bytes(memory.plainChannel), null],
];

const shown = ({ value, unit }) => `${value.toFixed(value < 100 ? 1 : 0)} ${unit}`;
const width = Math.max(...rows.map(([name]) => name.length));
const line = (name, ...cells) => console.log([name.padEnd(width), ...cells.map((cell) => cell.padStart(10))].join('  '));

let over = 0;
line('', 'ours', 'yardstick', 'ratio', 'goal', '');
for (const [name, ours, yardstick, goal] of rows) {
  const ratio = ours.value / yardstick.value;
  // What the table shows is what is judged.
  const isOver = goal !== null && Number(ratio.toFixed(2)) > goal;
  if (isOver) over++;
  line(name, shown(ours), shown(yardstick), ratio.toFixed(2), goal === null ? '-' : `<= ${goal.toFixed(2)}`,
    goal === null ? '' : isOver ? 'over' : 'ok');
}
const [library, bus] = start;
const [inPage, bare] = toFirstPicture;
console.log(`\nOf a film's ${glass.pictures.all} pictures, 720p at 25 a second, ${glass.pictures.seen} were seen on the display.`);
console.log(`From dlopen to the end of WKBundleInitialize the bundle takes ${
  (library.value - bus.value).toFixed(1)} ms beside the bus.`);
console.log(`Until a film plays, the page waits ${(inPage.value - bare.value).toFixed(1)} ms longer than a bare player does.`);
process.exitCode = over || glass.pictures.seen < glass.pictures.all ? 1 : 0;
