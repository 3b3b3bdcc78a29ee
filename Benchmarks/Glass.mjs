// Processor time of a film on the screen, by turns: in a page that the processor composes with a software GL, in one
// without compositing, each with all processes of the shell, and in GStreamer's own GTK window. Prints JSON: for each
// height of the film, the milliseconds in a second of each round.
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

async function makeFilm(height) {
  const file = path.join(build, `film-${height}.mp4`);
  if (existsSync(file)) return file;
  const pipeline = `videotestsrc num-buffers=400 pattern=ball ! video/x-raw,format=I420,width=${widths[height]},height=${
    height},framerate=25/1 ! openh264enc bitrate=3000000 gop-size=25 ! h264parse ! mp4mux faststart=true ! filesink location=${
    file}.new`;
  await promisify(execFile)('gst-launch-1.0', ['-q', ...pipeline.split(' ')]);
  renameSync(`${file}.new`, file);
  return file;
}

const listOf = (file) => readFileSync(file, 'utf8').trim().split(' ').filter(Boolean).map(Number);

// Of a process and all that come from it, in milliseconds; those that have ended meanwhile do not count.
function processorTime(pid) {
  try {
    const [, user, system] = /\) (?:\S+ ){11}(\d+) (\d+)/.exec(readFileSync(`/proc/${pid}/stat`, 'utf8'));
    const children = readdirSync(`/proc/${pid}/task`).flatMap((task) => listOf(`/proc/${pid}/task/${task}/children`));
    return children.reduce((sum, child) => sum + processorTime(child), (Number(user) + Number(system)) * second / ticksPerSecond);
  } catch {
    return 0;
  }
}

async function measure(workplace, command, args) {
  const program = workplace.start(command, args);
  await pause(settling);
  const before = processorTime(program.pid);
  await pause(measured);
  const taken = processorTime(program.pid) - before;
  await workplace.stop(program);
  return taken * second / measured;
}

// As shipped: what is not logged is not formatted either.
process.env.HBBTV_LOG_LEVEL = 'warning';
const workplace = await Workplace.create();
const server = await PageServer.start();
try {
  const result = {};
  for (const height of Object.keys(widths)) {
    const file = await makeFilm(height);
    server.intercept(`/film-${height}.mp4`, (request, response) => response.end(readFileSync(file)));
    const film = server.url(`/film-${height}.mp4`);
    const address = server.write(`film-${height}.html`, page(film));
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
  console.log(JSON.stringify(result));
} finally {
  await server.close();
  await workplace.close();
}
