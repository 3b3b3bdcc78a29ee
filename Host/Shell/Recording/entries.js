'use strict';
// What was recorded, as objects: read, put in order and into lanes.

const lanes = ['shell', 'page', 'bus', 'signal', 'handler', 'console']
  .map((id, i) => ({ id, name: ['Keys, pages', 'Page calls', 'Bus calls', 'Signals', 'Handlers', 'Console'][i], rows: [] }));
const laneOf = { shell: 0, call: 1, get: 1, set: 1, bus: 2, send: 2, signal: 3, handler: 4, text: 5 };
const wordOf = { get: 'read', set: 'write', text: 'console' };
const mostRows = 5;
const prefix = 'org.vantrel.hbbtv.';
const keyNames = {
  13: 'ENTER', 19: 'PAUSE', 32: 'SPACE', 33: 'PAGE UP', 34: 'PAGE DOWN', 35: 'END', 36: 'HOME', 37: 'LEFT', 38: 'UP', 39: 'RIGHT', 40: 'DOWN',
  403: 'RED', 404: 'GREEN', 405: 'YELLOW', 406: 'BLUE', 412: 'REWIND', 413: 'STOP', 415: 'PLAY', 416: 'RECORD', 417: 'FAST FWD',
  424: 'PREV', 425: 'NEXT', 427: 'CHANNEL UP', 428: 'CHANNEL DOWN', 447: 'VOLUME UP', 448: 'VOLUME DOWN', 449: 'MUTE',
  457: 'INFO', 458: 'GUIDE', 459: 'TELETEXT', 460: 'SUBTITLE', 461: 'BACK', 462: 'MENU', 463: 'PLAY PAUSE'
};
const keyName = code => keyNames[code] ?? (code >= 48 && code <= 90 ? String.fromCharCode(code) : code);

// A line of the terminal: a message of a page's console, or what a program says.
function readText(entry) {
  const text = entry.args.replace(/\x1b\[\d*m/g, '');
  const message = /^(.*?): CONSOLE ((?:[A-Z-]+ )?(?:LOG|INFO|WARN|ERROR|DEBUG)) ?(.*)$/s.exec(text);
  entry.name = message ? message[2].toLowerCase() : /^(HBBTV|[\w-]+(?=:))/.exec(text)?.[0] ?? entry.name;
  entry.where = message?.[1] ?? '';
  entry.args = message ? message[3] : text;
  if (message?.[2].endsWith('ERROR') || /^hbbtv-shell: .*cannot /.test(text)) entry.error = entry.args;
}

// An array of one line, or null when it is none of an entry.
function entryOf(line) {
  let fields;
  try {
    fields = JSON.parse(line);
  } catch {
    return null;
  }
  if (!Array.isArray(fields) || fields.length !== 9) return null;
  const [kind, process, serial, start, duration, ...texts] = fields;
  const isNumber = value => Number.isFinite(value);
  if (!Object.hasOwn(laneOf, kind) || ![process, serial, start].every(isNumber) || !(duration === null || isNumber(duration)))
    return null;
  const [name, args, result, error] = texts.map(String);
  return { kind, process, serial, start, duration, end: start + duration, name, args, result, error, where: '', row: 0, parent: null };
}

function readRecording(text) {
  const [first, ...lines] = text.trim().split('\n');
  const facts = JSON.parse(first);
  const byId = new Map();
  let entries = [];
  let unread = 0;
  for (const line of lines) {
    const entry = entryOf(line);
    if (!entry) {
      unread += 1;
      continue;
    }
    entries.push(entry);
    // What has begun is told once more when it is over.
    const id = `${entry.process}:${entry.serial}`;
    if (entry.process && byId.has(id)) byId.get(id).isRepeated = true;
    byId.set(id, entry);
  }
  entries = entries.filter(entry => !entry.isRepeated);
  entries.sort((a, b) => a.start - b.start || a.serial - b.serial);
  const begin = entries.length ? entries[0].start : 0;
  const end = entries.reduce((latest, entry) => Math.max(latest, entry.end), begin);
  entries.forEach((entry, index) => {
    entry.index = index;
    entry.isOpen = entry.duration === null;
    if (entry.isOpen) {
      entry.end = end;
      entry.error ||= 'not over when the recording ended';
    }
    entry.start -= begin;
    entry.end -= begin;
    entry.lane = lanes[laneOf[entry.kind]];
    if (entry.kind === 'text') readText(entry);
    if (entry.kind === 'shell') entry.name = entry.name.replace(/^key (\d+)$/, (_, code) => keyName(Number(code)));
    entry.label = entry.name.startsWith(prefix) ? entry.name.slice(prefix.length) : entry.name;
    if (entry.kind === 'text') entry.label = entry.args;
    if (entry.kind === 'set') entry.label += ` = ${entry.args}`;
    if (entry.kind === 'call' || entry.lane.id === 'bus') entry.label += `(${entry.args})`;
    entry.haystack = `${wordOf[entry.kind] ?? entry.kind}\n${entry.name}\n${entry.args}\n${entry.result}\n${entry.error}\n${entry.where}`.toLowerCase();
  });
  findParents(entries);
  fillLanes(entries);
  return { facts, entries, unread, end: Math.max(end - begin, 1) };
}

// Of one process, what lies within what.
function findParents(entries) {
  const open = new Map();
  for (const entry of entries) {
    if (!entry.process) continue;
    if (!open.has(entry.process)) open.set(entry.process, []);
    const around = open.get(entry.process);
    while (around.length && around.at(-1).end < entry.end) around.pop();
    while (around.length && around.at(-1).end <= entry.start && around.at(-1).serial > entry.serial) around.pop();
    entry.parent = around.at(-1) ?? null;
    around.push(entry);
  }
}

// Entries that overlap are in rows of their own, as far as there are any.
function fillLanes(entries) {
  for (const lane of lanes) lane.rows = [{ free: 0, entries: [] }];
  for (const entry of entries) {
    const { rows } = entry.lane;
    let at = rows.findIndex(row => row.free <= entry.start);
    if (at < 0 && rows.length < mostRows) at = rows.push({ free: 0, entries: [] }) - 1;
    if (at < 0) at = rows.length - 1;
    rows[at].free = Math.max(rows[at].free, entry.end);
    rows[at].entries.push(entry);
    entry.row = at;
  }
}

const formatDuration = us =>
  us < 1 ? '< 1 \u00b5s' : us < 1000 ? `${Math.round(us)} \u00b5s` : us < 1e6 ? `${(us / 1000).toPrecision(3)} ms` : `${(us / 1e6).toFixed(2)} s`;
