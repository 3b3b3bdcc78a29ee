// The TypeScript declarations of everything that a page can see.

import {
  argumentType, attributeType, eventArgumentType, eventOf, isHandler, listsOf, resultType,
} from './types.mjs';

const WIDTH = 110;

// The DOM's own type has the plain name.
const declaredName = (name) => (name === 'Event' ? 'OipfEvent' : name);

// A function among alternatives needs its parentheses.
const union = (words) =>
  words.map((word) => (word.includes('=>') && words.length > 1 ? `(${word})` : word)).join(' | ');

function comment(doc, indent) {
  const single = `${indent}/** ${doc} */`;
  if (single.length <= WIDTH) return single;
  const lines = [''];
  for (const word of doc.split(' ')) {
    if (`${indent} *${lines.at(-1)} ${word}`.length > WIDTH) lines.push('');
    lines[lines.length - 1] += ` ${word}`;
  }
  return [`${indent}/**`, ...lines.map((line) => `${indent} *${line}`), `${indent} */`].join('\n');
}

const described = (doc, ...lines) => [comment(doc, '  '), ...lines.map((line) => `  ${line}`)];

function parameters(className, name, list) {
  return list.map((argument) =>
    `${argument.name}${argument.optional ? '?' : ''}: ${union(argumentType(className, name, argument))}`).join(', ');
}

function handlerType(className, handler) {
  const { arguments: list } = eventOf(handler);
  const given = list === null ? ['...values: any[]']
    : list.map((argument) => `${argument.name}: ${union(eventArgumentType(className, handler, argument))}`);
  return `((${[`this: ${className}`, ...given].join(', ')}) => void) | null`;
}

function attributeLines({ name: className }, attribute) {
  const type = isHandler(attribute) ? handlerType(className, attribute) : union(attributeType(className, attribute));
  return described(attribute.doc, `${attribute.readonly ? 'readonly ' : ''}${attribute.name}: ${type};`);
}

function operationLines({ name: className }, { name, forms }) {
  return forms.flatMap((form) => described(form.doc, ...listsOf(form).map((list) =>
    `${name}(${parameters(className, name, list)}): ${union(resultType(className, form, forms))};`)));
}

const constantLines = ({ constants }) =>
  constants.flatMap(({ name, value, doc }) => described(doc, `readonly ${name}: ${value};`));

function indexLines({ name, getter }) {
  if (!getter) return [];
  const [form] = getter.forms;
  const type = resultType(name, form, getter.forms).filter((word) => word !== 'undefined');
  return described(`The same as \`${getter.name}(index)\`.`, `readonly [index: number]: ${union(type)};`);
}

// Listeners are declared by event name, so that each knows what its event carries.
function listenerLines({ name: className, listeners }) {
  return listeners.flatMap(({ name, forms: [form] }) => described(form.doc,
    `${name}<K extends keyof ${className}EventMap>(type: K,`,
    `  listener: (this: ${className}, event: ${className}EventMap[K]) => void, useCapture?: boolean): void;`));
}

function eventMap({ name: className, attributes }) {
  const lines = attributes.filter(isHandler).flatMap((handler) => {
    const { names, arguments: list } = eventOf(handler);
    const carried = (list ?? []).map((argument) =>
      `readonly ${argument.name}: ${union(eventArgumentType(className, handler, argument))}`).join('; ');
    return names.map((name) => `  ${name}: OipfEvent${carried && ` & { ${carried} }`};`);
  });
  return [comment(`What listeners of \`${className}\` get, by the name of the event.`, ''),
    `interface ${className}EventMap {`, ...lines, '}', ''];
}

function declaration(description) {
  const { name: className, doc, listeners, globalConstructor, globalInstance } = description;
  const name = declaredName(className);
  const members = [
    ...description.attributes.flatMap((attribute) => attributeLines(description, attribute)),
    ...description.operations.flatMap((operation) => operationLines(description, operation)),
    ...indexLines(description),
    ...listenerLines(description),
  ];
  const constants = constantLines(description);
  const lines = listeners.length ? eventMap(description) : [];
  if (globalConstructor) {
    lines.push(comment(`The constants of \`${name}\`. It cannot be called with \`new\`.`, ''),
      `interface ${name}Constants {`, ...constants, '}', `declare var ${name}: ${name}Constants;`, '');
  } else {
    members.unshift(...constants);
  }
  const base = globalConstructor ? ` extends ${name}Constants` : '';
  lines.push(comment(doc, ''), `interface ${name}${base} {`, ...members, '}');
  if (globalInstance) lines.push(`declare var ${name}: ${name};`);
  return [...lines, ''];
}

function factory(interfaces, { elements, factory: methods }) {
  const native = new Map([...interfaces.values()].filter(({ globalInstance }) => globalInstance)
    .flatMap(({ operations }) => operations.map((operation) => [operation.name, operation.forms[0]])));
  const visual = new Set(elements.filter((each) => each.visual).map(({ className }) => className));
  const lines = methods.flatMap(({ name, supported }) => {
    if (!supported) return described('Throws `TypeError`: there is no such object.', `${name}(): never;`);
    if (!native.has(name)) {
      return described('Returns whether there are objects of this MIME type. Upper and lower case are the same.',
        `${name}(mimetype: string): boolean;`);
    }
    const { result, doc } = native.get(name);
    return described(doc, `${name}(): ${visual.has(result.name) ? `OipfElement<${result.name}>` : result.name};`);
  });
  return [comment('Makes the objects for pages that do without `object` elements.', ''),
    'interface OipfObjectFactory {', ...lines, '}', 'declare var oipfObjectFactory: OipfObjectFactory;', ''];
}

function elementMap({ elements }) {
  const lines = elements.map(({ mime, className }) => `  "${mime}": OipfElement<${className}>;`);
  return [comment('What an `object` element is, by its type.', ''), 'interface OipfElements {', ...lines, '}', ''];
}

export function declarations(interfaces, window, head) {
  return [
    head,
    ...elementMap(window),
    ...factory(interfaces, window),
    ...[...interfaces.values()].flatMap(declaration),
  ].join('\n').replace(/\n+$/, '\n');
}
