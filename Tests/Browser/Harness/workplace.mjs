// A home, a session bus and a display of its own for one test program, and the processes that live there.
// Their output goes to one log file, whose path is printed when a test fails.
import { execFile, spawn } from "node:child_process";
import { once } from "node:events";
import { existsSync, mkdirSync, mkdtempSync, openSync, rmSync, writeSync } from "node:fs";
import { tmpdir } from "node:os";
import { join } from "node:path";
import { createInterface } from "node:readline";
import { promisify } from "node:util";
import { Picture } from "./picture.mjs";
import { build } from "./programs.mjs";
import { waitFor } from "./wait.mjs";

// A test program that is told to end runs its exit handlers, so that nothing of it stays behind.
for (const [signal, number] of Object.entries({ SIGINT: 2, SIGTERM: 15 }))
  process.once(signal, () => process.exit(128 + number));

export class Workplace {
  #folder = mkdtempSync(join(tmpdir(), "hbbtv-browser-test-"));
  #children = new Set();
  // Held open: whatever becomes of the folder, the tests go on.
  #log;
  isKilling = false; // A web process, on purpose.
  // Variables of the shell alone, which hands them to the web process.
  preload = {};
  // What the processes have written so far, as in the log file.
  lines = [];

  constructor() {
    const inside = name => {
      const path = join(this.#folder, name);
      mkdirSync(path, { mode: 0o700 });
      return path;
    };
    this.logFile = join(this.#folder, "processes.log");
    this.#log = openSync(this.logFile, "a");
    this.env = {
      PATH: process.env.PATH,
      LANG: "C.UTF-8",
      HOME: inside("home"),
      XDG_RUNTIME_DIR: inside("runtime"),
      XDG_CONFIG_HOME: inside("config"),
      XDG_CACHE_HOME: inside("cache"),
      XDG_DATA_HOME: inside("data"),
      HBBTV_LOG_LEVEL: process.env.HBBTV_LOG_LEVEL ?? "info",
      GSETTINGS_BACKEND: "memory",
      // The homes are new; the plugins need not be looked through in every one.
      GST_REGISTRY: join(build, "gstreamer-registry.bin"),
      GTK_A11Y: "none",
      NO_AT_BRIDGE: "1",
      LIBGL_ALWAYS_SOFTWARE: "1",
      // Neither need the shaders of a page's first picture be compiled anew; that takes seconds on a busy machine.
      MESA_SHADER_CACHE_DIR: join(build, "shaders")
    };
    for (const name of ["DISPLAY", "XAUTHORITY"]) {
      if (process.env[name])
        this.env[name] = process.env[name];
    }
    this.#addSanitizers(process.env.HBBTV_SANITIZER);
    process.once("exit", code => {
      this.#children.forEach(child => child.kill("SIGKILL"));
      if (code)
        console.error(`Output of the processes of the failed tests: ${this.logFile}`);
      else
        rmSync(this.#folder, { recursive: true, force: true });
    });
  }

  // A bundle with sanitizers in it needs their library in a web process that was built without. WebKit then takes its
  // memory from the C library, so that the engine's is looked at as well. Reports come with the other output: the two
  // sanitizers are two libraries, and only one of them would know of a log file.
  #addSanitizers(library) {
    if (!library)
      return;
    this.preload = { LD_PRELOAD: library };
    Object.assign(this.env, {
      ASAN_OPTIONS: "detect_leaks=0:alloc_dealloc_mismatch=0:handle_abort=1",
      UBSAN_OPTIONS: "print_stacktrace=1:print_summary=1",
      Malloc: "1"
    });
  }

  #note(name, line) {
    this.lines.push(line);
    writeSync(this.#log, `[${name}] ${line}\n`);
    if (this.preload.LD_PRELOAD && (/SUMMARY: \w+Sanitizer/.test(line) || (/the web process crashed/.test(line) && !this.isKilling)))
      this.#failWithReport();
  }

  async begin() {
    await this.#startBus();
    await this.#startDisplay();
  }

  // At once, because WebDriver waits for ever for the page of a web process that died.
  #failWithReport() {
    console.error(this.lines.slice(this.lines.findLastIndex(line => /==ERROR: | runtime error: /.test(line))).join("\n"));
    process.exit(1);
  }

  // Starts a program and writes its output to the log.
  start(command, args, stdio = ["ignore", "pipe", "pipe"]) {
    const env = /\/hbbtv-(shell|check-middleware)$/.test(command) ? { ...this.env, ...this.preload } : this.env;
    const child = spawn(command, args, { env, stdio });
    const name = command.split("/").pop();
    child.ended = new Promise(resolve => {
      child.once("error", error => {
        this.#note(name, error.message);
        resolve();
      });
      child.once("exit", resolve);
    }).then(() => this.#children.delete(child));
    this.#children.add(child);
    for (const stream of [child.stdout, child.stderr]) {
      createInterface({ input: stream }).on("line", line => {
        this.#note(name, line);
      });
    }
    return child;
  }

  // Runs a program to its end; its exit code, and the lines that came meanwhile.
  async run(command, args) {
    const start = this.lines.length;
    const program = this.start(command, args);
    await once(program, "close");
    return { code: program.exitCode, lines: this.lines.slice(start) };
  }

  // Waits until a line matches.
  says(pattern, timeoutMs) {
    return waitFor(`a process says ${pattern}`, () => this.lines.some(line => pattern.test(line)), timeoutMs);
  }

  // The first line that the program writes to the given stream; the way bus and display tell their addresses.
  async #firstLine(child, stream) {
    const line = new Promise(resolve => createInterface({ input: stream }).once("line", resolve));
    const ended = child.ended.then(() => {
      throw new Error(`${child.spawnfile} ended early, see ${this.logFile}`);
    });
    return Promise.race([line, ended]);
  }

  async #startBus() {
    const bus = this.start("dbus-daemon", ["--session", "--nofork", "--nopidfile", "--print-address=3"],
      ["ignore", "pipe", "pipe", "pipe"]);
    this.env.DBUS_SESSION_BUS_ADDRESS = await this.#firstLine(bus, bus.stdio[3]);
  }

  async #startDisplay() {
    if (this.env.DISPLAY)
      return;
    // A server that begins anew when its last client leaves refuses the next shell for that moment.
    const args = ["-displayfd", "3", "-screen", "0", "2560x1440x24", "-nolisten", "tcp", "-noreset"];
    const display = this.start("Xvfb", args, ["ignore", "pipe", "pipe", "pipe"]);
    this.env.DISPLAY = ":" + await this.#firstLine(display, display.stdio[3]);
  }

  // A Wayland compositor in the display's upper left corner, whose screen is no larger than a television's. What is
  // started then fills it.
  async startCompositor() {
    const socket = "hbbtv-wayland";
    this.start("weston", ["--no-config", "--backend=x11-backend.so", "--use-pixman", "--shell=kiosk-shell.so",
      "--idle-time=0", "--width=1280", "--height=720", `--socket=${socket}`]);
    await waitFor("the compositor listens", () => existsSync(join(this.env.XDG_RUNTIME_DIR, socket)));
    Object.assign(this.env, { WAYLAND_DISPLAY: socket, GDK_BACKEND: "wayland" });
  }

  // What is on the display now, from its upper left corner.
  look(width = 1280, height = 720) {
    const part = ["-window", "root", "-crop", `${width}x${height}+0+0`, "+repage"];
    return new Picture(undefined, "import", part, this.env);
  }

  // Does as mouse and keyboard do; what xdotool says.
  async xdotool(...args) {
    const { stdout } = await promisify(execFile)("xdotool", args.map(String), { env: this.env });
    return stdout.trim();
  }

  // A key of the keyboard, over the television's window.
  pressOnScreen(key) {
    return this.xdotool("mousemove", 300, 200, "key", key);
  }

  async stop(child, signal = "SIGTERM") {
    if (!this.#children.has(child))
      return;
    child.kill(signal);
    const timer = setTimeout(() => child.kill("SIGKILL"), 5000);
    await child.ended;
    clearTimeout(timer);
  }

  async close() {
    for (const child of Array.from(this.#children).reverse())
      await this.stop(child);
  }
}
