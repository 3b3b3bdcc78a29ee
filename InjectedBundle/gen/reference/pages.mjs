// The Markdown pages of the reference: one a class, a collection on the page of what it holds, and the index.

import {
  argumentType, attributeType, eventArgumentType, eventOf, isHandler, listsOf, resultType,
} from './types.mjs';

const code = (text) => `\`${text}\``;
const line = (cells) => `| ${cells.join(' | ')} |`;
const table = (head, rows) =>
  (rows.length ? [line(head), `|${head.map(() => '---|').join('')}`, ...rows.map(line)] : []);
// The anchor of a heading, as GitHub makes it.
const anchor = (heading) => `#${heading.toLowerCase().replace(/[^\w\- ]/g, '').replaceAll(' ', '-')}`;
const firstSentence = (doc) => doc.match(/^.*?[.:](?=\s|$)/)?.[0].replace(/:$/, '.') ?? doc;

export class Pages {
  constructor(interfaces, window) {
    this.interfaces = interfaces;
    this.window = window;
    this.factoryNames = new Set(window.factory.map(({ name }) => name));
  }

  // The class on whose page another stands.
  hostOf(name) {
    const [, element] = /^(\w+)Collection$/.exec(name) ?? [];
    return this.interfaces.has(element) ? element : name;
  }

  link(name, text = name) {
    const host = this.hostOf(name);
    return `[${text}](${host}.md${host === name ? '' : `#${name.toLowerCase()}`})`;
  }

  // To a method's own heading. A collection's may be on the page a second time, so the class has to do.
  methodLink(className, { forms: [form] }, text, page = `${className}.md`) {
    if (this.hostOf(className) !== className) return this.link(className, text);
    return `[${text}](${page}${anchor(this.call(form.name, listsOf(form)[0]))})`;
  }

  // Words of a doc comment that name another class, or a method of the same, lead to it.
  text(doc, className) {
    const operations = this.interfaces.get(className)?.operations ?? [];
    return doc.replace(/`(\w+)`/g, (all, name) => {
      if (this.interfaces.has(name)) return name === className ? all : this.link(name, all);
      const operation = operations.find((each) => each.name === name);
      return operation ? this.methodLink(className, operation, all, '') : all;
    });
  }

  type(words) {
    return words.map((word) => (this.interfaces.has(word) ? this.link(word) : code(word))).join(' or ');
  }

  all() {
    const pages = new Map([['README.md', this.index()]]);
    for (const name of this.interfaces.keys()) {
      if (this.hostOf(name) === name) pages.set(`${name}.md`, this.page(name));
    }
    return pages;
  }

  page(name) {
    const guests = [...this.interfaces.keys()].filter((other) => other !== name && this.hostOf(other) === name);
    const parts = [this.section(name, '#'), ...guests.map((guest) => this.section(guest, '##'))];
    if (name === 'Event') parts.push(this.listening());
    return `${parts.join('\n\n')}\n`;
  }

  section(name, mark) {
    const description = this.interfaces.get(name);
    const { constants, attributes, operations, listeners } = description;
    const parts = [`${mark} ${name}`, this.text(description.doc, name), this.origin(description)];
    const add = (title, ...lines) => lines.some(Boolean) && parts.push(`${mark}# ${title}`, ...lines.filter(Boolean));
    add('Properties', this.properties(name, attributes.filter((each) => !isHandler(each))));
    add('Methods', ...operations.flatMap(({ forms }) => this.methods(name, forms, `${mark}##`)));
    if (listeners.length) {
      add('Events', `Each is heard by a handler or, with [addEventListener](Event.md#listening), by listeners.`,
        this.events(name, attributes.filter(isHandler)));
    }
    add('Constants', table(['Name', 'Value', 'Meaning'],
      constants.map((constant) => [code(constant.name), constant.value, this.text(constant.doc, name)])).join('\n'));
    return parts.filter(Boolean).join('\n\n');
  }

  // How a page comes by an object of the class.
  origin({ name, globalConstructor, globalInstance, constants }) {
    const lines = [];
    const types = this.window.elements.filter(({ className }) => className === name)
      .map(({ mime, profile }) => `${code(mime)} (from HbbTV ${profile})`);
    if (types.length) lines.push(`\`object\` element of type ${types.join(', ')}`);
    for (const { forms: [form] } of this.factoryOperations()) {
      if (form.result.name === name) lines.push(code(`oipfObjectFactory.${form.name}()`));
    }
    if (globalConstructor && constants.length) lines.push(`\`${name}\` on the window, for its constants alone`);
    if (globalInstance) lines.push(`\`${name}\` on the window`);
    const givers = this.giversOf(name);
    if (givers.length) lines.push(givers.join(', '));
    return lines.length ? ['Where it comes from:', '', ...lines.map((line) => `- ${line}`)].join('\n') : null;
  }

  factoryOperations() {
    return [...this.interfaces.values()].filter(({ globalInstance }) => globalInstance)
      .flatMap(({ operations }) => operations).filter(({ name }) => this.factoryNames.has(name));
  }

  // Members of other classes that give an object of this class to the page.
  giversOf(name) {
    const isIt = (type) => type.kind === 'object' && type.name === name;
    return [...this.interfaces.values()].filter(({ globalInstance }) => !globalInstance).flatMap((giver) => {
      const methods = giver.operations.filter(({ forms }) => forms.some(({ result }) => isIt(result)));
      const properties = giver.attributes.filter((attribute) => (isHandler(attribute)
        ? eventOf(attribute).arguments?.some(({ type }) => isIt(type)) : isIt(attribute.type)));
      return [
        ...properties.map((each) => this.link(giver.name, code(`${giver.name}.${each.name}`))),
        ...methods.map((each) => this.methodLink(giver.name, each, code(`${giver.name}.${each.name}()`))),
      ];
    });
  }

  properties(name, attributes) {
    return table(['Property', 'Type', 'Meaning'], attributes.map((attribute) => [
      code(attribute.name),
      this.type(attributeType(name, attribute)) + (attribute.readonly ? '' : ', writable'),
      this.text(attribute.doc, name),
    ])).join('\n');
  }

  methods(name, forms, mark) {
    return forms.flatMap((form) => listsOf(form).flatMap((list, i) => [
      `${mark} ${this.call(form.name, list)}`,
      i === 0 ? this.text(form.doc, name) : 'The other form of the same.',
      this.parameters(name, form, forms, list),
    ]));
  }

  // "getChannel(onid, tsid[, nid])"
  call(name, list) {
    const required = list.filter(({ optional }) => !optional).map((argument) => argument.name).join(', ');
    const tail = list.filter(({ optional }) => optional);
    const text = tail.reduceRight((rest, argument, i) =>
      `[${required || i > 0 ? ', ' : ''}${argument.name}${rest}]`, '');
    return `${name}(${required}${text})`;
  }

  parameters(className, form, forms, list) {
    const lines = list.map((argument) => `- ${code(argument.name)}: ${[
      this.type(argumentType(className, form.name, argument)),
      ...(argument.optional ? ['optional'] : []),
      ...(argument.ignored ? ['has no effect'] : []),
    ].join(', ')}`);
    const result = resultType(className, form, forms);
    if (!result.includes('void')) lines.push(`- returns ${this.type(result)}`);
    return lines.join('\n');
  }

  events(name, handlers) {
    return table(['Handler', 'Event', 'Arguments', 'When'], handlers.map((handler) => {
      const { names, arguments: list } = eventOf(handler);
      const given = (list ?? []).map((argument) =>
        `${code(argument.name)}: ${this.type(eventArgumentType(name, handler, argument))}`);
      return [code(handler.name), names.map((each) => `"${each}"`).join(', '), given.join('<br>') || 'none',
        this.text(handler.doc, name)];
    })).join('\n');
  }

  listening() {
    const { listeners } = [...this.interfaces.values()].find((each) => each.listeners.length);
    return ['## Listening', 'Every object that fires events has these two methods.',
      ...listeners.flatMap(({ forms }) => this.methods('EventListeners', forms, '###'))].join('\n\n');
  }

  index() {
    return this.window.index
      .replace('<!-- elements -->', this.elementTable())
      .replace('<!-- factory -->', this.factoryTable())
      .replace('<!-- globals -->', this.globalTable())
      .replace('<!-- classes -->', this.classTable());
  }

  elementTable() {
    return table(['Type', 'Class', 'From HbbTV'], this.window.elements.map(({ mime, className, profile }) =>
      [code(mime), this.link(className), profile])).join('\n');
  }

  factoryTable() {
    const native = new Map(this.factoryOperations().map(({ name, forms: [form] }) => [name, form]));
    const visual = new Set(this.window.elements.filter((each) => each.visual).map(({ className }) => className));
    const made = this.window.factory.filter(({ name, supported }) => supported && native.has(name));
    const rows = made.map(({ name }) => {
      const { result, doc } = native.get(name);
      const kind = visual.has(result.name) ? ', an element' : '';
      return [code(`${name}()`), this.link(result.name) + kind, this.text(doc)];
    });
    const refused = this.window.factory.filter(({ supported }) => !supported).map(({ name }) => code(name));
    return [
      ...table(['Method', 'Returns', 'Remarks'],
        [[code('isObjectSupported(mimetype)'), code('boolean'), 'Whether elements of this type become objects.'],
          ...rows]),
      '', `These throw \`TypeError\`: ${refused.join(', ')}.`,
    ].join('\n');
  }

  globalTable() {
    const rows = [...this.interfaces.values()].filter((each) => each.globalConstructor || each.globalInstance)
      .map(({ name, doc, globalConstructor }) => [this.link(name, code(name)),
        (globalConstructor ? 'Holds the constants of the class. ' : '') + this.text(doc)]);
    rows.push([code('debug(message)'),
      'Writes a line to the receiver\'s log and to the debug socket, and returns `null`.']);
    return table(['Name', 'Meaning'], rows).join('\n');
  }

  classTable() {
    return table(['Class', 'Meaning'], [...this.interfaces.values()].map(({ name, doc }) =>
      [this.link(name), this.text(firstSentence(doc))])).join('\n');
  }
}
