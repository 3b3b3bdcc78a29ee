// Two televisions whose shells differ in the bundle alone.
import { Television } from '../Tests/Browser/Harness/television.mjs';

// Calls `measure` with the television that has the bundle and the one that does not.
export async function withAndWithoutBundle(measure) {
  // As shipped: what is not logged is not formatted either.
  process.env.HBBTV_LOG_LEVEL = 'warning';
  const televisions = [];
  try {
    for (const environment of [{}, { HBBTV_BUNDLE: '' }]) televisions.push(await Television.start({ environment }));
    for (const television of televisions) await television.show('plain.html', '<!DOCTYPE html><title>Plain</title>');
    const hasBundle = await Promise.all(televisions.map(({ browser }) => browser.run(() => 'oipfObjectFactory' in window)));
    if (!hasBundle[0] || hasBundle[1]) throw new Error(`the bundle is in the wrong shell: ${hasBundle}`);
    await measure(...televisions);
  } finally {
    for (const television of televisions) await television.close();
  }
}
