// What the processes of a workplace hold, as the kernel counts it.
import { readFileSync, readdirSync, readlinkSync } from 'node:fs';
import { basename } from 'node:path';

// What is looked at, by the name of the program.
export const programs = {
  WebKitWebProcess: 'web process',
  'hbbtv-receiver': 'receiver',
  'hbbtv-media': 'media processes',
  'hbbtv-shell': 'shell',
};

// A process of another user, or one that ended while it was looked at, is none of ours.
function attempt(read) {
  try {
    return read();
  } catch {
    return undefined;
  }
}

const kilobytes = (text, field) => Number(new RegExp(`^${field}: +(\\d+) kB`, 'm').exec(text)[1]);

// Memory that the process alone has written, in MiB: what it shares with others changes with their lives. The C heap is
// the part of it that malloc has.
function holdings(pid) {
  const text = readFileSync(`/proc/${pid}/smaps_rollup`, 'utf8');
  const heap = /\[heap\]\n(?:\w+:.*\n)+/.exec(readFileSync(`/proc/${pid}/smaps`, 'utf8'))?.[0];
  return {
    'C heap': heap ? kilobytes(heap, 'Private_Dirty') / 1024 : 0,
    memory: (kilobytes(text, 'Private_Dirty') + kilobytes(text, 'Swap')) / 1024,
    descriptors: readdirSync(`/proc/${pid}/fd`).length,
    threads: readdirSync(`/proc/${pid}/task`).length,
  };
}

// By what they are called above: { memory, descriptors, threads, processes }, of all processes that have this session bus.
export function measure(busAddress) {
  const found = {};
  for (const name of Object.values(programs)) found[name] = { 'C heap': 0, memory: 0, descriptors: 0, threads: 0, processes: 0 };
  for (const pid of readdirSync('/proc').filter((entry) => /^\d+$/.test(entry))) {
    const name = programs[basename(attempt(() => readlinkSync(`/proc/${pid}/exe`)) ?? '')];
    if (!name || !attempt(() => readFileSync(`/proc/${pid}/environ`, 'utf8'))?.includes(busAddress)) continue;
    const held = attempt(() => holdings(pid));
    if (!held) continue;
    for (const quantity in held) found[name][quantity] += held[quantity];
    found[name].processes++;
  }
  return found;
}
