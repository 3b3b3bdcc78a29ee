// Reads what the benchmark programs have written and prints one table of ratios; each is of the medians of repetitions
// that were taken by turns. Ends with 1 when a ratio is over its goal, or a picture of the film was not seen; with 2
// when the machine was too noisy to judge one.
//
//     node Table.mjs FOLDER     with bindings.json, remote-calls.json, television.json, search.json, memory.json,
//                               start-up.json, page-load.json, elements.json, first-picture.json, glass.json
import { median, read, spread, times, tooNoisy } from './results.mjs';

const folder = process.argv[2];
const [bindings, remote, television, search, memory, startUp, load, elements, firstPicture, glass] = [
  'bindings', 'remote-calls', 'television', 'search', 'memory', 'start-up', 'page-load', 'elements', 'first-picture', 'glass',
].map((name) => read(folder, `${name}.json`));

// All repetitions of one side of a row.
const measured = (values, unit, scale = 1) => ({ values: values.map((value) => value / scale), unit });
const onScreen = (height, way) => measured(glass[height][way], 'ms');
const inProcess = (name) => measured(times(bindings, name, 'cpu_time'), 'ns');
const overBus = (name) => measured(times(remote, `${name}/real_time`, 'real_time'), 'us', 1e3);
const scales = { ns: 1, us: 1e3, ms: 1e6 };
const onTelevision = (name, unit) => measured(times(television, `${name}/real_time`, 'real_time'), unit, scales[unit]);
const searches = (what) => measured(times(search, 'Search/manual_time', what), 'ms');
const bytes = (value) => measured([value], 'B');
const inMilliseconds = (values) => measured(values, 'ms');
const milliseconds = (repetitions, what) => inMilliseconds(repetitions.map((found) => found[what]));
const start = [inMilliseconds(startUp.bundle), inMilliseconds(startUp.bus)];
const toFirstPicture = [inMilliseconds(firstPicture.page), inMilliseconds(firstPicture.bare)];
const inElement = (way, what) => measured(elements[way].map((found) => found[what]), 'ns');
const frames = ['with', 'without'].map((way) => milliseconds(elements[way], 'frame'));

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
  ['list of 1,000 channels / its 2,001 bare generated calls', onTelevision('ReadChannelList', 'ms'), onTelevision('CallForChannelList', 'ms'), 0.8],
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
  ['an empty frame, with bundle / without', ...frames, null],
  ['property read, element / its native object', inElement('with', 'element'), inElement('with', 'native'), 2.5],
  ['property of a foreign object element, with bundle / without', inElement('with', 'foreign'), inElement('without', 'foreign'), 1.5],
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

const shown = ({ values, unit }) => `${median(values).toFixed(median(values) < 100 ? 1 : 0)} ${unit}`;
const width = Math.max(...rows.map(([name]) => name.length));
const line = (name, ...cells) => console.log([name.padEnd(width), ...cells.map((cell) => cell.padStart(10))].join('  '));

const judged = { ok: 0, over: 0, noisy: 0, '': 0 };
function judge(ratio, noise, goal) {
  if (!Number.isFinite(ratio)) throw new Error('a row was not measured');
  if (goal === null) return '';
  if (noise > tooNoisy) return 'noisy';
  // What the table shows is what is judged.
  return Number(ratio.toFixed(2)) > goal ? 'over' : 'ok';
}

line('', 'ours', 'yardstick', 'spread', 'ratio', 'goal', '');
for (const [name, ours, yardstick, goal] of rows) {
  const ratio = median(ours.values) / median(yardstick.values);
  const noise = spread(yardstick.values);
  const judgement = judge(ratio, noise, goal);
  judged[judgement]++;
  line(name, shown(ours), shown(yardstick), yardstick.values.length > 1 ? `${(noise * 100).toFixed(0)} %` : '-',
    ratio.toFixed(2), goal === null ? '-' : `<= ${goal.toFixed(2)}`, judgement);
}

const longer = ([ours, yardstick]) => (median(ours.values) - median(yardstick.values)).toFixed(1);
console.log('\nThe spread is how far apart the middle half of the yardstick\'s own repetitions lies.');
console.log(`Of a film's ${glass.pictures.all} pictures, 720p at 25 a second, ${glass.pictures.seen} were seen on the display.`);
console.log(`From dlopen to the end of WKBundleInitialize the bundle takes ${longer(start)} ms beside the bus.`);
console.log(`An empty frame takes ${longer(frames)} ms longer with the bundle.`);
console.log(`Until a film plays, the page waits ${longer(toFirstPicture)} ms longer than a bare player does.`);
if (judged.noisy)
  console.log(`${judged.noisy} of the ratios were not judged: their yardsticks spread by more than ${tooNoisy * 100} %.`);
process.exitCode = judged.over || !(glass.pictures.seen >= glass.pictures.all) ? 1 : judged.noisy ? 2 : 0;
