// The simulated receiver as a child process, and its control interface.
import { execFile } from "node:child_process";
import { promisify } from "node:util";
import { parseVariant, variantString } from "./gvariant.mjs";
import { defaultScenario, receiver } from "./programs.mjs";
import { waitFor } from "./wait.mjs";

const run = promisify(execFile);
const name = "org.vantrel.hbbtv.ReceiverControl";

export class Receiver {
  constructor(workplace, scenario = defaultScenario) {
    this.workplace = workplace;
    this.scenario = scenario;
  }

  async start() {
    this.program = this.workplace.start(receiver(), ["--scenario", this.scenario]);
    await waitFor("the receiver answers", () => this.getWorld("/keys").catch(() => false));
  }

  stop(signal) {
    return this.workplace.stop(this.program, signal);
  }

  // The arguments are GVariant text; the result is the reply's tuple.
  async call(method, ...args) {
    const { stdout } = await run("gdbus", ["call", "--session", "--timeout", "10", "--dest", name,
      "--object-path", "/org/vantrel/hbbtv/control", "--method", `${name}.${method}`, ...args],
    { env: this.workplace.env, maxBuffer: 64 << 20 });
    return parseVariant(stdout);
  }

  pressKey(key) {
    return this.call("PressKey", variantString(key));
  }

  // emit("PluginEvent", "(400, uint32 0)")
  emit(signal, tuple) {
    return this.call("EmitSignal", variantString(signal), `<${tuple}>`);
  }

  // The calls so far, as ["IDAEBrowserAPI.Show", [7]].
  async calls() {
    const [calls] = await this.call("GetCalls");
    return calls.map(([method, args]) => [method, parseVariant(args)]);
  }

  // Only the calls of these methods, by name.
  async callNames(...methods) {
    return (await this.calls()).map(([method]) => method).filter(method => methods.includes(method));
  }

  // What one method was called with, each time.
  async argumentsOf(method) {
    return (await this.calls()).filter(([name]) => name === method).map(([, args]) => args);
  }

  // The same without the first, which is the player's id.
  async toldPlayers(method) {
    return (await this.argumentsOf(method)).map(([, ...rest]) => rest);
  }

  clearCalls() {
    return this.call("ClearCalls");
  }

  delay(method, milliseconds) {
    return this.call("DelayMethod", variantString(method), String(milliseconds));
  }

  fail(method, message) {
    return this.call("FailMethod", variantString(method), variantString(message));
  }

  resetMethods() {
    return this.call("ResetMethods");
  }

  setWorld(pointer, value) {
    return this.call("SetWorld", variantString(pointer), variantString(JSON.stringify(value)));
  }

  async getWorld(pointer) {
    const [json] = await this.call("GetWorld", variantString(pointer));
    return JSON.parse(json);
  }
}
