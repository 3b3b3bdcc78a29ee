// GVariant's text format, as gdbus prints replies and as the receiver writes the arguments of its call log.

const typeNames = /^(?:boolean|byte|u?int(?:16|32|64)|handle|double|string|objectpath|signature)\b\s*/;

class Reader {
  constructor(text) {
    this.rest = text.trimStart();
  }

  skip(pattern) {
    const found = pattern.exec(this.rest);
    if (found)
      this.rest = this.rest.slice(found[0].length).trimStart();
    return found;
  }

  expect(pattern) {
    const found = this.skip(pattern);
    if (!found)
      throw new Error(`Not GVariant text, expected ${pattern} at: ${this.rest.slice(0, 60)}`);
    return found;
  }

  list(end) {
    const items = [];
    while (!this.skip(end)) {
      items.push(this.value());
      this.skip(/^,/);
    }
    return items;
  }

  dictionary() {
    const entries = {};
    while (!this.skip(/^\}/)) {
      const key = this.value();
      this.expect(/^:/);
      entries[key] = this.value();
      this.skip(/^,/);
    }
    return entries;
  }

  value() {
    this.skip(/^@[a-z(){}]+/);
    this.skip(typeNames);
    if (this.skip(/^[[(]/))
      return this.list(/^[\])]/);
    if (this.skip(/^\{/))
      return this.dictionary();
    if (this.skip(/^</)) {
      const inner = this.value();
      this.expect(/^>/);
      return inner;
    }
    const string = this.skip(/^b?('(?:[^'\\]|\\.)*'|"(?:[^"\\]|\\.)*")/s);
    if (string)
      return unescaped(string[1].slice(1, -1));
    const word = this.expect(/^[-+\w.]+/)[0];
    if (word === "true" || word === "false")
      return word === "true";
    const number = Number(word.replace("inf", "Infinity"));
    if (Number.isNaN(number) && word !== "nan")
      throw new Error(`not a value: ${word}`);
    return number;
  }
}

function unescaped(text) {
  const named = { a: "\x07", b: "\b", f: "\f", n: "\n", r: "\r", t: "\t", v: "\v" };
  const escapes = /\\(?:u([0-9a-f]{4})|U([0-9a-f]{8})|([0-7]{1,3})|(.))/gs;
  return text.replace(escapes, (_, short, long, octal, plain) => {
    if (octal)
      return String.fromCharCode(parseInt(octal, 8));
    return plain ? named[plain] ?? plain : String.fromCodePoint(parseInt(short ?? long, 16));
  });
}

export function parseVariant(text) {
  return new Reader(text).value();
}

export function variantString(text) {
  return `'${text.replace(/[\\']/g, "\\$&").replace(/\n/g, "\\n")}'`;
}
