// Measures a page in two televisions whose shells differ in the bundle alone, by turns.
import { Television } from '../Tests/Browser/Harness/television.mjs';

const repetitions = 15;

// Shows the page in both. Prints JSON: what `measure` finds in the television that has the bundle and in the one that does
// not, for each repetition.
export async function withAndWithoutBundle(page, measure) {
  // As shipped: what is not logged is not formatted either.
  process.env.HBBTV_LOG_LEVEL = 'warning';
  const televisions = [];
  try {
    for (const environment of [{}, { HBBTV_BUNDLE: '' }]) televisions.push(await Television.start({ environment }));
    for (const television of televisions) await television.show('measured.html', page);
    const hasBundle = await Promise.all(televisions.map(({ browser }) => browser.run(() => 'oipfObjectFactory' in window)));
    if (!hasBundle[0] || hasBundle[1]) throw new Error(`the bundle is in the wrong shell: ${hasBundle}`);
    const found = { with: [], without: [] };
    for (let i = 0; i <= repetitions; i++) {
      for (const [which, list] of Object.values(found).entries()) list.push(await measure(televisions[which]));
    }
    // The first one compiles what runs.
    for (const list of Object.values(found)) list.shift();
    console.log(JSON.stringify(found));
  } finally {
    for (const television of televisions) await television.close();
  }
}
