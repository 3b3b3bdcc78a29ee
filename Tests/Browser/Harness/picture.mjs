// Reads the shell's screenshots: PNG of eight bits a channel, without interlacing.
import { readFileSync } from "node:fs";
import { inflateSync } from "node:zlib";

const signatureLength = 8;
const channelsOf = { 2: 3, 6: 4 };

function chunksOf(file) {
  const chunks = [];
  for (let at = signatureLength; at < file.length;) {
    const length = file.readUInt32BE(at);
    chunks.push([file.toString("latin1", at + 4, at + 8), file.subarray(at + 8, at + 8 + length)]);
    at += length + 12;
  }
  return chunks;
}

function paeth(left, above, corner) {
  const [a, b, c] = [above - corner, left - corner, left + above - 2 * corner].map(Math.abs);
  if (a <= b && a <= c)
    return left;
  return b <= c ? above : corner;
}

const predictors = [
  () => 0,
  left => left,
  (left, above) => above,
  (left, above) => (left + above) >> 1,
  paeth
];

export class Picture {
  constructor(path) {
    const chunks = chunksOf(readFileSync(path));
    const [, header] = chunks.find(([type]) => type === "IHDR");
    this.width = header.readUInt32BE(0);
    this.height = header.readUInt32BE(4);
    this.#channels = channelsOf[header[9]];
    this.#stride = this.width * this.#channels;
    this.#unfilter(inflateSync(Buffer.concat(chunks.filter(([type]) => type === "IDAT").map(([, data]) => data))));
  }

  #channels;
  #stride;
  #bytes;

  #unfilter(data) {
    const bytes = Buffer.alloc(this.#stride * this.height);
    for (let row = 0; row < this.height; ++row) {
      const predict = predictors[data[row * (this.#stride + 1)]];
      for (let column = 0; column < this.#stride; ++column) {
        const at = row * this.#stride + column;
        const left = column >= this.#channels ? bytes[at - this.#channels] : 0;
        const above = row > 0 ? bytes[at - this.#stride] : 0;
        const corner = column >= this.#channels && row > 0 ? bytes[at - this.#stride - this.#channels] : 0;
        bytes[at] = data[at + row + 1] + predict(left, above, corner);
      }
    }
    this.#bytes = bytes;
  }

  // "#rrggbb"
  at(x, y) {
    const start = y * this.#stride + x * this.#channels;
    return "#" + this.#bytes.toString("hex", start, start + 3);
  }
}
