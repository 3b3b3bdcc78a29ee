// Processor time of a film on the screen, by turns: in a page that the processor composes with a software GL, in one
// without compositing, and in GStreamer's own GTK window. It is that of all processes, the display server's too, because
// each way leaves that another part of the work. Then, without compositing, how many of a film's pictures the display
// showed. Prints JSON: for each height of the film, the milliseconds in a second of each round, and of 720p the pictures
// seen and those that the film has.
import { execFile } from 'node:child_process';
import { existsSync, readFileSync, readdirSync, renameSync } from 'node:fs';
import path from 'node:path';
import { setTimeout as pause } from 'node:timers/promises';
import { promisify } from 'node:util';
import { build, shell } from '../Tests/Browser/Harness/programs.mjs';
import { PageServer } from '../Tests/Browser/Harness/pages.mjs';
import { Workplace } from '../Tests/Browser/Harness/workplace.mjs';

const rounds = 3;
const second = 1000;
const settling = 4 * second;
const measured = 6 * second;
const ticksPerSecond = 100;
const widths = { 720: 1280, 1080: 1920 };

const page = (film) => `<!DOCTYPE html><title>Film</title><body style="margin: 0"><object type="video/mp4" data="${film}"
  style="position: absolute; left: 0; top: 0; width: 1280px; height: 720px"></object><script>
  addEventListener('load', () => document.querySelector('object').play(1));</script></body>`;

async function makeFilm(name, height, source, input) {
  const file = path.join(build, `${name}.mp4`);
  if (existsSync(file)) return file;
  const pipeline = `${source} ! video/x-raw,format=I420,width=${widths[height]},height=${
    height},framerate=25/1 ! openh264enc bitrate=3000000 gop-size=25 ! h264parse ! mp4mux faststart=true ! filesink location=${
    file}.new`;
  const launched = promisify(execFile)('gst-launch-1.0', ['-q', ...pipeline.split(' ')]);
  launched.child.stdin.end(input);
  await launched;
  renameSync(`${file}.new`, file);
  return file;
}

// Each picture says which it is, from 1: black and white stripes, the lowest binary digit at the left.
const stripes = 10;
const numbered = { count: 250, width: 160, height: 90 };
const makeNumberedFilm = () => makeFilm('film-numbered', 720,
  `fdsrc ! rawvideoparse format=gray8 width=${numbered.width} height=${numbered.height} framerate=25/1 ! videoconvert`
    + ' ! videoscale method=nearest-neighbour',
  Buffer.concat(Array.from({ length: numbered.count }, (_, number) =>
    Buffer.alloc(numbered.width * numbered.height).map((_, i) =>
      (number + 1) >> Math.floor(i % numbered.width / (numbered.width / stripes)) & 1 ? 235 : 16))));

// One row of the display, many times a second.
async function countPictures(workplace, address) {
  const seen = new Set();
  const rate = 200;
  const row = path.join(build, 'film-row.raw');
  const [width, bytes] = [1280, 4];
  const source = `ximagesrc use-damage=false show-pointer=false starty=360 endy=360 endx=${width - 1}`;
  const camera = workplace.start('gst-launch-1.0', ['-q', ...source.split(' '), '!', `video/x-raw,framerate=${rate}/1`, '!',
    'filesink', `location=${row}`]);
  const program = workplace.start(shell(), ['--quiet', address]);
  await pause(numbered.count / 25 * second + 2 * settling);
  await workplace.stop(program);
  await workplace.stop(camera);
  const rows = readFileSync(row);
  for (let start = 0; start + width * bytes <= rows.length; start += width * bytes) {
    const levels = Array.from({ length: stripes }, (_, i) => rows[start + Math.floor((i + 0.5) * width / stripes) * bytes]);
    if (levels.every((level) => level < 64 || level > 192))
      seen.add(levels.reduce((number, level, i) => number + (level > 192 ? 1 << i : 0), 0));
  }
  return [...seen].filter((number) => number >= 1 && number <= numbered.count).length;
}

const publish = (server, name, file) => {
  server.intercept(`/${name}.mp4`, (request, response) => response.end(readFileSync(file)));
  const film = server.url(`/${name}.mp4`);
  return { film, address: server.write(`${name}.html`, page(film)) };
};

const listOf = (file) => readFileSync(file, 'utf8').trim().split(' ').filter(Boolean).map(Number);

// Of all processes that come from this one, in milliseconds; those that have ended meanwhile do not count.
const childrenOf = (pid) => readdirSync(`/proc/${pid}/task`).flatMap((task) => listOf(`/proc/${pid}/task/${task}/children`));
const processorTime = (pid) => childrenOf(pid).reduce((sum, child) => {
  try {
    const [, user, system] = /\) (?:\S+ ){11}(\d+) (\d+)/.exec(readFileSync(`/proc/${child}/stat`, 'utf8'));
    return sum + (Number(user) + Number(system)) * second / ticksPerSecond + processorTime(child);
  } catch {
    return sum;
  }
}, 0);

async function measure(workplace, command, args) {
  const program = workplace.start(command, args);
  await pause(settling);
  const before = processorTime('self');
  await pause(measured);
  const taken = processorTime('self') - before;
  await workplace.stop(program);
  return taken * second / measured;
}

// As shipped: what is not logged is not formatted either.
process.env.HBBTV_LOG_LEVEL = 'warning';
const workplace = new Workplace();
const server = new PageServer();
try {
  await workplace.begin();
  await server.begin();
  const result = {};
  for (const height of Object.keys(widths)) {
    const file = await makeFilm(`film-${height}`, height, 'videotestsrc num-buffers=400 pattern=ball');
    const { film, address } = publish(server, `film-${height}`, file);
    const times = { softwareGl: [], page: [], bare: [] };
    for (let round = 0; round < rounds; round++) {
      times.softwareGl.push(await measure(workplace, shell(), ['--quiet', address]));
      workplace.env.WEBKIT_DISABLE_COMPOSITING_MODE = '1';
      times.page.push(await measure(workplace, shell(), ['--quiet', address]));
      delete workplace.env.WEBKIT_DISABLE_COMPOSITING_MODE;
      times.bare.push(await measure(workplace, 'gst-launch-1.0', ['-q', 'playbin3', `uri=${film}`, 'video-sink=gtksink']));
    }
    result[height] = times;
  }
  workplace.env.WEBKIT_DISABLE_COMPOSITING_MODE = '1';
  const { address } = publish(server, 'film-numbered', await makeNumberedFilm());
  result.pictures = { seen: await countPictures(workplace, address), all: numbered.count };
  console.log(JSON.stringify(result));
} finally {
  await server.close();
  await workplace.close();
}
