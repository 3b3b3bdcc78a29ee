// Writes the C++ of one class: its tables, and a few lines per member under the member's own declaration.

const WIDTH = 110;
const upper = (name) => name[0].toUpperCase() + name.slice(1);
const HEAD = '// Generated from the interface description; changes made here are lost.\n';

// `head`, the parts with commas between them and `tail`, broken where a line would be too long.
function fill(head, parts, tail) {
  const [first, ...rest] = parts.map((part, index) => part + (index < parts.length - 1 ? ',' : tail));
  const lines = [head + first];
  for (const part of rest) {
    const joined = `${lines.at(-1)} ${part}`;
    if (joined.length <= WIDTH) lines[lines.length - 1] = joined;
    else lines.push(' '.repeat(head.length) + part);
  }
  return lines.join('\n');
}

const comment = (indent, text) =>
  fill(`${indent}// `, text.split(', '), '').replace(/\n\s*/g, `\n${indent}//     `);

// A row of a table: on one line, or one part a line, or with the members on lines of their own.
function row(indent, parts) {
  const line = `${indent}{${parts.join(', ')}},`;
  if (line.length <= WIDTH) return line;
  return `${indent}{${parts.map((part) => (part.length + indent.length + 2 <= WIDTH ? part
    : part.replace(', &Impl', `,\n${indent}     &Impl`))).join(`,\n${indent} `)}},`;
}

const table = (indent, type, name, rows) => (rows.length
  ? `${indent}static const ${type} ${name}[] = {\n${rows.join('\n')}\n${indent}};`
  : `${indent}static const std::span<const ${type}> ${name};`);

function tag(type) {
  const inner = type.kind === 'object' ? `Idl::Object<ji${type.name}>` : `Idl::${type.tag}`;
  return type.nullable ? `Idl::Nullable<${inner}>` : inner;
}

// A result's "may be null" needs no wrapper: every object result may.
const resultTag = (type) => (type.kind === 'object' ? tag({ ...type, nullable: false }) : tag(type));

function argumentTag(argument) {
  if (argument.ignored) return 'Idl::Ignored';
  return argument.optional ? `Idl::Optional<${tag(argument.type)}>` : tag(argument.type);
}

// All methods of a class, in the order of its table.
const methodNamesOf = ({ operations, listeners }) => [...operations, ...listeners].map(({ name }) => name);

export function bindingHeader(description) {
  const { name, isTarget, constants, customConvertToType: convert } = description;
  const own = [
    ...(constants.length ? ['    static const BindingConstants& t_GetConstants();'] : []),
    ...(convert ? ['    static JSValueRef t_ConvertToType(JSContextRef, JSObjectRef, JSType, JSValueRef*);'] : []),
    ...(description.globalInstance ? ['    static void Register(JSContextRef context);'] : []),
    ...methodNamesOf(description).map((method) => fill(`    static JSValueRef t_${upper(method)}(`,
      ['JSContextRef', 'JSObjectRef', 'JSObjectRef', 'size_t', 'const JSValueRef[]', 'JSValueRef*'], ');')),
  ].map((line) => `${line}\n`).join('');
  const copy = isTarget ? ' = delete' : '';
  const head = `class ji${name} final`;
  const base = `: public Binding<ji${name}, C${name}Impl> {`;
  return `${HEAD}#pragma once

#include "InjectedBundle/Src/Binding.h"

namespace OipfJavaScript {

class C${name}Impl;

${head}${head.length + base.length < WIDTH ? ' ' : '\n    '}${base}
 public:
    static const char* const ID;
    static const BindingClass& Class();

    using Binding::Binding;
    ji${name}(const ji${name}&)${copy};
    ji${name}& operator=(const ji${name}&)${copy};
    ~ji${name}() override;
${own && `\n${own}`}};

}  // namespace OipfJavaScript
`;
}

export function baseHeader({ name, isTarget }) {
  const bases = isTarget ? ' : public CallStatus, public JSHbbTVEventHandler' : ' : public CallStatus';
  const body = isTarget
    ? `{
 protected:
    explicit C${name}Base(const char* name) : JSHbbTVEventHandler(name) {}
}`
    : '{}';
  return `${HEAD}#pragma once

#include "InjectedBundle/Src/CallArguments.h"
#include "InjectedBundle/Src/CallStatus.h"
${isTarget ? '#include "InjectedBundle/Src/JSHbbTVEventHandler.h"\n' : ''}#include "InjectedBundle/gen/js/ji${name}.h"

namespace OipfJavaScript {

class C${name}Base${bases} ${body};

}  // namespace OipfJavaScript
`;
}

function attributeRow(attribute, name) {
  const { type, text } = attribute;
  const member = upper(attribute.name);
  let get = `&GetAttribute<ji${name}, ${resultTag(type)}, &Impl::Get${member}>`;
  let set = `&SetAttribute<ji${name}, ${tag(type)}, &Impl::Set${member}>`;
  if (type.kind === 'handler') [get, set] = [`&GetHandler<ji${name}>`, `&SetHandler<ji${name}>`];
  if (attribute.customGetter) get = `&GetCustomAttribute<ji${name}, &Impl::getCustom${member}>`;
  if (attribute.customSetter) set = `&SetCustomAttribute<ji${name}, &Impl::setCustom${member}>`;
  if (attribute.readonly) set = 'nullptr';
  return `${comment(' '.repeat(8), text)}\n${row(' '.repeat(8), [`"${attribute.name}"`, get, set])}`;
}

function formOf(form, overloaded) {
  const member = `Impl::${form.custom ? 'custom' : ''}${upper(form.name)}`;
  if (form.custom) return ['CustomOperation<', [`&${member}`]];
  const types = form.arguments.filter(({ ignored }) => !ignored).map(argumentTag);
  const pointer = overloaded ? `Overload<${types.join(', ')}>::Of(&${member})` : `&${member}`;
  return ['Operation<', [pointer, resultTag(form.result), ...form.arguments.map(argumentTag)]];
}

const listenerFormOf = ({ name }) => ['ListenerOperation<', [`&Impl::t_${upper(name)}`]];

// A form is the template and its arguments.
function method(binding, operation, forms) {
  const callback = `t_${upper(operation.name)}`;
  const aliases = forms.map((_, index) => (forms.length > 1 ? `Form${index + 1}` : 'Form'));
  const uses = forms.map(([head, parts], index) => fill(`    using ${aliases[index]} = ${head}`, parts, '>;'));
  return `
${operation.forms.map(({ text }) => `${comment('', text)}\n`).join('')}${
    fill(`JSValueRef ${binding}::${callback}(`, ['JSContextRef context', 'JSObjectRef', 'JSObjectRef object', 'size_t count',
      'const JSValueRef values[]', 'JSValueRef* exception'], ') {')}
${uses.join('\n')}
${fill(`    return CallOperation<${[binding, ...aliases].join(', ')}>(`,
    [`"${callback}"`, '{context, object, count, values, exception}'], ');')}
}
`;
}

const methodsText = ({ name, operations, listeners }) => [
  ...operations.map((operation) => method(`ji${name}`, operation,
    operation.forms.map((form) => formOf(form, operation.forms.length > 1)))),
  ...listeners.map((operation) => method(`ji${name}`, operation, operation.forms.map(listenerFormOf))),
].join('');

function includesOf(description) {
  const names = new Set();
  const add = (type) => type.kind === 'object' && names.add(type.name);
  description.attributes.forEach(({ type }) => add(type));
  description.operations.forEach(({ forms }) => forms.forEach((form) => {
    add(form.result);
    form.arguments.forEach(({ type }) => add(type));
  }));
  names.delete(description.name);
  return [...names].sort().map((name) => `#include "InjectedBundle/gen/js/ji${name}.h"\n`).join('');
}

function indexing({ name, getter }) {
  if (!getter) return '';
  const [form] = getter.forms;
  return `    static const BindingIndexing s_indexing = {
        &IndexedLength<ji${name}, &Impl::GetLength>,
        &IndexedItem<ji${name}, ${resultTag(form.result)}, &Impl::${upper(form.name)}>,
    };
`;
}

export function bindingSource(description) {
  const { name, isTarget, constants, attributes, getter, customConvertToType: convert } = description;
  const rows = attributes.map((attribute) => attributeRow(attribute, name));
  const methods = methodNamesOf(description).map((each) => `        {"${each}", &t_${upper(each)}},`);
  return `${HEAD}#include "InjectedBundle/gen/js/ji${name}.h"

#include "InjectedBundle/Src/BindingCall.h"
${includesOf(description)}#include "JavaScript/Src/C${name}Impl.h"

namespace OipfJavaScript {

const char* const ji${name}::ID = "${name}";

// Here the implementation class is known, which most users of this one do without.
${isTarget ? '' : `ji${name}::ji${name}(const ji${name}&) = default;
ji${name}& ji${name}::operator=(const ji${name}&) = default;
`}ji${name}::~ji${name}() = default;

const BindingClass& ji${name}::Class() {
${table('    ', 'BindingAttribute', 's_attributes', rows)}
${table('    ', 'BindingMethod', 's_methods', methods)}
${indexing(description)}    static const auto* const s_class =
        new BindingClass(ID, s_attributes, s_methods, ${constants.length ? '&t_GetConstants()' : 'nullptr'}, ${
  getter ? '&s_indexing' : 'nullptr'}, Callbacks(${convert ? '&t_ConvertToType' : ''}));
    return *s_class;
}
${constants.length ? `
const BindingConstants& ji${name}::t_GetConstants() {
    static const BindingConstants s_constants = {
${constants.map((constant) => `        {"${constant.name}", ${constant.value}},`).join('\n')}
    };
    return s_constants;
}
` : ''}${description.globalInstance ? `
void ji${name}::Register(JSContextRef context) {
    RegisterInstance(context, ID, MakeObject<ji${name}>(context));
}
` : ''}${convert ? `
JSValueRef ji${name}::t_ConvertToType(JSContextRef context, JSObjectRef object, JSType type,
                                      JSValueRef* exception) {
    ji${name}* native = FromJS("t_ConvertToType", context, object);
    return native != nullptr ? native->Implementation().customConvertToType(context, object, type, exception)
                             : nullptr;
}
` : ''}${methodsText(description)}
}  // namespace OipfJavaScript
`;
}

// The names that the bootstrap script needs before the first native object exists: those of the classes that the
// factory makes.
export function membersScript(descriptions) {
  const made = new Set(descriptions.filter(({ globalInstance }) => globalInstance)
    .flatMap(({ operations }) => operations.flatMap(({ forms }) => forms.map(({ result }) => result.name))));
  const members = Object.fromEntries(descriptions.filter(({ name }) => made.has(name))
    .map((description) => [description.name, {
      attributes: description.attributes.map(({ name }) => name),
      methods: methodNamesOf(description),
      constants: description.constants.map(({ name }) => name),
    }]));
  return `var _hbbtv_vantrel_members = ${JSON.stringify(members, null, 1)};\n`;
}
