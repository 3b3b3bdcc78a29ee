// Writes the C++ of one class: tables, and one line per member.

const upper = (name) => name[0].toUpperCase() + name.slice(1);
const HEAD = '// Generated from the interface description; changes made here are lost.\n';

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

const withContext = (member) => (member.context ? 'CallWith::Context' : 'CallWith::Nothing');

// All methods of a class, in the order of its table.
const methodNamesOf = ({ operations, listeners }) => [...operations, ...listeners].map(({ name }) => name);

export function bindingHeader(description) {
  const { name, constants, customConvertToType: convert } = description;
  const methodLines = methodNamesOf(description).map(
    (method) => `    static JSValueRef t_${upper(method)}(JSContextRef, JSObjectRef, JSObjectRef, size_t, const JSValueRef[],
                                   JSValueRef*);`);
  const copy = description.isTarget
    ? `    ji${name}(const ji${name}&) = delete;
    ji${name}& operator=(const ji${name}&) = delete;`
    : `    ji${name}(const ji${name}&);
    ji${name}& operator=(const ji${name}&);`;
  return `${HEAD}#pragma once

#include <JavaScriptCore/JavaScript.h>

#include <memory>

#include "InjectedBundle/Src/BindingClass.h"
#include "InjectedBundle/Src/BindingObject.h"

namespace OipfJavaScript {

class C${name}Impl;

class ji${name} final : public BindingObject {
   public:
    static const char* const ID;

    explicit ji${name}(std::unique_ptr<C${name}Impl> implementation);
${copy}
    ~ji${name}() override;

    [[nodiscard]] C${name}Impl& Implementation() { return *m_implementation; }
    [[nodiscard]] const C${name}Impl& Implementation() const { return *m_implementation; }

    [[nodiscard]] const BindingClass& OwnClass() const override { return Class(); }

    static void Register(JSContextRef context);
    // Takes over \`native\`; a null one gives a plain empty object.
    static JSObjectRef CreateObject(JSContextRef context, ji${name}* native, JSValueRef* exception);
    // The native object of a value of this class, or null (logged, unless \`where\` is null).
    [[nodiscard]] static ji${name}* FromJS(const char* where, JSContextRef context, JSValueRef value);

    static const JSClassDefinition* t_GetClassDefinition();
${constants.length ? '    static const BindingConstants& t_GetConstants();\n' : ''}    static void t_InitCb(JSContextRef, JSObjectRef);
    static void t_FinaliseCb(JSObjectRef);
    static bool t_HasProperty(JSContextRef, JSObjectRef, JSStringRef);
    static JSValueRef t_GetProperty(JSContextRef, JSObjectRef, JSStringRef, JSValueRef*);
    static bool t_SetProperty(JSContextRef, JSObjectRef, JSStringRef, JSValueRef, JSValueRef*);
    static JSObjectRef t_CallAsConstructor(JSContextRef, JSObjectRef, size_t, const JSValueRef[], JSValueRef*);
${convert ? '    static JSValueRef t_ConvertToType(JSContextRef, JSObjectRef, JSType, JSValueRef*);\n' : ''}${methodLines.map((line) => line + '\n').join('')}
   private:
    static const BindingClass& Class();

    std::unique_ptr<C${name}Impl> m_implementation;
};

}  // namespace OipfJavaScript
`;
}

export function baseHeader({ name, isTarget }) {
  const bases = isTarget ? ': public CallStatus, public JSHbbTVEventHandler' : ': public CallStatus';
  const body = isTarget
    ? `   protected:
    explicit C${name}Base(const char* name) : JSHbbTVEventHandler(name) {}
`
    : '';
  return `${HEAD}#pragma once

#include "InjectedBundle/Src/CallArguments.h"
#include "InjectedBundle/Src/CallStatus.h"
${isTarget ? '#include "InjectedBundle/Src/JSHbbTVEventHandler.h"\n' : ''}#include "InjectedBundle/gen/js/ji${name}.h"

namespace OipfJavaScript {

class C${name}Base ${bases} {
${body}};

}  // namespace OipfJavaScript
`;
}

function attributeRow(attribute, name, built) {
  const { type } = attribute;
  const impl = `C${name}Impl`;
  const binding = `ji${name}`;
  if (type.kind === 'handler')
    return `    {"${attribute.name}", &GetHandler<${binding}>, &SetHandler<${binding}>},`;
  const member = upper(attribute.name);
  let get;
  if (type.kind === 'object' && !built.has(type.name)) get = `&GetMissingClass`;
  else if (attribute.customGetter) get = `&GetCustomAttribute<${binding}, &${impl}::getCustom${member}>`;
  else get = `&GetAttribute<${binding}, ${resultTag(type)}, &${impl}::Get${member}, ${withContext(attribute)}>`;
  let set = 'nullptr';
  if (!attribute.readonly) {
    set = attribute.customSetter
      ? `&SetCustomAttribute<${binding}, &${impl}::setCustom${member}>`
      : `&SetAttribute<${binding}, ${tag(type)}, &${impl}::Set${member}, ${withContext(attribute)}>`;
  }
  return `    {"${attribute.name}", ${get}, ${set}},`;
}

function missingClasses(operation, built) {
  return operation.forms.flatMap((form) => [form.result, ...form.arguments.map(({ type }) => type)])
    .filter((type) => type.kind === 'object' && !built.has(type.name)).map((type) => type.name);
}

function methodBody(operation, name, built) {
  const member = upper(operation.name);
  const [missing] = missingClasses(operation, built);
  if (missing) return `Call::RefuseMissingClass("t_${member}", "${missing}", {context, object, count, values, exception})`;
  const forms = operation.forms.map((form) => {
    if (form.custom) return `CustomOperation<&C${name}Impl::custom${member}>`;
    const types = [resultTag(form.result), ...form.arguments.map(argumentTag)].join(', ');
    const overload = operation.forms.length > 1 ? overloadOf(form, name, member) : `&C${name}Impl::${member}`;
    return `Operation<${overload}, ${withContext(form)}, ${types}>`;
  });
  return `CallOperation<ji${name}, ${forms.join(', ')}>("t_${member}", {context, object, count, values, exception})`;
}

// An overloaded member is named together with its parameters. It may be inherited.
function overloadOf(form, name, member) {
  const parameters = form.arguments.filter(({ ignored }) => !ignored).map((argument) => {
    const native = `${argumentTag(argument)}::Native`;
    return argument.type.tag === 'String' || argument.type.tag === 'Bytes' ? `const ${native}&` : native;
  });
  if (form.context) parameters.unshift('JSContextRef');
  return `Overload<${parameters.join(', ')}>::Of(&C${name}Impl::${member})`;
}

function indexing(description, built) {
  const { name, getter } = description;
  if (!getter || missingClasses(getter, built).length) return null;
  const [form] = getter.forms;
  return `const BindingIndexing s_indexing = {
    &IndexedLength<ji${name}, &C${name}Impl::GetLength>,
    &IndexedItem<ji${name}, ${resultTag(form.result)}, &C${name}Impl::${upper(form.name)}>,
};
`;
}

function includesOf(description, built) {
  const names = new Set();
  const add = (type) => type.kind === 'object' && built.has(type.name) && names.add(type.name);
  description.attributes.forEach(({ type }) => add(type));
  description.operations.forEach(({ forms }) => forms.forEach((form) => {
    add(form.result);
    form.arguments.forEach(({ type }) => add(type));
  }));
  names.delete(description.name);
  return [...names].sort().map((name) => `#include "InjectedBundle/gen/js/ji${name}.h"\n`).join('');
}

export function bindingSource(description, built) {
  const { name, constants, attributes, operations, listeners, customConvertToType: convert } = description;
  const index = indexing(description, built);
  const rows = attributes.map((attribute) => attributeRow(attribute, name, built));
  const methods = methodNamesOf(description).map((method) => `        {"${method}", &ji${name}::t_${upper(method)}},`);
  const signature = 'JSContextRef context, JSObjectRef, JSObjectRef object, size_t count, const JSValueRef values[],';
  const definitions = [
    ...operations.map((operation) => [operation.name, methodBody(operation, name, built)]),
    ...listeners.map(({ name: method }) => [method,
      `CallOperation<ji${name}, ListenerOperation<&C${name}Impl::t_${upper(method)}>>("t_${upper(method)}", {context, object, count, values, exception})`]),
  ].map(([method, body]) => `JSValueRef ji${name}::t_${upper(method)}(${signature} JSValueRef* exception) {
    return ${body};
}
`);
  const copy = description.isTarget ? '' : `ji${name}::ji${name}(const ji${name}& other) : BindingObject(other), m_implementation(CopyImplementation(*other.m_implementation)) {}
ji${name}& ji${name}::operator=(const ji${name}& other) {
    m_implementation = CopyImplementation(*other.m_implementation);
    return *this;
}
`;
  const register = description.globalInstance
    ? `    RegisterInstance(context, ID, CreateObject(context, MakeBinding<ji${name}>().release(), nullptr));`
    : '    Class().RegisterConstructor(context);';
  return `${HEAD}#include "InjectedBundle/gen/js/ji${name}.h"

#include "InjectedBundle/Src/BindingCall.h"
${includesOf(description, built)}#include "JavaScript/Src/C${name}Impl.h"

namespace OipfJavaScript {

namespace {

${rows.length ? `const BindingAttribute s_attributes[] = {\n${rows.join('\n')}\n};\n` : 'const std::span<const BindingAttribute> s_attributes;\n'}
${index ?? ''}
}  // namespace

const char* const ji${name}::ID = "${name}";

ji${name}::ji${name}(std::unique_ptr<C${name}Impl> implementation) : m_implementation(std::move(implementation)) {}
${copy}ji${name}::~ji${name}() = default;

const BindingClass& ji${name}::Class() {
${methods.length ? `    static const BindingMethod s_methods[] = {\n${methods.join('\n')}\n    };\n` : '    static const std::span<const BindingMethod> s_methods;\n'}    static const auto* const s_class = new BindingClass(
        ID, s_attributes, s_methods, ${constants.length ? '&t_GetConstants()' : 'nullptr'}, ${index ? '&s_indexing' : 'nullptr'},
        {&t_InitCb, &t_FinaliseCb, &t_HasProperty, &t_GetProperty, &t_SetProperty, &t_CallAsConstructor, ${convert ? '&t_ConvertToType' : 'nullptr'}});
    return *s_class;
}

${constants.length ? `const BindingConstants& ji${name}::t_GetConstants() {
    static const BindingConstants s_constants = {
${constants.map((constant) => `        {"${constant.name}", ${constant.value}},`).join('\n')}
    };
    return s_constants;
}

` : ''}const JSClassDefinition* ji${name}::t_GetClassDefinition() { return Class().Definition(); }
void ji${name}::Register(JSContextRef context) {
${register}
}
JSObjectRef ji${name}::CreateObject(JSContextRef context, ji${name}* native, JSValueRef*) {
    return Class().CreateObject(context, native);
}
ji${name}* ji${name}::FromJS(const char* where, JSContextRef context, JSValueRef value) {
    return static_cast<ji${name}*>(Class().NativeOf(where, context, value));
}
void ji${name}::t_InitCb(JSContextRef context, JSObjectRef object) { Class().Initialise(context, object); }
void ji${name}::t_FinaliseCb(JSObjectRef object) { delete static_cast<BindingObject*>(JSObjectGetPrivate(object)); }
bool ji${name}::t_HasProperty(JSContextRef, JSObjectRef object, JSStringRef name) { return Class().HasProperty(object, name); }
JSValueRef ji${name}::t_GetProperty(JSContextRef context, JSObjectRef object, JSStringRef name, JSValueRef* exception) {
    return Class().GetProperty(context, object, name, exception);
}
bool ji${name}::t_SetProperty(JSContextRef context, JSObjectRef object, JSStringRef name, JSValueRef value, JSValueRef* exception) {
    return Class().SetProperty(context, object, name, value, exception);
}
JSObjectRef ji${name}::t_CallAsConstructor(JSContextRef context, JSObjectRef, size_t, const JSValueRef[], JSValueRef* exception) {
    return Class().RefuseConstruction(context, exception);
}
${convert ? `JSValueRef ji${name}::t_ConvertToType(JSContextRef context, JSObjectRef object, JSType type, JSValueRef* exception) {
    ji${name}* native = FromJS("t_ConvertToType", context, object);
    return native != nullptr ? native->Implementation().customConvertToType(context, object, type, exception) : nullptr;
}
` : ''}${definitions.join('')}
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
