#!/usr/bin/env node
// Makes the pictures that the channels of a scenario name, from GStreamer's own test sources.
//
//     Tools/Scripts/make-pictures.mjs SCENARIO FOLDER
//
// Each is 6 s of H.264 and AAC, 640x360: something that moves, the channel's name, colours and a tone of its own; of a
// radio channel there is the tone only. What is there already is left alone. Needs no network; takes half a minute.
import { execFileSync } from 'node:child_process';
import { existsSync, mkdirSync, mkdtempSync, readFileSync, renameSync, rmSync, writeFileSync } from 'node:fs';
import { join } from 'node:path';

const seconds = 6;
const framesPerSecond = 25;
const motions = [
  'pattern=zone-plate kx2=12 ky2=12 kt=2', 'pattern=pinwheel horizontal-speed=4', 'pattern=zone-plate kx=6 ky=6 kt=-4',
  'pattern=ball motion=sweep', 'pattern=bar horizontal-speed=4', 'pattern=zone-plate kx=10 kt=4', 'pattern=ball',
  'pattern=spokes horizontal-speed=-4', 'pattern=smpte horizontal-speed=4'
].map((properties) => properties.split(' '));

// From a hue in degrees, and shares of 1.
function colour(hue, saturation, lightness) {
  const part = (offset) => {
    const place = (offset + hue / 30) % 12;
    const strength = saturation * Math.min(lightness, 1 - lightness) * Math.max(-1, Math.min(place - 3, 9 - place, 1));
    return Math.round(255 * (lightness - strength)).toString(16).padStart(2, '0');
  };
  return part(0) + part(8) + part(4);
}

const escaped = (text) => text.replace(/[<>&"]/g, (character) => `&#${character.charCodeAt(0)};`);

const label = (name, hue) => `<svg xmlns="http://www.w3.org/2000/svg" width="640" height="360">
  <rect y="270" width="640" height="70" fill="#${colour(hue, 0.8, 0.35)}"/>
  <text x="32" y="320" font-family="sans-serif" font-weight="bold" font-size="42" fill="white">${escaped(name)}</text>
</svg>`;

function make({ name, type }, index, work) {
  const hue = (index * 137.5) % 360;
  const film = join(work, 'film');
  const svg = join(work, 'label.svg');
  writeFileSync(svg, label(name, hue));
  const picture = ['videotestsrc', `num-buffers=${seconds * framesPerSecond}`, ...motions[index % motions.length],
    `background-color=0xff${colour(hue, 0.6, 0.2)}`, `foreground-color=0xff${colour(hue, 0.8, 0.65)}`,
    '!', `video/x-raw,format=I420,width=640,height=360,framerate=${framesPerSecond}/1`,
    '!', 'videoconvert', '!', 'rsvgoverlay', `location=${svg}`, '!', 'videoconvert',
    '!', 'openh264enc', 'bitrate=400000', `gop-size=${framesPerSecond}`, '!', 'h264parse', '!', 'queue', '!', 'mux.'];
  const pipeline = ['mp4mux', 'name=mux', 'faststart=true', '!', 'filesink', `location=${film}`,
    ...(type === 'radio' ? [] : picture),
    'audiotestsrc', `num-buffers=${seconds * 50}`, 'samplesperbuffer=960', `freq=${220 + 40 * index}`, 'volume=0.1',
    '!', 'audio/x-raw,rate=48000,channels=2', '!', 'avenc_aac', '!', 'aacparse', '!', 'queue', '!', 'mux.'];
  const told = execFileSync('gst-launch-1.0', ['-q', ...pipeline], { stdio: 'pipe', timeout: 120000 });
  // It answers 0 to a pipeline with an unknown element.
  if (!existsSync(film)) throw new Error(`the picture of ${name} could not be made\n${told}`);
  return film;
}

const [scenario, folder, ...rest] = process.argv.slice(2);
if (!folder || rest.length) {
  console.error('make-pictures: give a scenario and the folder to make the pictures in');
  process.exit(2);
}
mkdirSync(folder, { recursive: true });
const work = mkdtempSync(join(folder, '.making-'));
try {
  JSON.parse(readFileSync(scenario, 'utf8')).broadcast.channels.forEach((channel, index) => {
    const target = join(folder, channel.picture ?? '.');
    if (!existsSync(target)) renameSync(make(channel, index, work), target);
  });
} finally {
  rmSync(work, { recursive: true });
}
