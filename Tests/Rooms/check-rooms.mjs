// Which includes go against the room table: upward, unknown, or not written from the source root.
// Pure functions over text, so that the check can be tested on sources that never existed.

const families = [
  ['GIO', /^(gio|gobject|gmodule)\/|^(gio|glib-object)/],
  ['GLib', /^glib/],
  ['GStreamer', /^gst\//],
  ['GTK', /^(gtk|gdk|gdk-pixbuf|cairo|pango)\//],
  ['WebKitGTK', /^(webkit2?|webkit2?gtk|jsc|libsoup)\//],
  ['JavaScriptCore', /^JavaScriptCore\//],
  ['JSON', /^nlohmann\//],
  ['testing', /^(gtest|gmock|benchmark)\//],
];

const includePattern = /^[ \t]*#[ \t]*include[ \t]*(?:<([^>]+)>|"([^"]+)")/gm;

function roomOf(file, table) {
  return Object.keys(table)
    .filter((room) => file === room || file.startsWith(room + '/'))
    .sort((a, b) => b.length - a.length)[0];
}

// One sentence for each violation in `text`, the content of `file`; paths are relative to the source root.
export function violations(file, text, table) {
  const room = roomOf(file, table);
  if (!room) return [`${file} lies in no room of the table`];
  const { rooms, libraries } = table[room];
  const found = [];
  for (const [whole, system, own] of text.matchAll(includePattern)) {
    const name = system ?? own;
    const family = families.find(([, pattern]) => pattern.test(name))?.[0];
    if (family) {
      if (!libraries.includes(family)) found.push(`${file} includes <${name}>, and ${room} does without ${family}`);
      continue;
    }
    if (system) continue;
    const target = roomOf(name, table);
    if (!target) found.push(`${file}: ${whole.trim()} is not written from the source root, or names no room`);
    else if (target !== room && !rooms.includes(target)) found.push(`${file} includes "${name}", and ${room} must not include ${target}`);
  }
  return found;
}
