// The Debian packages in build/packages. As root, and with a mirror of Debian within reach: they are installed into a Debian that
// has nothing else.
import assert from 'node:assert/strict';
import { spawnSync } from 'node:child_process';
import { copyFileSync, existsSync, mkdirSync, mkdtempSync, readFileSync, readdirSync, rmSync, writeFileSync } from 'node:fs';
import { tmpdir } from 'node:os';
import path from 'node:path';
import { after, test } from 'node:test';
import { fileURLToPath } from 'node:url';

const source = path.join(path.dirname(fileURLToPath(import.meta.url)), '../..');
const build = path.join(source, 'build/packages');
const names = ['hbbtv-injected-bundle', 'hbbtv-injected-bundle-dev', 'hbbtv-shell'];
const [, version] = /project\(\w+ VERSION ([\d.]+)/.exec(readFileSync(path.join(source, 'CMakeLists.txt'), 'utf8'));
const files = names.map((name) => path.join(build, `${name}_${version}-1_amd64.deb`));

const work = mkdtempSync(path.join(tmpdir(), 'hbbtv-packages-'));
after(() => rmSync(work, { recursive: true, force: true }));

function run(program, words, options = {}) {
  const { status, signal, stdout, stderr } = spawnSync(program, words, { encoding: 'utf8', maxBuffer: 1 << 26, ...options });
  assert.equal(status, 0, `${program} ${words.join(' ')}: ${signal ?? status}\n${stdout}\n${stderr}`);
  return stdout;
}

function unpacked() {
  const folder = path.join(work, 'unpacked');
  mkdirSync(folder, { recursive: true });
  for (const file of files) run('dpkg-deb', ['-x', file, folder]);
  return folder;
}

test('All that programs and libraries link stands in the notices', () => {
  const notices = readFileSync(path.join(source, 'THIRD_PARTY_NOTICES.md'), 'utf8').split('## Opened or started')[0];
  const folder = unpacked();
  const linked = readdirSync(folder, { recursive: true, withFileTypes: true })
    .filter((entry) => entry.isFile()).map((entry) => path.join(entry.parentPath ?? entry.path, entry.name))
    .filter((file) => readFileSync(file).subarray(0, 4).equals(Buffer.from('\x7fELF')))
    .map((file) => [...run('objdump', ['-p', file]).matchAll(/NEEDED +(\S+)\.so/g)].map(([, library]) => library));
  assert.equal(linked.length, 7, 'five programs and two libraries');
  const told = new Set(notices.match(/\b(lib|ld-)[\w+.-]+/g).map((word) => word.replace(/\.$/, '')));
  assert.deepEqual([...new Set(linked.flat())].filter((library) => !told.has(library)), []);
});

test('A loader is built with what is installed for it, found by CMake and by pkg-config', () => {
  const prefix = path.join(unpacked(), 'usr');
  const project = path.join(work, 'loader');
  mkdirSync(project);
  writeFileSync(path.join(project, 'loader.cpp'), `
    #include <hbbtv/DsmccFileLoader.h>
    static decltype(&s_soupDsmccFileRequest) request = nullptr;
    int main() { return request ? 1 : 0; }`);
  writeFileSync(path.join(project, 'CMakeLists.txt'), `
    cmake_minimum_required(VERSION 3.25)
    project(Loader LANGUAGES CXX)
    find_package(HbbTVInjectedBundle ${version} REQUIRED)
    foreach(file BUNDLE INTERFACES DECLARATIONS)
      if(NOT EXISTS "\${HbbTVInjectedBundle_\${file}}")
        message(FATAL_ERROR "no \${file}: \${HbbTVInjectedBundle_\${file}}")
      endif()
    endforeach()
    add_executable(loader loader.cpp)
    target_link_libraries(loader PRIVATE HbbTV::loader)`);
  run('cmake', ['-S', project, '-B', path.join(project, 'build'), `-DCMAKE_PREFIX_PATH=${prefix}`]);
  run('cmake', ['--build', path.join(project, 'build')]);

  const [folder] = readdirSync(path.join(prefix, 'lib'));
  const ask = (...words) => run('pkg-config', [...words, 'hbbtv-injected-bundle'], {
    env: { ...process.env, PKG_CONFIG_PATH: path.join(prefix, 'lib', folder, 'pkgconfig') },
  }).trim();
  assert.equal(ask('--modversion'), version);
  for (const variable of ['bundle', 'interfaces', 'declarations', 'includedir']) {
    const place = ask(`--define-variable=prefix=${prefix}`, `--variable=${variable}`);
    assert.ok(existsSync(place), `${variable}: ${place}`);
  }
});

test('A bare Debian shows the examples to an ordinary user, and is bare again when the packages are gone', () => {
  assert.equal(process.getuid(), 0, 'a Debian can only be made by root');
  const root = path.join(work, 'debian');
  const mirror = process.env.HBBTV_DEBIAN_MIRROR ?? 'http://deb.debian.org/debian';
  run('debootstrap', ['--variant=minbase', 'bookworm', root, mirror]);
  // Processes and mounts end with the command.
  const inside = (script, ...words) => run('unshare', ['--mount', '--pid', '--fork', '--kill-child', 'sh', '-c',
    'mount -t proc proc "$0/proc" && mount -t tmpfs tmpfs "$0/dev/shm" && exec chroot "$0" "$@"',
    root, '/bin/sh', '-ec', script, 'sh', ...words], {
    env: { PATH: '/usr/sbin:/usr/bin:/sbin:/bin', DEBIAN_FRONTEND: 'noninteractive', LANG: 'C.UTF-8' },
  });
  const apt = (...words) => inside('apt-get -q -y -o Acquire::Retries=3 "$@"', ...words);
  const everything = () => inside(`find / -xdev \\( -path /proc -o -path /dev -o -path /tmp -o -path /var/lib/apt
    -o -path /var/lib/dpkg -o -path /var/cache -o -path /var/log \\) -prune -o -print`.replaceAll('\n', ' ')).split('\n');

  apt('update');
  apt('install', '--no-install-recommends', 'xauth', 'xvfb');
  const before = new Set(everything());
  for (const file of files) copyFileSync(file, path.join(root, 'tmp', path.basename(file)));
  apt('install', '--no-install-recommends', ...files.map((file) => `/tmp/${path.basename(file)}`));
  const ours = inside('dpkg -L "$@"', ...names).split('\n').filter((file) => file && !before.has(file));
  assert.ok(ours.includes('/usr/share/hbbtv/zapper/index.html'), ours.join('\n'));

  inside('useradd --create-home --shell /bin/sh viewer');
  const asViewer = (script) => inside('cd /home/viewer; exec runuser -u viewer -- sh -ec "$1"', script);
  for (const program of ['hbbtv-shell', 'hbbtv-receiver', 'hbbtv-media', 'hbbtv-control', 'hbbtv-check-middleware'])
    assert.equal(asViewer(`${program} --version`), `${program} ${version}\n`);
  const shown = {
    demo: '--example demo', zapper: '--example zapper', carousel: '--example carousel',
    player: "--serve /usr/share/hbbtv 'player/?check'",
  };
  for (const [page, words] of Object.entries(shown)) {
    const said = asViewer(`xvfb-run -a -s '-screen 0 1280x1024x24' hbbtv-shell ${words} --exit-after-load --require-verdict \
      --check-limit 120 --screenshot ${page}.png 2>&1`);
    assert.match(said, /^verdict: pass$/m);
    assert.match(said, new RegExp(`version ${version.replaceAll('.', '\\.')}\\b`), 'the bundle tells its version');
    const picture = path.join(build, `${page}.png`);
    copyFileSync(path.join(root, `home/viewer/${page}.png`), picture);
    const [colours, brightness] = run('convert', [picture, '-format', '%k %[fx:mean]', 'info:']).split(' ').map(Number);
    assert.ok(colours > 100 && brightness > 0.05, `${page}: ${colours} colours, brightness ${brightness}`);
  }
  assert.equal(inside('find /tmp -user viewer -not -path "/tmp/.X*"'), '', 'what the programs leave behind themselves');

  inside('userdel --remove viewer 2>&1');
  apt('purge', ...names);
  apt('autoremove', '--purge');
  const afterwards = everything();
  assert.deepEqual(afterwards.filter((file) => ours.includes(file) || /hbbtv/i.test(file)), []);
});
