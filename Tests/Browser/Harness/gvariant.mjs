// GVariant's text format, as gdbus prints replies and as the receiver writes the arguments of its call log: tuples,
// arrays, texts, numbers and booleans.

// A text, a type, the ends of a tuple, or a word.
const text = /b?(?:'((?:[^'\\]|\\.)*)'|"((?:[^"\\]|\\.)*)")/;
const other = /(?:@\S+|byte|u?int(?:16|32|64)|handle) |\(|,?\)|[-+.\w]+/;
const parts = new RegExp(`${text.source}|${other.source}`, "gs");

function unescape(escaped) {
  const named = { a: "\x07", b: "\b", f: "\f", n: "\n", r: "\r", t: "\t", v: "\v" };
  const escapes = /\\(?:u([0-9a-f]{4})|U([0-9a-f]{8})|([0-7]{1,3})|(.))/gs;
  return escaped.replace(escapes, (_, short, long, octal, plain) => {
    if (octal)
      return String.fromCharCode(parseInt(octal, 8));
    return plain ? named[plain] ?? plain : String.fromCodePoint(parseInt(short ?? long, 16));
  });
}

export function parseVariant(printed) {
  return JSON.parse(printed.replace(parts, (part, single, double) => {
    if (single !== undefined || double !== undefined)
      return JSON.stringify(unescape(single ?? double));
    if (part.endsWith(" "))
      return "";
    if (/[()]/.test(part))
      return part === "(" ? "[" : "]";
    return part === "true" || part === "false" ? part : Number(part);
  }));
}

export function variantString(plain) {
  return `'${plain.replace(/[\\']/g, "\\$&").replace(/\n/g, "\\n")}'`;
}
