// The source archive in build/release-archive, as a television maker builds it: the bundle alone, with neither network nor Node.
import assert from 'node:assert/strict';
import { spawnSync } from 'node:child_process';
import { createHash } from 'node:crypto';
import { existsSync, mkdirSync, mkdtempSync, readFileSync, readdirSync, realpathSync, rmSync } from 'node:fs';
import { availableParallelism, tmpdir } from 'node:os';
import path from 'node:path';
import { after, test } from 'node:test';
import { fileURLToPath } from 'node:url';

const source = path.join(path.dirname(fileURLToPath(import.meta.url)), '../..');
const [, version] = /project\(\w+ VERSION ([\d.]+)/.exec(readFileSync(path.join(source, 'CMakeLists.txt'), 'utf8'));
const name = `hbbtv-injected-bundle-${version}`;
const archive = path.join(source, 'build/release-archive', `${name}.tar.xz`);

const work = mkdtempSync(path.join(tmpdir(), 'hbbtv-release-'));
after(() => rmSync(work, { recursive: true, force: true }));

function run(program, words, options = {}) {
  const { status, signal, stdout, stderr } = spawnSync(program, words, { encoding: 'utf8', maxBuffer: 1 << 26, ...options });
  assert.equal(status, 0, `${program} ${words.join(' ')}: ${signal ?? status}\n${stdout}\n${stderr}`);
  return stdout + stderr;
}

// The command in a namespace that has no route anywhere, and where Node is no program.
function apart(environment, script, ...words) {
  return run('unshare', ['--map-root-user', '--net', '--mount', 'sh', '-ec', `
    mount --bind /dev/null "$0"
    if "$0" --version 2>/dev/null || [ "$(wc -l </proc/net/route)" -gt 1 ]; then echo 'This is not apart.'; exit 1; fi
    ${script}`, realpathSync(process.execPath), ...words], {
    env: { PATH: '/usr/sbin:/usr/bin:/sbin:/bin', CCACHE_DISABLE: '1', ...environment },
  });
}

// The installed library, built in a folder of that name as at that second. A compiler's cache would hand out the first
// build's objects for the second.
function build(folder, options, environment) {
  const place = path.join(work, folder);
  mkdirSync(place, { recursive: true });
  run('tar', ['-xf', archive, '-C', place]);
  const said = apart({ SOURCE_DATE_EPOCH: '1668057008', ...environment }, `
    cmake -S "$1" -B "$2" -DCMAKE_BUILD_TYPE=Release ${options}
    cmake --build "$2" --parallel "$3"
    cmake --install "$2" --prefix "$4" --component bundle`,
  path.join(place, name), path.join(place, 'out'), `${availableParallelism()}`, path.join(place, 'staging'));
  assert.doesNotMatch(said, /warning/i);
  const installed = readdirSync(path.join(place, 'staging'), { recursive: true }).map((file) => path.join(place, 'staging', file));
  const ending = (end) => installed.find((file) => file.endsWith(end));
  assert.ok(ending('Apache-2.0.txt') && ending('sbom.cdx.json'), installed.join('\n'));
  return readFileSync(ending('hbbtv-injected-bundle.so'));
}

const example = (file) => path.join(source, 'Docs', file);

// What a variable of the recipe is, in one line.
function ofRecipe(name) {
  const lines = readFileSync(example('yocto/hbbtv-injected-bundle.bb'), 'utf8').replaceAll(/\s*\\\n\s*/g, ' ');
  return new RegExp(`^${name} = "(.*)"$`, 'm').exec(lines)[1];
}

// And of Buildroot's package.
const ofPackage = (name) => run('make', ['--no-print-directory', '-f', example('buildroot/hbbtv-injected-bundle.mk'),
  '--eval', `tell: ; @echo $(HBBTV_INJECTED_BUNDLE_${name})`, 'tell']).trim();

test('The bundle is built without network and Node, and is the same library wherever and by whomever it is built', () => {
  const first = build('one', ofRecipe('EXTRA_OECMAKE'), { TZ: 'UTC', LANG: 'C' });
  const second = build('some/where/else', ofPackage('CONF_OPTS'), { TZ: 'Asia/Tokyo', LANG: 'C.UTF-8' });
  assert.ok(first.equals(second), 'the two libraries differ');
  for (const text of ['*** DATE built: ', 'Nov 10 2022', '05:10:08']) assert.ok(first.includes(text), text);
  for (const text of [work, source, name]) assert.ok(!first.includes(text), `it tells where it was built: ${text}`);
});

test('The examples for distributions are of this version, know its licences, and are read', () => {
  assert.deepEqual([ofRecipe('PV'), ofPackage('VERSION'), ofPackage('SOURCE')], [version, version, path.basename(archive)]);
  for (const [, file, sum] of ofRecipe('LIC_FILES_CHKSUM').matchAll(/file:\/\/(\S+);md5=(\w+)/g))
    assert.equal(createHash('md5').update(readFileSync(path.join(source, file))).digest('hex'), sum, file);
  for (const file of ofPackage('LICENSE_FILES').split(' ')) assert.ok(existsSync(path.join(source, file)), file);
  assert.match(run('/usr/bin/python3', ['-c', 'import kconfiglib, sys; print(kconfiglib.Kconfig(sys.argv[1], warn=False)'
    + '.syms["BR2_PACKAGE_HBBTV_INJECTED_BUNDLE"])', example('buildroot/Config.in')]), /depends on BR2_PACKAGE_WEBKITGTK/);
});
