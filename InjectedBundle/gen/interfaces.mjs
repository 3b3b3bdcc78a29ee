// Reads the interface descriptions and checks that they say only what the generator understands.

import { readdirSync, readFileSync } from 'node:fs';
import { basename, join } from 'node:path';

import { parse, write } from 'webidl2';

const PRIMITIVES = new Map([
  ['boolean', 'Boolean'], ['long', 'Long'], ['unsigned long', 'UnsignedLong'], ['long long', 'LongLong'],
  ['double', 'Double'], ['DOMString', 'String'], ['ByteString', 'Bytes'], ['any', 'Any'], ['undefined', 'Undefined'],
]);
const MIXIN = 'EventListeners';
const LONGEST_NAME = 40; // the property tables of the runtime look no further
// A method is served by t_ and its name; these are taken.
const CALLBACKS = new Set(['getClassDefinition', 'getConstants', 'initCb', 'finaliseCb', 'hasProperty', 'getProperty',
  'setProperty', 'callAsConstructor', 'convertToType', 'getCallbackFunction', 'addCallbackFunction']);

const KNOWN_ATTRIBUTES = {
  interface: new Set(['GlobalConstructor', 'GlobalInstance', 'CustomConvertToType']),
  attribute: new Set(['CustomGetter', 'CustomSetter']),
  operation: new Set(['Custom']),
  argument: new Set(['Ignored']),
  const: new Set(),
};

class Source {
  constructor(path) {
    this.path = path;
    this.text = readFileSync(path, 'utf8');
  }

  fail(node, reason) {
    const token = node?.tokens?.base ?? node?.tokens?.name ?? node?.tokens?.target ?? node?.tokens?.separator;
    throw new Error(`${this.path}:${token?.line ?? this.lineOf(node)}: ${reason}`);
  }

  // Members carry no line of their own: the line of the member's name is looked up.
  lineOf(node) {
    const name = node?.name;
    if (!name) return 1;
    const index = this.text.search(new RegExp(`\\b${name}\\b`));
    return index < 0 ? 1 : this.text.slice(0, index).split('\n').length;
  }

  parse() {
    try {
      return parse(this.text, { sourceName: this.path, concrete: true }).filter((node) => node.type !== 'eof');
    } catch (error) {
      throw new Error(`${this.path}:${error.line ?? 1}: ${error.bareMessage ?? error.message}`);
    }
  }
}

// The doc comment is what stands before the node's first token: its words, and the lists after "@arguments", with which
// a handler is called or which a custom operation takes.
function docOf(node) {
  const [doc, ...lists] = commentOf(node).split(/\s*@arguments\s+/);
  return { doc, lists };
}

function commentOf(node) {
  const first = node.extAttrs?.length
    ? node.extAttrs.tokens.open
    : Object.values(node.tokens).find((token) => token) ?? firstTypeToken(node);
  const candidates = [first, firstTypeToken(node)].filter(Boolean);
  for (const token of candidates) {
    const comments = [...(token.trivia ?? '').matchAll(/\/\*\*([\s\S]*?)\*\//g)];
    if (comments.length) {
      return comments.at(-1)[1].split('\n').map((line) => line.replace(/^\s*\* ?/, '').trim()).join(' ').trim();
    }
  }
  return '';
}

// A member as it is declared, on one line and without its comments.
const declarationOf = (node) =>
  write([node]).replace(/\/\*[\s\S]*?\*\/|\/\/.*/g, '').replace(/\s+/g, ' ').trim();

function firstTypeToken(node) {
  const type = node.idlType;
  if (!type) return null;
  return type.tokens?.prefix ?? type.tokens?.base ?? (Array.isArray(type.idlType) ? firstTypeToken(type) : null);
}

function extendedAttributes(source, node, kind) {
  const found = new Set();
  for (const attribute of node.extAttrs ?? []) {
    if (!KNOWN_ATTRIBUTES[kind].has(attribute.name))
      source.fail(node, `unknown extended attribute [${attribute.name}] on ${kind} ${node.name ?? ''}`.trim());
    found.add(attribute.name);
  }
  return found;
}

function typeOf(source, node, idlType, names, { handler = false, result = false } = {}) {
  if (idlType.union || idlType.generic || Array.isArray(idlType.idlType))
    source.fail(node, `type of ${node.name} is not supported`);
  const name = idlType.idlType;
  const nullable = idlType.nullable;
  if (handler && name === 'EventHandler') return { kind: 'handler' };
  if (name === 'undefined' && !result) source.fail(node, `${node.name}: only a result can be undefined`);
  if (PRIMITIVES.has(name)) return { kind: 'primitive', tag: PRIMITIVES.get(name), nullable };
  if (names.has(name)) return { kind: 'object', name, nullable };
  return source.fail(node, `unknown type ${name} of ${node.name}`);
}

function argumentsOf(source, operation, names, list = operation.arguments) {
  let tail = false;
  return list.map((argument) => {
    const attributes = extendedAttributes(source, argument, 'argument');
    if (argument.variadic) source.fail(operation, `${operation.name}: variadic arguments are not supported`);
    if (argument.default) source.fail(operation, `${operation.name}: default values are not supported`);
    if (tail && !argument.optional) source.fail(operation, `${operation.name}: ${argument.name} must be optional`);
    tail = argument.optional;
    if (attributes.has('Ignored') && !argument.optional)
      source.fail(operation, `${operation.name}: ignored argument ${argument.name} must be optional`);
    return {
      name: argument.name,
      type: typeOf(source, argument, argument.idlType, names),
      optional: argument.optional,
      ignored: attributes.has('Ignored'),
    };
  });
}

// Lists of arguments as a doc comment gives them, such as "(long state, optional long error)".
function calledWith(source, node, lists, names) {
  // Lines are counted from the comment's list, so faults are told of the member.
  const member = { fail: (_, reason) => source.fail(node, reason) };
  return lists.map((text) => {
    let parsed;
    try {
      parsed = parse(`interface Comment { undefined ${node.name}${text}; };`);
    } catch (error) {
      return source.fail(node, `${node.name}: "@arguments ${text}": ${error.bareMessage ?? error.message}`);
    }
    return argumentsOf(member, node, names, parsed[0].members[0].arguments);
  });
}

const isAny = (type) => type.tag === 'Any' && !type.nullable;

// The mixin's operations have one implementation for all classes, which takes these arguments and no others.
function checkListenerOperation(source, operation) {
  const [form] = operation.forms;
  const [type, listener, useCapture, ...rest] = form.arguments;
  const fits = form.result.tag === 'Undefined' && type?.type.tag === 'String' && !type.optional &&
    listener && isAny(listener.type) && !listener.optional && useCapture?.ignored && rest.length === 0;
  if (!fits || form.custom || operation.forms.length > 1)
    source.fail(form, `${form.name}: ${MIXIN} has operations of (DOMString, any, [Ignored] optional any) alone`);
}

function constantOf(source, node, doc) {
  if (node.idlType.idlType !== 'long' || node.value.type !== 'number')
    source.fail(node, `constant ${node.name} must be a long`);
  const value = Number(node.value.value);
  if (value !== (value | 0)) source.fail(node, `constant ${node.name} must be a whole number of 32 bits`);
  return { name: node.name, value, doc };
}

function attributeOf(source, node, { names, isTarget, known, calls, doc }) {
  if (node.special) source.fail(node, `${node.special} is not supported`);
  const type = typeOf(source, node, node.idlType, names, { handler: true });
  if (node.readonly && known.has('CustomSetter')) source.fail(node, `${node.name} is read-only and has no setter`);
  if (type.kind === 'handler') {
    if (!isTarget) source.fail(node, `${node.name}: only a class that includes ${MIXIN} has handlers`);
    if (node.readonly || node.idlType.nullable || known.size)
      source.fail(node, `${node.name}: a handler is plain "attribute EventHandler"`);
    if (!node.name.startsWith('on')) source.fail(node, `${node.name}: a handler's name begins with "on"`);
    if (calls.length > 1) source.fail(node, `${node.name}: a handler is called with one list of arguments`);
  }
  return {
    name: node.name, type, doc, calls, text: declarationOf(node), readonly: node.readonly,
    customGetter: known.has('CustomGetter'), customSetter: known.has('CustomSetter'),
  };
}

function formOf(source, node, { names, known, calls, doc }) {
  if (node.special && node.special !== 'getter') source.fail(node, `${node.special} is not supported`);
  const form = {
    name: node.name, doc, calls, text: declarationOf(node), custom: known.has('Custom'),
    result: typeOf(source, node, node.idlType, names, { result: true }), arguments: argumentsOf(source, node, names),
  };
  if (node.special === 'getter') {
    if (form.custom) source.fail(node, `${node.name}: an indexed getter cannot be custom`);
    if (form.arguments.length !== 1 || form.arguments[0].type.tag !== 'UnsignedLong')
      source.fail(node, `${node.name}: an indexed getter takes one unsigned long`);
  }
  return form;
}

// Overloads are forms of one operation.
function addForm(source, node, form, operations) {
  if (!operations.has(node.name)) operations.set(node.name, { name: node.name, forms: [], getter: false });
  const operation = operations.get(node.name);
  operation.forms.push(form);
  if (operation.forms.some((each) => each.custom) && operation.forms.length > 1)
    source.fail(node, `${node.name}: a custom operation takes every call, so it is declared once`);
  const signature = ({ arguments: list }) => JSON.stringify(list.map(({ type, optional }) => [type, optional]));
  if (new Set(operation.forms.map(signature)).size < operation.forms.length)
    source.fail(node, `${node.name} is declared twice with the same arguments`);
  if (node.special === 'getter') {
    if ([...operations.values()].some((each) => each.getter))
      source.fail(node, `${node.name}: there is another indexed getter`);
    operation.getter = true;
  }
}

function membersOf(source, nodes, names, isTarget) {
  const constants = [];
  const attributes = [];
  const operations = new Map();
  const seen = new Set();
  for (const node of nodes) {
    if (!['const', 'attribute', 'operation'].includes(node.type)) source.fail(node, `${node.type} is not supported`);
    const known = extendedAttributes(source, node, node.type);
    const { doc, lists } = docOf(node);
    if (!node.name) source.fail(node, 'a member needs a name');
    if (!doc) source.fail(node, `${node.name} has no doc comment`);
    if (node.name.length > LONGEST_NAME) source.fail(node, `${node.name} is longer than ${LONGEST_NAME} characters`);
    if (node.type === 'operation' && CALLBACKS.has(node.name))
      source.fail(node, `${node.name} is the name of a callback that every class has`);
    if (seen.has(node.name) && !(node.type === 'operation' && operations.has(node.name)))
      source.fail(node, `${node.name} is declared twice`);
    seen.add(node.name);
    if (lists.length && !known.has('Custom') && node.idlType.idlType !== 'EventHandler')
      source.fail(node, `${node.name}: "@arguments" belongs to handlers and custom operations`);
    const member = { names, isTarget, known, doc, calls: calledWith(source, node, lists, names) };
    if (node.type === 'const') constants.push(constantOf(source, node, doc));
    else if (node.type === 'attribute') attributes.push(attributeOf(source, node, member));
    else addForm(source, node, formOf(source, node, member), operations);
  }
  return { constants, attributes, operations: [...operations.values()] };
}

// All interfaces of a folder, by name.
export function readInterfaces(folder) {
  const files = readdirSync(folder).filter((file) => file.endsWith('.idl')).sort();
  if (files.length === 0) throw new Error(`${folder}: there are no .idl files`);
  const read = files.map((file) => {
    const source = new Source(join(folder, file));
    return { source, name: basename(file, '.idl'), nodes: source.parse() };
  });
  const names = new Set(read.filter(({ name }) => name !== MIXIN).map(({ name }) => name));
  const mixin = read.find(({ name }) => name === MIXIN);
  const interfaces = new Map();
  const listeners = mixin ? membersOf(mixin.source, mixin.nodes[0]?.members ?? [], names, false).operations : [];
  listeners.forEach((operation) => checkListenerOperation(mixin.source, operation));
  for (const { source, name, nodes } of read) {
    if (name === MIXIN) continue;
    const [description, ...rest] = nodes.filter((node) => node.type === 'interface');
    if (!description || rest.length) source.fail(null, 'expected exactly one interface');
    if (description.name !== name) source.fail(description, `interface ${description.name} must be in ${description.name}.idl`);
    if (description.partial) source.fail(description, 'partial interfaces are not supported');
    if (description.inheritance) source.fail(description, 'inheritance is not supported');
    const { doc } = docOf(description);
    if (!doc) source.fail(description, `interface ${name} has no doc comment`);
    const includes = nodes.filter((node) => node.type === 'includes');
    for (const node of nodes) {
      if (node.type === 'interface') continue;
      if (node.type !== 'includes' || node.target !== name || node.includes !== MIXIN || !mixin)
        source.fail(node, `only "${name} includes ${MIXIN};" may stand beside the interface`);
    }
    const isTarget = includes.length > 0;
    const known = extendedAttributes(source, description, 'interface');
    const members = membersOf(source, description.members, names, isTarget);
    const getter = members.operations.find((operation) => operation.getter);
    const length = members.attributes.find((attribute) => attribute.name === 'length');
    if (getter && (length?.type.tag !== 'UnsignedLong' || length.customGetter))
      source.fail(description, `${name}: a class with an indexed getter needs a plain unsigned long length`);
    if (known.has('GlobalConstructor') && known.has('GlobalInstance'))
      source.fail(description, `${name}: the window holds either the constructor or an instance`);
    interfaces.set(name, {
      name, doc, isTarget, getter,
      globalConstructor: known.has('GlobalConstructor'), globalInstance: known.has('GlobalInstance'),
      customConvertToType: known.has('CustomConvertToType'),
      ...members,
      listeners: isTarget ? listeners : [],
    });
  }
  return interfaces;
}
