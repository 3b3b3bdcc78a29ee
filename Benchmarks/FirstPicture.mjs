// From play(1) until the page hears that its film plays, and how long GStreamer's own player takes for the same
// film from the same server, by turns. Prints JSON: the times of each round in milliseconds.
import { createInterface } from 'node:readline';
import path from 'node:path';
import { makeMedia } from '../Tests/Browser/Harness/media.mjs';
import { build } from '../Tests/Browser/Harness/programs.mjs';
import { Television } from '../Tests/Browser/Harness/television.mjs';

const rounds = 41;
const playing = 1;

const page = `<!DOCTYPE html><meta charset="utf-8"><title>Film</title><script>
  // The whole life of an element: made, played until it does, released, removed.
  function playOnce(address, done) {
    const film = document.createElement('object');
    film.type = 'video/mp4';
    film.data = address;
    film.width = 640;
    film.height = 360;
    document.body.appendChild(film);
    let begin;
    const end = (result) => {
      film.onPlayStateChange = null;
      film.release();
      film.remove();
      done(result);
    };
    film.onPlayStateChange = (state, error) => {
      if (state === ${playing}) end({ taken: performance.now() - begin });
      else if (state === 6 || state === 0) end({ error: 'state ' + state + ', error ' + error });
    };
    begin = performance.now();
    film.play(1);
  }
</script><body></body>`;

// GStreamer's own player, in a process that stays: as in the receiver, its plugins are loaded once.
function startBarePlayer(workplace) {
  const program = workplace.start(path.join(build, 'Benchmarks/BarePlayer'), [], ['pipe', 'pipe', 'pipe']);
  const lines = createInterface({ input: program.stdout })[Symbol.asyncIterator]();
  return async (address) => {
    program.stdin.write(`${address}\n`);
    const { value, done } = await lines.next();
    if (done) throw new Error(`the bare player has ended, see ${workplace.logFile}`);
    return Number(value);
  };
}

async function playInPage(television, address) {
  const { taken, error } = await television.browser.runAsync((url, done) => playOnce(url, done), address);
  if (error) throw new Error(`the film does not play: ${error}`);
  return taken;
}

// As shipped: what is not logged is not formatted either.
process.env.HBBTV_LOG_LEVEL = 'warning';
await makeMedia();
const television = await Television.start();
try {
  const { server, workplace } = television;
  await television.show('film.html', page);
  const film = server.url('/media/film.mp4');
  const playBare = startBarePlayer(workplace);

  await playBare(film);
  await playInPage(television, film);
  const result = { page: [], bare: [] };
  for (let round = 0; round < rounds; round++) {
    result.page.push(await playInPage(television, film));
    result.bare.push(await playBare(film));
  }
  console.log(JSON.stringify(result));
} finally {
  await television.close();
}
