// Panels of curves as one SVG, drawn by gnuplot.
import { execFileSync } from 'node:child_process';
import { mkdirSync } from 'node:fs';
import path from 'node:path';

const colours = ['#1f6fb4', '#d1541b', '#2c8c3c', '#8a4fb0', '#b8860b'];
const panelWidth = 480;
const panelHeight = 270;

const quoted = (text) => `'${String(text).replaceAll("'", "''")}'`;

// `panels`: [{ title, series: [{ name, points, dots }] }], with points [x, y]; `dots` are those of them that count. `marks`:
// places on the x axis, with a line through each panel. Both axes are logarithmic, or none.
export function plot(file, { title, xLabel, panels, columns = 2, marks = [], logarithmic = false }) {
  mkdirSync(path.dirname(file), { recursive: true });
  const names = [...new Set(panels.flatMap(({ series }) => series.map(({ name }) => name)))];
  const blocks = [];
  const block = (points) => {
    blocks.push(`$data${blocks.length} << EOD\n${points.map((point) => point.join(' ')).join('\n')}\nEOD`);
    return `$data${blocks.length - 1}`;
  };
  const curve = ({ name, points, dots = [] }) => {
    const colour = `lc rgb '${colours[names.indexOf(name) % colours.length]}'`;
    const drawn = [`${block(points)} using 1:2 with lines lw 1.6 ${colour} title ${quoted(name)}`];
    if (dots.length) drawn.push(`${block(dots)} using 1:2 with points pt 7 ps 0.5 ${colour} notitle`);
    return drawn.join(', ');
  };
  const drawn = panels.map((panel) => `set title ${quoted(panel.title)}\nplot ${panel.series.map(curve).join(', ')}`);
  const rows = Math.ceil(panels.length / columns);
  execFileSync('gnuplot', [], { input: `
    set terminal svg size ${columns * panelWidth},${rows * panelHeight + 40} font 'DejaVu Sans,11' background '#ffffff'
    set output ${quoted(file)}
    ${blocks.join('\n')}
    set multiplot layout ${rows},${columns} title ${quoted(title)} font ',14'
    set grid lc rgb '#e2e2e2'
    set key below samplen 2
    set border 3
    set tics nomirror
    set xlabel ${quoted(xLabel)}
    ${logarithmic ? "set logscale xy\n set format x '%.0f'\n set format y '%g'" : 'set yrange [0:*]'}
    ${marks.map((x) => `set arrow from first ${x}, graph 0 to first ${x}, graph 1 nohead dt 3 lc rgb '#999999'`).join('\n')}
    ${drawn.join('\n')}
    unset multiplot\n` });
}
