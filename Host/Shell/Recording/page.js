// The page around them: search, details, keys. What was recorded gets onto the page as text only.

const part = id => document.getElementById(id);
const recording = readRecording(part('recording').textContent);
const { entries, facts } = recording;
const count = (number, one, many) => `${number.toLocaleString('en')} ${number === 1 ? one : many}`;
let onlyErrors = false;
let shown = entries;

const timeline = new Timeline(part('timeline'), recording, { hover: showTip, choose });
const list = new List(part('list'), { choose });

function choose(entry) {
  list.select(entry);
  timeline.select(entry);
  showDetails(entry);
}

function entriesWith(text) {
  const words = text.toLowerCase().split(/\s+/).filter(Boolean);
  return entries.filter(entry => (!onlyErrors || entry.error) && words.every(word => entry.haystack.includes(word)));
}

function find() {
  const isAll = !part('find').value.trim() && !onlyErrors;
  shown = isAll ? entries : entriesWith(part('find').value);
  timeline.setFound(isAll ? null : shown);
  list.setEntries(shown);
  part('found').textContent = isAll ? '' : `${shown.length.toLocaleString('en')} found`;
  part('errors').setAttribute('aria-pressed', onlyErrors);
}

// The next of those that are shown, or the one before.
function walk(by) {
  if (!shown.length) return;
  const from = list.selected?.index ?? (by > 0 ? -1 : entries.length);
  const at = by > 0 ? list.after(from) : list.after(from - 1) - 1;
  choose(shown[(at + shown.length) % shown.length]);
}

function showTip(entry, event) {
  const tip = part('tip');
  tip.hidden = !entry;
  if (!entry) return;
  tip.replaceChildren(element('b', '', shortName(entry)), element('div', '', summaryOf(entry).slice(0, 300)),
    element('div', entry.error ? 'wrong' : '', timeOf(entry)));
  tip.style.left = `${Math.min(event.clientX + 14, innerWidth - tip.offsetWidth - 10)}px`;
  tip.style.top = `${Math.min(event.clientY + 18, innerHeight - tip.offsetHeight - 10)}px`;
}

const timeOf = entry => `at ${(entry.start / 1e6).toFixed(6)} s` +
  (entry.lane.id === 'shell' || entry.lane.id === 'console' ? '' : `, ${formatDuration(entry.end - entry.start)}`);

function showDetails(entry) {
  const box = part('details');
  box.scrollTop = 0;
  if (!entry) {
    box.replaceChildren(element('p', '', 'Choose an entry to see all of it.'));
    return;
  }
  const fields = element('dl');
  const add = (name, text, className) => text && fields.append(element('dt', '', name), element('dd', className, text));
  add('what', wordOf[entry.kind] ?? entry.kind);
  add('when', timeOf(entry));
  add('process', entry.process ? String(entry.process) : '');
  add('where', entry.where);
  add(entry.lane.id === 'console' ? 'text' : entry.kind === 'set' ? 'value' : 'arguments', entry.args.replace(/, (?=\w+=)/g, '\n'));
  add('result', entry.result.replace(/, (?=\w+=)/g, '\n'));
  add('error', entry.error, 'wrong');
  const heading = element('h2', entry.error ? 'wrong' : '', entry.name);
  box.replaceChildren(heading, fields);
  const link = (title, others) => {
    if (!others.length) return;
    box.append(element('h3', '', title));
    for (const other of others.slice(0, 200)) {
      const button = element('button', 'entry', `${shortName(other)} \u00b7 ${formatDuration(other.end - other.start)}`);
      button.style.color = `var(--${other.error ? 'error' : other.lane.id})`;
      button.addEventListener('click', () => choose(other));
      box.append(button);
    }
  };
  link('Within', entry.parent ? [entry.parent] : []);
  const inside = [];
  for (let at = entry.index + 1; at < entries.length && entries[at].start <= entry.end; ++at) {
    if (entries[at].parent === entry) inside.push(entries[at]);
  }
  link('In it', inside);
}

part('find').addEventListener('input', find);
part('find').addEventListener('keydown', event => {
  if (event.key === 'Enter') walk(event.shiftKey ? -1 : 1);
});
part('errors').addEventListener('click', () => { onlyErrors = !onlyErrors; find(); });
part('all').addEventListener('click', () => timeline.showAll());

const keys = {
  ArrowLeft: () => timeline.move(-0.15),
  ArrowRight: () => timeline.move(0.15),
  ArrowUp: () => walk(-1),
  ArrowDown: () => walk(1),
  Enter: () => walk(1),
  '+': () => timeline.zoom(0.6),
  '-': () => timeline.zoom(1 / 0.6),
  0: () => timeline.showAll(),
  Home: () => timeline.showAll(),
  e: () => part('errors').click(),
  z: () => list.selected && timeline.showEntry(list.selected),
  '/': () => part('find').focus()
};

addEventListener('keydown', event => {
  if (event.ctrlKey || event.altKey || event.metaKey) return;
  if (event.key === 'Escape') {
    part('find').value = '';
    part('find').blur();
    onlyErrors = false;
    find();
    choose(null);
    return;
  }
  const isTyping = event.target === part('find') && event.key !== 'ArrowUp' && event.key !== 'ArrowDown';
  const isButton = event.target instanceof HTMLButtonElement && event.key === 'Enter';
  const act = isTyping || isButton ? null : keys[event.key] ?? keys[event.key.toLowerCase()];
  if (!act) return;
  event.preventDefault();
  act();
});

// The page begins at the first entry in which the words behind the # of the address are.
function goToAddress() {
  let words = location.hash.slice(1);
  try {
    words = decodeURIComponent(words);
  } catch { /* as it is */ }
  const [first] = words ? entriesWith(words) : [];
  if (!first) return;
  choose(first);
  timeline.showEntry(first);
}
addEventListener('hashchange', goToAddress);

part('title').textContent = facts.title || 'Recording';
document.title = `Recording of ${facts.title}`;
part('summary').textContent = [
  count(entries.length, 'entry', 'entries'),
  formatDuration(recording.end),
  count(entries.filter(entry => entry.error).length, 'error', 'errors'),
  facts.gone && `the ${count(facts.gone, 'oldest is', 'oldest are')} gone`,
  recording.unread && `${recording.unread} cannot be read`
].filter(Boolean).join(' \u00b7 ');
choose(null);
timeline.showAll();
find();
goToAddress();
