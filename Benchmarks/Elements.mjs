// What the bootstrap script costs a page: a property read through an element and from the native object behind it, a
// property of an object element that is none of ours, and a frame with nothing in it. In the shell with the bundle and
// in one without, by turns. Prints JSON, for each repetition: nanoseconds of a read, milliseconds of a frame.
import { withAndWithoutBundle } from './two-shells.mjs';

// Each property has a loop of its own, so that the engine knows what it reads there. The page's clock counts whole
// milliseconds.
const nanosecondsOf = (name, value) => `function nanosecondsOf${name}(object) {
      let sum = 0;
      const start = performance.now();
      for (let i = 0; i < reads; ++i) sum += ${value};
      return (performance.now() - start) / reads * 1e6 + sum * 0;
    }`;

const page = `<!DOCTYPE html><meta charset="utf-8"><title>Elements</title><body>
  <object id="ours" type="video/broadcast"></object>
  <object id="foreign" type="image/png" data="none.png"></object>
  <script>
    const reads = 200000;
    const frames = 20;

    ${nanosecondsOf('State', 'object.playState')}
    ${nanosecondsOf('Address', 'object.data.length')}

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

await withAndWithoutBundle(page, ({ browser }) => browser.runAsync((done) => measure(done)));
