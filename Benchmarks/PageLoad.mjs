// Loads a page of 1,000 elements (or HBBTV_BENCHMARK_COUNT) in the shell, with the bundle and without it, by turns.
// Prints JSON: the times of each repetition in milliseconds.
import { withAndWithoutBundle } from './two-shells.mjs';

const elements = Number(process.env.HBBTV_BENCHMARK_COUNT ?? 1000);
// The page's clock counts whole milliseconds, so that one load alone would be too coarse.
const loadsPerRepetition = Math.ceil(6000 / Math.max(elements, 500));

const rows = Array.from({ length: elements / 4 }, (_, i) =>
  `<div class="row"><span>Programme ${i}</span><b>20:15</b><p>What it is about, in one line.</p></div>`);
const page = `<!DOCTYPE html><meta charset="utf-8"><title>Guide</title>
  <style>.row { display: inline-block; width: 300px; margin: 2px; font: 12px sans-serif; }</style>
  <body>${rows.join('\n')}
  <script>
    addEventListener('load', () => requestAnimationFrame(() => requestAnimationFrame(() => {
      window.shown = performance.now();
    })));
  </script></body>`;

// Milliseconds from the start of the navigation: until the load event is over, and until the frame is on the screen.
async function load(television) {
  await television.show('guide.html', page);
  await television.browser.waitFor('the page is on the screen', () => window.shown);
  return television.browser.run(() => {
    const [entry] = performance.getEntriesByType('navigation');
    return { loaded: entry.loadEventEnd - entry.startTime, shown: window.shown };
  });
}

await withAndWithoutBundle(page, async (television) => {
  const mean = { loaded: 0, shown: 0 };
  for (let i = 0; i < loadsPerRepetition; i++) {
    const times = await load(television);
    for (const what in mean) mean[what] += times[what] / loadsPerRepetition;
  }
  return mean;
});
