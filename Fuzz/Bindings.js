// Uses every member of every native object with odd values, as a row of bytes says. `fuzz(bytes)` answers in lines: the
// classes that it had objects of, "+Class.member" for each member they have and "-Class.member" for each that it used.
// It finds `classes`, the names of all native ones, and `collect()`, `fire(code, a, b)` and `pump(fact)`. What it uses
// itself it has taken at the start.
var fuzz = (function () {
  'use strict';

  const { apply, construct, ownKeys, defineProperty, deleteProperty, get, set, has } = Reflect;
  const tag = Object.prototype.toString;
  const slice = String.prototype.slice;
  // By class, from its first object; a collection has indices, too.
  const namesOf = {};

  const globals = { PrivateObjectFactory, KeyEvent, Keyset, Channel };

  function learn(name, object) {
    if (namesOf[name]) return;
    namesOf[name] = [];
    for (const member in object) namesOf[name].push(member);
    if (namesOf[name].includes('length')) namesOf[name].push('0', '1', '7');
  }

  return function (bytes) {
    let at = 0;
    const next = (limit) => (bytes.length ? bytes[at++ % bytes.length] % limit : 0);
    const used = new Set();
    let known = [];
    let turn = 0;
    const pool = new Map(classes.map((name) => [name, new Set()]));

    function keep(value) {
      if ((typeof value !== 'object' && typeof value !== 'function') || value === null) return;
      let name;
      try { name = apply(slice, apply(tag, value, []), [8, -1]); } catch { return; }
      const kept = pool.get(name);
      if (!kept || kept.size >= 4) return;
      learn(name, value);
      kept.add(value);
    }
    const attempt = (action) => {
      try {
        const value = action();
        keep(value);
        return value;
      } catch (error) {
        keep(error);
        return undefined;
      }
    };
    const anyOf = (list) => list[next(list.length)];
    const natives = (name) => [...pool.get(name)];
    function anyNative() {
      for (let tries = 0, start = next(classes.length); tries < classes.length; ++tries) {
        const found = natives(classes[(start + tries) % classes.length]);
        if (found.length) return anyOf(found);
      }
      return {};
    }

    const listener = function (...values) { values.forEach(keep); return values[0]; };
    const numbers = [0, -0, 1, -1, 2, 7, 0.5, 255, 65536, 2147483647, -2147483648, 4294967295, 4294967296, 2 ** 53, 1e21,
      1e308, -1e308, 5e-324, NaN, Infinity, -Infinity];
    const strings = ['', 'a', '0', '-1', '1e9', 'true', 'null', 'a\0b', '\ud800', 'x\udc00y', '\ud83d\ude00', '\u00e9', '%',
      '%s%n', '../..', 'video/mp4', 'http://media.invalid/a.mp4', 'file:///etc/passwd', 'dvb://1.2.3/x', 'dvb://current/x',
      'Programme.name', 'PlayStateChange', 'StreamEvent', 'DRMMessageResult', 'LowMemory', 'x'.repeat(5000),
      '\ud800'.repeat(300)];
    const makers = [
      () => undefined, () => null, () => true, () => false,
      () => anyOf(numbers), () => anyOf(numbers), () => next(256),
      () => anyOf(strings), () => anyOf(strings),
      () => anyNative(), () => anyNative(), () => listener, () => listener,
      () => ({}), () => [], () => [value(), value()], () => Symbol('s'), () => 10n ** 30n, () => new Date(NaN), () => /x/,
      () => new Uint8Array(next(256)), () => globalThis,
      () => ({ toString() { throw new Error('toString'); }, valueOf() { throw new Error('valueOf'); } }),
      () => ({ toString: () => ({}), valueOf: () => ({}) }),
      () => ({ valueOf() { collect(); return 1; }, toString() { act(); return 'late'; } }),
      () => ({ get length() { throw new Error('length'); }, get url() { return act(); }, handleEvent: listener }),
      () => ({ length: anyOf(numbers), 0: value(), name: value(), value: value() }),
      () => new Proxy({}, { get() { throw new Error('trap'); }, ownKeys() { throw new Error('trap'); } }),
      () => new Proxy(listener, { apply() { throw new Error('trap'); }, get: (_, key) => (key === 'length' ? -1 : act()) }),
      () => Object.create(anyNative()), () => Object.create(null),
    ];
    let depth = 0;
    function value() {
      if (depth > 3) return depth;
      ++depth;
      try { return anyOf(makers)(); } finally { --depth; }
    }

    // What a page may do to its built-ins, for as long as one action takes.
    const hostile = [
      () => {}, () => {}, () => {}, () => {}, () => {},
      (undo) => {
        defineProperty(Array.prototype, '0', { set() { collect(); }, get() { return act(); }, configurable: true });
        undo.add(() => deleteProperty(Array.prototype, '0'));
      },
      (undo) => {
        for (const name of ['toString', 'valueOf', 'name', 'type', 'data', 'length']) {
          if (has(Object.prototype, name) && name !== 'toString' && name !== 'valueOf') continue;
          const own = Object.getOwnPropertyDescriptor(Object.prototype, name);
          defineProperty(Object.prototype, name, { get() { throw new Error(name); }, set() {}, configurable: true });
          undo.add(() => (own ? defineProperty(Object.prototype, name, own) : deleteProperty(Object.prototype, name)));
        }
      },
    ];

    function touch(object, className, name) {
      used.add(`-${className}.${name}`);
      switch (next(8)) {
        case 0: return set(object, name, value());
        case 1: return get(object, name, value());
        case 2: return deleteProperty(object, name);
        case 3: return has(object, name) && defineProperty(object, name, { value: value(), configurable: true });
        default: {
          const member = object[name];
          keep(member);
          if (typeof member !== 'function') {
            if (next(2)) object[name] = value();
            return member;
          }
          const self = next(6) ? object : value();
          const list = [];
          for (let count = next(6); count > 0; --count) defineProperty(list, list.length, { value: value() });
          return next(12) ? apply(member, self, list) : construct(member, list);
        }
      }
    }

    function act() {
      if (depth > 2) return undefined;
      ++depth;
      try {
        const what = next(40);
        if (what === 0) return collect();
        if (what === 1) return fire(anyOf([100, 101, 102, 105, 106, 107, 108, 200, 201, 202, 203, 204, 205, 206, 300, 302, 400,
          401, 1000]), next(256), next(256));
        if (what === 2) return pump();
        if (what === 3) return natives(anyOf(classes)).forEach((object) => ownKeys(object));
        if (what === 4) return attempt(() => JSON.stringify(anyNative()));
        if (what === 5) return attempt(() => Object.assign({}, anyNative()));
        // By turns, so that none is left out.
        const [className, name] = known[turn++ % known.length];
        const [object] = natives(className).slice(next(6)).concat(natives(className));
        if (!object) return undefined;
        const undo = new Set();
        attempt(() => anyOf(hostile)(undo));
        try {
          return attempt(() => touch(object, className, name));
        } finally {
          undo.forEach((back) => back());
        }
      } finally {
        --depth;
      }
    }

    // One object of each class to begin with: what the factory makes, and what those lead to.
    for (const name in globals) {
      pool.get(name).add(globals[name]);
      learn(name, globals[name]);
    }
    // What only a constructor has is not all that its objects have.
    delete namesOf.Keyset;
    delete namesOf.Channel;
    for (const name of Object.keys(Object.getPrototypeOf(PrivateObjectFactory))) attempt(() => PrivateObjectFactory[name]());
    const [tv] = natives('OipfVideoBroadcast');
    const [av] = natives('OipfAVControl');
    const [manager] = natives('OipfSearchManager');
    attempt(() => tv.bindToCurrentChannel());
    attempt(() => { av.data = 'http://media.invalid/a.mp4'; av.play(1); });
    pump(() => tv.playState === 2 && av.playState === 1);
    let isTriggered = false;
    attempt(() => tv.addStreamEventListener('dvb://current/events', 'demo', (event) => { isTriggered = true; keep(event); }));
    pump(() => isTriggered);
    attempt(() => tv.addEventListener('ParentalRatingChange', listener));
    attempt(() => natives('OipfApplicationManager')[0].addEventListener('LowMemory', listener));
    attempt(() => natives('OipfApplicationManager')[0].getOwnerApplication());
    attempt(() => tv.setChannel(7));
    const search = attempt(() => manager.createSearch(1));
    attempt(() => search.createQuery('Programme.name', 6, 'n'));
    attempt(() => search.result.getResults(0, 5));
    pump(() => search.result.length > 0);
    fire(400, 0, 0);
    fire(104, 0, 0);
    fire(106, 12, 0);
    const visited = new Set();
    for (let count = -1; count !== visited.size;) {
      count = visited.size;
      for (const name of classes) {
        for (const object of natives(name)) {
          if (visited.has(object) || name === 'KeyEvent') continue;
          visited.add(object);
          for (const attribute of namesOf[name]) {
            const member = attempt(() => object[attribute]);
            if (/^(item|get)/.test(attribute) && typeof member === 'function')
              attempt(() => apply(member, object, [0]));
          }
        }
      }
    }
    const found = classes.filter((name) => pool.get(name).size);
    known = found.flatMap((name) => namesOf[name].map((member) => [name, member]));
    turn = next(256) * 16;
    for (let left = bytes.length; left > 0; --left) act();
    return [...found, ...known.map(([name, member]) => `+${name}.${member}`), ...used].join('\n');
  };
}());
