// The TypeScript declarations of everything that a page can see: the types in a namespace, and what is on the window.

import {
  argumentType, attributeType, eventArgumentType, eventOf, isHandler, listsOf, resultType,
} from './types.mjs';

const WIDTH = 108;

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
  const { name: className, doc, listeners, globalConstructor } = description;
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
      `interface ${name}Constants {`, ...constants, '}', '');
  } else {
    members.unshift(...constants);
  }
  const base = globalConstructor ? ` extends ${name}Constants` : '';
  return [...lines, comment(doc, ''), `interface ${name}${base} {`, ...members, '}', ''];
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
    'interface OipfObjectFactory {', ...lines, '}', ''];
}

function elementMap({ elements }) {
  const lines = elements.map(({ mime, className }) => `  "${mime}": OipfElement<${className}>;`);
  return [comment('What an `object` element is, by its type.', ''), 'interface OipfElements {', ...lines, '}', ''];
}

const file = (head, lines) => `${[head, ...lines].join('\n').replace(/\n+$/, '')}\n`;

// Types alone, all within one name, for pages that have other declarations of the globals too.
export function namespace(interfaces, window, head) {
  const lines = [...elementMap(window), ...factory(interfaces, window), ...[...interfaces.values()].flatMap(declaration)];
  const body = lines.join('\n').replace(/\n+$/, '').replace(/^(?=.)/gm, '  ');
  return file(head, [body, '}']);
}

// What is on the page's window.
export function globals(interfaces, head) {
  return file(head, [...interfaces.values()].flatMap(({ name, globalConstructor, globalInstance }) => [
    ...(globalConstructor ? [`declare var ${name}: hbbtv.${name}Constants;`] : []),
    ...(globalInstance ? [`declare var ${name}: hbbtv.${name};`] : []),
  ]));
}
