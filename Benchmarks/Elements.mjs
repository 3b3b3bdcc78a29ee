// What the bootstrap script costs a page: a property read through an element and from the native object behind it, a
// property of an object element that is none of ours, and a frame with nothing in it. In the shell with the bundle and
// in one without, by turns. Prints JSON, for each repetition: nanoseconds of a read, milliseconds of a frame.
import { withAndWithoutBundle } from './two-shells.mjs';

const repetitions = 15;

const page = `<!DOCTYPE html><meta charset="utf-8"><title>Elements</title><body>
  <object id="ours" type="video/broadcast"></object>
  <object id="foreign" type="image/png" data="none.png"></object>
  <script>
    const reads = 200000;
    const frames = 20;

    // The page's clock counts whole milliseconds.
    function nanosecondsOfState(object) {
      let sum = 0;
      const start = performance.now();
      for (let i = 0; i < reads; ++i) sum += object.playState;
      return (performance.now() - start) / reads * 1e6 + sum * 0;
    }
    function nanosecondsOfAddress(object) {
      let sum = 0;
      const start = performance.now();
      for (let i = 0; i < reads; ++i) sum += object.data.length;
      return (performance.now() - start) / reads * 1e6 + sum * 0;
    }

    function millisecondsOfFrame(done) {
      const start = performance.now();
      let left = frames;
      const made = Array.from({ length: frames }, () => document.createElement('iframe'));
      for (const frame of made) {
        frame.srcdoc = '<!DOCTYPE html><title>Frame</title>';
        frame.onload = () => {
          if (--left > 0) return;
          const taken = performance.now() - start;
          for (const one of made) one.remove();
          done(taken / frames);
        };
        document.body.append(frame);
      }
    }

    function measure(done) {
      const ours = document.getElementById('ours');
      const foreign = document.getElementById('foreign');
      const native = ours.__reflected;
      millisecondsOfFrame((frame) => done({
        frame,
        foreign: nanosecondsOfAddress(foreign),
        element: native && nanosecondsOfState(ours),
        native: native && nanosecondsOfState(native),
      }));
    }
  </script></body>`;

await withAndWithoutBundle(async (withBundle, without) => {
  const result = { with: [], without: [] };
  for (const television of [withBundle, without]) await television.show('elements.html', page);
  for (let i = 0; i <= repetitions; i++) {
    for (const [television, list] of [[withBundle, result.with], [without, result.without]]) {
      const found = await television.browser.runAsync((done) => measure(done));
      // The first one compiles the loops.
      if (i > 0) list.push(found);
    }
  }
  console.log(JSON.stringify(result));
});
