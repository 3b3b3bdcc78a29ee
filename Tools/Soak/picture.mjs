// Curves over time as one SVG: a panel a quantity, all with the same axis of minutes and one legend.
const width = 1180;
const columns = 2;
const panel = { width: 480, height: 200, left: 80, right: 30, top: 46, bottom: 44 };
const head = 84;
const colours = ['#1f6fb4', '#d1541b', '#2c8c3c', '#8a4fb0', '#b8860b'];

const escaped = (text) => String(text).replace(/[&<>"]/g, (c) => `&#${c.charCodeAt(0)};`);
const text = (x, y, words, more = '') => `<text x="${x}" y="${y}" ${more}>${escaped(words)}</text>`;

// Round steps, about `wanted` of them up to `top`.
function stepOf(top, wanted) {
  const rough = top / wanted;
  const power = 10 ** Math.floor(Math.log10(rough));
  return [1, 2, 5, 10].map((factor) => factor * power).find((step) => step >= rough);
}

function drawPanel({ title, unit, series }, index, minutes, marks) {
  const x0 = panel.left + (index % columns) * (width / columns);
  const y0 = head + Math.floor(index / columns) * (panel.top + panel.height + panel.bottom) + panel.top;
  const highest = Math.max(1, ...series.flatMap(({ points }) => points.map(([, value]) => value)));
  const step = stepOf(highest, 5);
  const top = Math.ceil(highest * 1.02 / step) * step;
  const x = (minute) => (x0 + minute / minutes * panel.width).toFixed(1);
  const y = (value) => (y0 + panel.height * (1 - value / top)).toFixed(1);
  const parts = [text(x0, y0 - 14, unit ? `${title} (${unit})` : title, 'class="title"')];
  for (let value = 0; value <= top + step / 2; value += step) {
    parts.push(`<path class="grid" d="M${x0} ${y(value)}h${panel.width}"/>`,
      text(x0 - 8, Number(y(value)) + 4, Number(value.toPrecision(6)), 'text-anchor="end"'));
  }
  const minuteStep = Math.max(minutes < 5 ? 0.5 : 1, stepOf(minutes, 8));
  for (let minute = 0; minute <= minutes; minute += minuteStep) {
    parts.push(`<path class="grid" d="M${x(minute)} ${y0}v${panel.height + 5}"/>`,
      text(x(minute), y0 + panel.height + 19, minute, 'text-anchor="middle"'));
  }
  parts.push(text(x0 + panel.width, y0 + panel.height + 36, 'minutes', 'text-anchor="end"'));
  for (const mark of marks) parts.push(`<path class="mark" d="M${x(mark)} ${y0}v${panel.height}"/>`);
  for (const { colour, points, measured } of series) {
    parts.push(`<polyline fill="none" stroke="${colour}" points="${points.map(([m, v]) => `${x(m)},${y(v)}`).join(' ')}"/>`);
    for (const [minute, value] of measured) parts.push(`<circle cx="${x(minute)}" cy="${y(value)}" r="3.5" fill="${colour}"/>`);
  }
  parts.push(`<path class="axis" d="M${x0} ${y0}v${panel.height}h${panel.width}"/>`);
  return parts.join('\n');
}

// `panels`: [{ title, unit, series: [{ name, points, measured }] }] with points [minute, value]; `measured` are those
// that count, drawn as dots. `marks`: minutes at which `markName` happened.
export function drawCurves({ title, panels, marks, markName, dotName }) {
  const names = [...new Set(panels.flatMap(({ series }) => series.map(({ name }) => name)))];
  const minutes = Math.max(0.1, ...panels.flatMap(({ series }) => series.flatMap(({ points }) => points.map(([m]) => m))));
  const coloured = panels.map((one) => ({
    ...one, series: one.series.map((line) => ({ ...line, colour: colours[names.indexOf(line.name) % colours.length] })),
  }));
  const height = head + Math.ceil(panels.length / columns) * (panel.top + panel.height + panel.bottom) + 10;
  let at = panel.left;
  const legend = [];
  const entry = (sign, name) => {
    legend.push(`<g transform="translate(${at} 58)">${sign}${text(34, 4, name)}</g>`);
    at += 54 + name.length * 7.2;
  };
  names.forEach((name, i) => entry(`<path stroke="${colours[i % colours.length]}" stroke-width="3" d="M0 0h26"/>`, name));
  entry('<path class="mark" d="M13 -9v18"/>', markName);
  entry('<circle cx="13" cy="0" r="3.5" fill="#444"/>', dotName);
  return `<svg xmlns="http://www.w3.org/2000/svg" width="${width}" height="${height}" viewBox="0 0 ${width} ${height}">
<style>
text { font: 12px 'DejaVu Sans', sans-serif; fill: #222 }
.title { font-size: 14px; font-weight: bold }
.grid { stroke: #e2e2e2 } .axis { stroke: #444; fill: none } .mark { stroke: #999; stroke-dasharray: 4 3 }
polyline { stroke-width: 1.6; stroke-linejoin: round }
</style>
<rect width="100%" height="100%" fill="#fff"/>
${text(panel.left, 32, title, 'style="font-size: 17px; font-weight: bold"')}
${legend.join('\n')}
${coloured.map((one, i) => drawPanel(one, i, minutes, marks)).join('\n')}
</svg>
`;
}
