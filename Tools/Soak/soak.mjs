// A television that is kept busy, and measured at rest. Tools/Scripts/run-soak builds what it needs, and is its manual.
import { readFileSync, truncateSync } from 'node:fs';
import path from 'node:path';
import { createInterface } from 'node:readline';
import { setTimeout as pause } from 'node:timers/promises';
import { fileURLToPath } from 'node:url';
import { parseArgs } from 'node:util';
import { makeMedia } from '../../Tests/Browser/Harness/media.mjs';
import { Television } from '../../Tests/Browser/Harness/television.mjs';
import { plot } from '../Scripts/lib/plot.mjs';
import { measure } from './processes.mjs';

const here = path.dirname(fileURLToPath(import.meta.url));
const { values: options } = parseArgs({
  options: {
    minutes: { type: 'string', default: '15' },
    navigations: { type: 'string', default: '0' },
    out: { type: 'string' },
    bare: { type: 'boolean', default: false },
    // The page's, one a navigation; decoding is the dearest.
    jobs: {
      type: 'string',
      default: 'elements,frames,film,search,channels,elements,film,search,channels,medium',
    },
  },
});

const second = 1000;
const minute = 60 * second;
const eventsPerSecond = 200;
// Of memory so much more is no growth, and half a MiB never is: what the receiver has in use, 0.8 MiB all the time, lies
// in more and more pages, 1.3 MiB of the process after a minute and 1.6 after five. Of all that the web process has, a
// quarter more is none: without the bundle WebKit's own allocator takes 15 % in one step, after a thousand pages. What
// is the bundle's is seen in malloc's part of it and in what its scripts keep alive. Everything else is counted.
const amounts = ['memory', 'C heap', 'script heap'];
const allowance = (program, what, before) => Math.max(before + 0.5,
  before * (program === 'web process' && what === 'memory' ? 1.25 : 1.05));
// Threads that WebKit keeps for a while end after ten seconds; one of them comes and goes, so the most that were seen
// in the first rest count.
const settling = 12 * second;
const lifeOfReceiver = 5 * minute;
// What the receiver tells all pages, by turns.
const signals = Object.entries({
  PluginEvent: '(400, uint32 0)',
  PluginEventUnsigned: '(202, uint32 0, uint32 1234)',
  PluginEventSigned: '(108, uint32 0, 1)',
  PluginEventData: '(106, uint32 0, 16, 0)',
  PluginEventFloat: '(201, uint32 0, 1.0)',
  PlayReadyResponse: '(uint32 1, 0, "fine")',
}).flat();
const jobs = options.jobs.split(',');

const started = Date.now();
const elapsed = () => Date.now() - started;
const done = { navigations: 0, emitted: 0, heard: 0 };
// Milliseconds that were not spent at rest.
let busy = 0;
// How often a job got to where it wanted.
const reached = Object.fromEntries(jobs.map((job) => [job, 0]));
const checks = { passed: 0, failed: 0 };
const samples = []; // { minute, held, atRest }
const restarts = [];
let nativeObjects = 0;
let television;
let emitter;

function check(holds, words) {
  checks[holds ? 'passed' : 'failed']++;
  if (!holds) console.log(`FAILED: ${words}`);
}

// Years of log lines would be what grows most here; the last minute's are enough to find a fault with.
function readLog() {
  nativeObjects = television.countsOfNativeObjects().at(-1) ?? nativeObjects;
  television.workplace.lines.length = 0;
}

function sample(atRest = false) {
  readLog();
  const held = measure(television.workplace.env.DBUS_SESSION_BUS_ADDRESS);
  held['web process']['native objects'] = nativeObjects;
  samples.push({ minute: elapsed() / minute, held, atRest });
  return held;
}

const shown = (number) => (Number.isInteger(number) ? number : number.toFixed(1));

// In words, what of `held` is more than it was `before`; what is not in `before` has nothing to be compared with.
function growth(before, held) {
  return Object.keys(before).flatMap((program) => Object.keys(before[program])
    .filter((what) => held[program][what] >
      (amounts.includes(what) ? allowance(program, what, before[program][what]) : before[program][what]))
    .map((what) => `${what} of the ${program} grew from ${shown(before[program][what])} to ${
      shown(held[program][what])}${amounts.includes(what) ? ' MiB' : ''}`));
}

const countsOf = (held) => JSON.stringify(held, (key, value) => (amounts.includes(key) ? undefined : value));

// What is alive then: { pages, 'script heap' }.
async function collectGarbage(times) {
  let alive;
  for (let i = 0; i < times; ++i) {
    alive = await television.browser.run(() => {
      const { globalObjectCount, heapSize } = window.__collectGarbage();
      return { pages: globalObjectCount, 'script heap': heapSize / 1048576 };
    });
    await pause(second);
  }
  return alive;
}

// What is held when nothing goes on and all garbage is collected: as soon as nothing is more than it was, and once no
// count has changed for a while when something is new.
async function rest(before, patience = 30 * second) {
  const { browser, receiver, server } = television;
  const page = server.write('rest.html', '<!DOCTYPE html><title>Rest</title>');
  emitter.kill('SIGSTOP');
  await receiver.clearCalls();
  const deadline = Date.now() + patience;
  let changed = Date.now();
  let held = {};
  for (let isNew = true; isNew;) {
    await browser.open(page);
    await collectGarbage(1);
    // The page that goes tells how many objects there are. What it held is let go in two steps.
    await browser.open(page);
    const alive = await collectGarbage(2);
    const last = held;
    held = sample();
    const web = held['web process'];
    Object.assign(web, alive);
    // What is kept is there at every look; the last page's own may wait for another collection.
    web['native objects'] = Math.min(web['native objects'], last['web process']?.['native objects'] ?? Infinity);
    for (const program of Object.keys(last).filter((name) => !before[name]))
      held[program].threads = Math.max(held[program].threads, last[program].threads);
    if (countsOf(held) !== countsOf(last)) changed = Date.now();
    const isKnown = Object.keys(held).every((program) => before[program]);
    isNew = Date.now() < deadline &&
      (growth(before, held).length > 0 || (!isKnown && Date.now() - changed < settling));
  }
  samples.at(-1).atRest = true;
  emitter.kill('SIGCONT');
  return held;
}

async function round(url, isUndisturbed) {
  const { browser } = television;
  await browser.open(url);
  const job = jobs[done.navigations++ % jobs.length];
  const { heard, seen, failures } = await browser.runAsync((name, then) => work(name, then), job);
  done.heard += heard;
  reached[job] += seen;
  if (isUndisturbed) failures.forEach((failure) => check(false, `a page says: ${failure}`));
}

async function restartReceiver() {
  await pause(Math.random() * 100);
  restarts.push(elapsed() / minute);
  await television.receiver.stop('SIGKILL');
  await television.receiver.start();
}

const eventRate = () => done.emitted / (busy / second);

function printLine(held) {
  const short = ([program, { memory, descriptors, threads }]) =>
    `${program} ${memory.toFixed(1)} MiB ${descriptors} fd ${threads} thr`;
  const minutes = elapsed() / minute;
  console.log(`${minutes.toFixed(1).padStart(5)} min: ${done.navigations} navigations (${
    (done.navigations / minutes).toFixed(0)}/min), ${done.emitted} events (${
    eventRate().toFixed(0)}/s while busy), ${done.heard} heard; ${
    Object.entries(held).map(short).join('; ')}; native objects ${nativeObjects}; of the web process C heap ${
    held['web process']['C heap'].toFixed(1)}, script heap ${held['web process']['script heap'].toFixed(1)} MiB, ${
    held['web process'].pages} page(s)`);
}

function draw(file) {
  const series = (what, ...names) => names.map((name) => ({
    name,
    points: samples.map(({ minute: at, held }) => [at, held[name][what]]),
    dots: samples.filter(({ atRest }) => atRest).map(({ minute: at, held }) => [at, held[name][what]]),
  }));
  const all = ['web process', 'shell', 'receiver', 'media processes'];
  plot(file, {
    title: `${elapsed() / minute | 0} minutes, ${done.navigations} navigations, ${done.emitted} events${
      options.bare ? ', without the bundle' : ''}; dots: at rest, garbage collected; lines: receiver killed`,
    xLabel: 'minutes',
    marks: restarts,
    panels: [
      { title: 'Memory, private and written (MiB)', series: series('memory', 'web process') },
      { title: 'Memory, private and written (MiB)', series: series('memory', ...all.slice(1)) },
      { title: 'Memory of malloc, private and written (MiB)', series: series('C heap', 'web process') },
      { title: 'Descriptors', series: series('descriptors', ...all) },
      { title: 'Threads', series: series('threads', ...all) },
      { title: 'Native objects', series: series('native objects', 'web process') },
      { title: 'Processes', series: series('processes', ...all) },
    ],
  });
}

async function soak() {
  await makeMedia();
  // What grows for a while in every program is nobody's here: what malloc keeps for each thread, and the shaders that
  // are compiled where there is no graphics processor.
  const environment = { GLIBC_TUNABLES: 'glibc.malloc.tcache_count=0', WEBKIT_DISABLE_COMPOSITING_MODE: '1' };
  if (options.bare) environment.HBBTV_BUNDLE = '';
  television = await Television.start({ environment });
  emitter = television.workplace.start(path.join(here, 'emit-signals.py'), [String(eventsPerSecond), ...signals]);
  createInterface({ input: emitter.stdout }).on('line', (line) => { done.emitted = Number(line); });
  const url = television.server.write('soak.html', readFileSync(path.join(here, 'page.html'), 'utf8'));
  const curves = setInterval(sample, 5 * second);
  let before = {};
  // A machine that is slow has what is needed for its films and searches later than after a minute.
  const isWarm = () => options.bare || Object.values(reached).every((count) => count > 0);
  let warmFrom = Infinity;
  const isCompared = () => elapsed() >= warmFrom + minute / 2 || elapsed() >= 3 * Number(options.minutes) * minute;
  const isOver = () => (Number(options.navigations) ? done.navigations >= Number(options.navigations)
    : elapsed() >= Number(options.minutes) * minute && isCompared());

  let nextRest = minute;
  // Early, so that the receiver of the first comparison is nearly as old as it.
  let nextRestart = 5 * second;
  while (!isOver()) {
    const restart = elapsed() >= nextRestart;
    if (restart) {
      nextRestart += lifeOfReceiver;
      delete before.receiver;
      delete before['media processes'];
    }
    const begin = Date.now();
    await Promise.all([round(url, !restart && !options.bare), restart && restartReceiver()]);
    busy += Date.now() - begin;
    if (elapsed() >= nextRest && isWarm() && !isOver()) {
      nextRest = (Math.floor(elapsed() / minute) + 1) * minute;
      truncateSync(television.workplace.logFile);
      const held = await rest(before);
      printLine(held);
      // The memory after a minute counts from then on; a receiver is compared with itself alone.
      growth(before, held).forEach((words) => check(false, `after ${elapsed() / minute | 0} minutes ${words}`));
      before = { ...held, ...before };
      warmFrom = Math.min(warmFrom, elapsed());
    }
  }
  const held = await rest(before);
  clearInterval(curves);
  printLine(held);
  for (const [program, quantities] of Object.entries(before)) {
    for (const what of Object.keys(quantities)) {
      const one = { [program]: { [what]: quantities[what] } };
      check(growth(one, held).length === 0, `at the end ${growth(one, held)}`);
    }
  }
  check(eventRate() > eventsPerSecond * 0.9, `only ${eventRate().toFixed(0)} events a second`);
  if (options.bare) return;
  check(done.heard > 0, 'no page heard an event');
  for (const job in reached) check(reached[job] > 0, `no page got through: ${job}`);
}

try {
  await soak();
} catch (error) {
  check(false, error.stack);
} finally {
  if (samples.length) {
    const file = path.resolve(options.out ?? path.join(here, '../../build/soak/curves.svg'));
    draw(file);
    console.log(`Curves: ${file}`);
  }
  await television?.close();
}
console.log(`${checks.passed} passed, ${checks.failed} failed`);
process.exit(checks.failed ? 1 : 0);
