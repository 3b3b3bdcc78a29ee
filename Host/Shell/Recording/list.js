// The entries one below the other. Only those that are seen have elements.

const lineHeight = 24;

function element(name, className, text) {
  const made = document.createElement(name);
  if (className) made.className = className;
  if (text !== undefined) made.textContent = text;
  return made;
}

class List {
  constructor(box, { choose }) {
    Object.assign(this, { box, choose, entries: [], selected: null });
    this.space = box.querySelector('#space');
    this.rows = box.querySelector('#rows');
    box.addEventListener('scroll', () => this.draw());
    new ResizeObserver(() => this.draw()).observe(box);
  }

  setEntries(entries) {
    this.entries = entries;
    this.space.style.height = `${entries.length * lineHeight}px`;
    this.box.scrollTop = 0;
    this.draw();
  }

  select(entry) {
    this.selected = entry;
    const at = entry ? this.indexOf(entry) : -1;
    if (at >= 0) {
      const top = at * lineHeight;
      if (top < this.box.scrollTop || top > this.box.scrollTop + this.box.clientHeight - lineHeight)
        this.box.scrollTop = top - this.box.clientHeight / 2;
    }
    this.draw();
  }

  // Where the entry is, or -1. They are in the order of their indices.
  indexOf(entry) {
    const at = this.after(entry.index - 1);
    return this.entries[at] === entry ? at : -1;
  }

  // The first place of an entry behind the index.
  after(index) { return firstAbove(this.entries, index, entry => entry.index); }

  draw() {
    const first = Math.max(0, Math.floor(this.box.scrollTop / lineHeight) - 2);
    const count = Math.ceil(this.box.clientHeight / lineHeight) + 4;
    this.rows.style.top = `${first * lineHeight}px`;
    this.rows.replaceChildren(...this.entries.slice(first, first + count).map(entry => this.#row(entry)));
  }

  #row(entry) {
    const row = element('div', 'row');
    row.classList.toggle('selected', entry === this.selected);
    row.classList.toggle('wrong', entry.error !== '');
    const kind = element('span', 'kind', wordOf[entry.kind] ?? entry.kind);
    kind.style.color = `var(--${entry.lane.id})`;
    let depth = 0;
    for (let around = entry.parent; around; around = around.parent) depth += 1;
    const name = element('span', 'name');
    name.append(element('span', 'nested', '\u2502 '.repeat(Math.min(depth, 8))), shortName(entry));
    row.append(element('span', 'time', `${(entry.start / 1e6).toFixed(4)} s`),
      element('span', 'duration', entry.kind === 'text' || entry.kind === 'shell' ? '' : formatDuration(entry.end - entry.start)),
      kind, name, element('span', 'text', summaryOf(entry)));
    row.addEventListener('click', () => this.choose(entry));
    return row;
  }
}

const shortName = entry => entry.name.startsWith(prefix) ? entry.name.slice(prefix.length) : entry.name;

function summaryOf(entry) {
  const args = entry.kind === 'call' || entry.lane.id === 'bus' ? `(${entry.args})` : entry.args;
  if (entry.error && entry.error !== entry.args) return `${args} \u2717 ${entry.error}`;
  return entry.result && entry.result !== 'undefined' ? `${args} \u2192 ${entry.result}` : args;
}
