// The lanes on a canvas. Where many entries are within a pixel one is drawn, so that a picture costs the same however
// many there are.

const labelWidth = 112;
const rulerHeight = 26;
const rowHeight = 20;
const laneGap = 10;
const closest = 20; // Microseconds across the screen.

// The first index whose value is more than the limit, among items whose values never fall.
function firstAbove(items, limit, valueOf = item => item) {
  let low = 0;
  let high = items.length;
  while (low < high) {
    const middle = (low + high) >> 1;
    if (valueOf(items[middle]) > limit) high = middle;
    else low = middle + 1;
  }
  return low;
}

// Entries of a row, to be looked up by time.
class Strip {
  constructor(entries) {
    this.entries = entries;
    this.starts = Float64Array.from(entries, entry => entry.start);
    let latest = 0;
    this.ends = Float64Array.from(entries, entry => latest = Math.max(latest, entry.end));
  }

  // One for each pixel at most, unless it is longer.
  * within(from, to, pixel) {
    let at = firstAbove(this.ends, from - pixel);
    while (at < this.entries.length && this.starts[at] <= to) {
      const entry = this.entries[at];
      yield entry;
      const edge = entry.start + pixel;
      const next = entry.end > edge ? at + 1 : firstAbove(this.starts, edge);
      at = next > at + 1 && this.ends[next - 1] > edge ? Math.max(at + 1, next - 1) : Math.max(at + 1, next);
    }
  }
}

class Timeline {
  constructor(canvas, recording, { hover, choose }) {
    Object.assign(this, { canvas, recording, hover, choose, selected: null, from: 0, to: recording.end, isPlanned: false });
    this.strips = lanes.map(lane => lane.rows.map(row => ({
      all: new Strip(row.entries), errors: new Strip(row.entries.filter(entry => entry.error)), found: null
    })));
    this.height = rulerHeight + this.strips.reduce((sum, rows) => sum + rows.length * rowHeight + laneGap, 0);
    canvas.style.height = `${this.height}px`;
    canvas.addEventListener('wheel', event => this.#wheel(event), { passive: false });
    canvas.addEventListener('pointerdown', event => this.#press(event));
    canvas.addEventListener('pointermove', event => this.#move(event));
    canvas.addEventListener('pointerup', event => this.#release(event));
    canvas.addEventListener('pointerleave', () => hover(null));
    new ResizeObserver(() => this.plan()).observe(canvas);
    matchMedia('(prefers-color-scheme: light)').addEventListener('change', () => this.plan());
  }

  get #width() { return Math.max(this.canvas.clientWidth - labelWidth, 1); }
  get #pixel() { return (this.to - this.from) / this.#width; }
  #x(time) { return labelWidth + (time - this.from) / this.#pixel; }
  #time(x) { return this.from + (x - labelWidth) * this.#pixel; }

  show(from, to) {
    const most = this.recording.end * 1.04;
    const span = Math.min(Math.max(to - from, closest), most);
    const begin = Math.min(Math.max((from + to - span) / 2, -most * 0.02), this.recording.end * 1.02 - span);
    this.from = begin;
    this.to = begin + span;
    this.plan();
  }

  showAll() { this.show(-this.recording.end * 0.02, this.recording.end * 1.02); }

  zoom(factor, at = (this.from + this.to) / 2) {
    const span = Math.max((this.to - this.from) * factor, closest);
    const share = (at - this.from) / (this.to - this.from);
    this.show(at - span * share, at + span * (1 - share));
  }

  move(share) {
    const by = (this.to - this.from) * share;
    this.show(this.from + by, this.to + by);
  }

  // The entry, with some of what is around it.
  showEntry(entry) {
    const span = Math.max((entry.end - entry.start) * 2, 2000);
    const middle = (entry.start + entry.end) / 2;
    this.show(middle - span / 2, middle + span / 2);
  }

  select(entry) {
    this.selected = entry;
    const span = this.to - this.from;
    if (entry && (entry.end < this.from || entry.start > this.to)) this.show(entry.start - span / 3, entry.start + span * 2 / 3);
    this.plan();
  }

  // Null: all of them.
  setFound(found) {
    for (const rows of this.strips) for (const row of rows) row.found = null;
    if (found) {
      const parts = this.strips.map(rows => rows.map(() => []));
      for (const entry of found) parts[lanes.indexOf(entry.lane)][entry.row].push(entry);
      this.strips.forEach((rows, lane) => rows.forEach((row, at) => row.found = new Strip(parts[lane][at])));
    }
    this.plan();
  }

  plan() {
    if (this.isPlanned) return;
    this.isPlanned = true;
    requestAnimationFrame(() => {
      this.isPlanned = false;
      this.#draw();
    });
  }

  * #rows() {
    let y = rulerHeight;
    for (const [at, rows] of this.strips.entries()) {
      for (const row of rows) {
        yield { lane: lanes[at], row, y };
        y += rowHeight;
      }
      y += laneGap;
    }
  }

  #draw() {
    const scale = devicePixelRatio || 1;
    const width = this.canvas.clientWidth;
    this.canvas.width = Math.round(width * scale);
    this.canvas.height = Math.round(this.height * scale);
    const pen = this.canvas.getContext('2d');
    pen.scale(scale, scale);
    const style = getComputedStyle(document.documentElement);
    const colour = name => style.getPropertyValue(`--${name}`).trim();
    pen.font = '12px system-ui, "DejaVu Sans", sans-serif';
    pen.textBaseline = 'middle';
    this.#drawRuler(pen, colour);
    pen.save();
    pen.beginPath();
    pen.rect(labelWidth, 0, width - labelWidth, this.height);
    pen.clip();
    for (const { lane, row, y } of this.#rows()) {
      this.#drawStrip(pen, row.all, y, colour(lane.id), colour, row.found !== null);
      this.#drawStrip(pen, row.found ?? row.errors, y, colour(lane.id), colour, false);
    }
    pen.restore();
    let above = -1;
    for (const { lane, y } of this.#rows()) {
      if (lanes.indexOf(lane) === above) continue;
      above = lanes.indexOf(lane);
      pen.fillStyle = colour('line');
      pen.fillRect(0, y - laneGap / 2, width, 1);
      pen.fillStyle = colour(lane.id);
      pen.fillRect(10, y + 5, 8, 8);
      pen.fillStyle = colour('text');
      pen.fillText(lane.name, 26, y + rowHeight / 2);
    }
  }

  #drawRuler(pen, colour) {
    const rough = this.#pixel * 110;
    const power = 10 ** Math.floor(Math.log10(rough));
    const step = [1, 2, 5, 10].map(factor => factor * power).find(each => each >= rough);
    const [unit, name] = step >= 1e5 ? [1e6, 's'] : step >= 100 ? [1e3, 'ms'] : [1, '\u00b5s'];
    const digits = Math.max(0, Math.ceil(-Math.log10(step / unit) - 1e-9));
    for (let tick = Math.ceil(Math.max(this.from, 0) / step) * step; tick <= this.to; tick += step) {
      const x = this.#x(tick);
      if (x < labelWidth) continue;
      pen.fillStyle = colour('line');
      pen.fillRect(x, 0, 1, this.height);
      pen.fillStyle = colour('soft');
      pen.fillText(`${(tick / unit).toFixed(digits)} ${name}`, x + 5, rulerHeight / 2 - 2);
    }
  }

  #drawStrip(pen, strip, y, fill, colour, isDim) {
    const [from, to, pixel] = [this.from, this.to, this.#pixel];
    let last = null;
    const label = (entry, limit) => {
      const left = Math.max(this.#x(entry.start), labelWidth);
      const right = this.#x(entry.end);
      // In the bar, or behind one that is too narrow, as far as nothing is there.
      const inside = right - left > 40;
      const x = inside ? left + 5 : Math.max(right, left + 3) + 4;
      const room = (inside ? Math.min(right, this.canvas.clientWidth) : Math.min(limit, this.canvas.clientWidth)) - x - 3;
      if (room < 26) return;
      pen.save();
      pen.beginPath();
      pen.rect(x, y, room, rowHeight);
      pen.clip();
      pen.fillStyle = colour(isDim ? 'soft' : inside ? 'back' : 'text');
      pen.fillText(entry.label.slice(0, 200), x, y + rowHeight / 2);
      pen.restore();
    };
    for (const entry of strip.within(from, to, pixel)) {
      const left = Math.max(this.#x(entry.start), labelWidth - 4);
      const width = Math.max(Math.min(this.#x(entry.end), this.canvas.clientWidth + 4) - left, 3);
      if (last) label(last, left);
      pen.globalAlpha = isDim ? 0.3 : 1;
      pen.fillStyle = entry.error ? colour('error') : fill;
      pen.fillRect(left, y + 2, width, rowHeight - 4);
      pen.globalAlpha = 1;
      if (entry === this.selected) {
        pen.strokeStyle = colour('strong');
        pen.lineWidth = 2;
        pen.strokeRect(left - 1, y + 1, width + 2, rowHeight - 2);
      }
      last = entry;
    }
    if (last) label(last, Infinity);
  }

  // The entry under the pointer, or close by when it is narrow.
  at(x, y) {
    if (x < labelWidth) return null;
    const hit = [...this.#rows()].find(row => y >= row.y && y < row.y + rowHeight);
    if (!hit) return null;
    const time = this.#time(x);
    const reach = this.#pixel * 4;
    let best = null;
    const distance = entry => Math.max(entry.start - time, time - entry.end, 0);
    for (const entry of (hit.row.found ?? hit.row.all).within(time - reach, time + reach, this.#pixel)) {
      if (distance(entry) <= reach && (!best || distance(entry) < distance(best))) best = entry;
    }
    return best;
  }

  #wheel(event) {
    event.preventDefault();
    const sideways = event.shiftKey ? event.deltaY || event.deltaX : event.deltaX;
    if (Math.abs(sideways) > Math.abs(event.shiftKey ? 0 : event.deltaY)) this.move(Math.sign(sideways) * 0.1);
    else this.zoom(event.deltaY > 0 ? 1.25 : 0.8, this.#time(event.offsetX));
  }

  #press(event) {
    this.canvas.setPointerCapture(event.pointerId);
    this.drag = { x: event.offsetX, from: this.from, to: this.to, hasMoved: false };
  }

  #move(event) {
    if (!this.drag) {
      this.hover(this.at(event.offsetX, event.offsetY), event);
      return;
    }
    const by = (this.drag.x - event.offsetX) * this.#pixel;
    this.drag.hasMoved ||= Math.abs(event.offsetX - this.drag.x) > 3;
    if (!this.drag.hasMoved) return;
    this.canvas.classList.add('dragged');
    this.show(this.drag.from + by, this.drag.to + by);
  }

  #release(event) {
    if (this.drag && !this.drag.hasMoved) this.choose(this.at(event.offsetX, event.offsetY));
    this.drag = null;
    this.canvas.classList.remove('dragged');
  }
}
