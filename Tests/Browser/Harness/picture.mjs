// A picture of the screen, pixel by pixel; imagemagick reads whatever it comes as.
import { execFileSync } from "node:child_process";

export class Picture {
  // From a file's bytes, or with `import` for `convert` from a display.
  constructor(input, command = "convert", args = ["-"], env = process.env) {
    const file = execFileSync(command, [...args, "-depth", "8", "ppm:-"], { input, env, maxBuffer: 64 << 20 });
    const [header, width, height] = /^P6\s(\d+)\s(\d+)\s255\s/.exec(file.toString("latin1", 0, 32));
    this.width = Number(width);
    this.height = Number(height);
    this.#bytes = file.subarray(header.length);
  }

  #bytes;

  // "#rrggbb"
  at(x, y) {
    const start = (y * this.width + x) * 3;
    return "#" + this.#bytes.toString("hex", start, start + 3);
  }
}
