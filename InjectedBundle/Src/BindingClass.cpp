#include "InjectedBundle/Src/BindingClass.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstring>
#include <optional>
#include <string>

#include "CSP/Inc/PCLog.h"
#include "InjectedBundle/Src/BindingObject.h"
#include "InjectedBundle/Src/PageRecord.h"
#include "InjectedBundle/Src/RuntimeObjects.h"

namespace OipfJavaScript {

namespace {

constexpr size_t kLongestName = 40;

size_t Hash(std::string_view name) {
    uint64_t hash = 14695981039346656037U;
    for (const char c : name)
        hash = (hash ^ static_cast<unsigned char>(c)) * 1099511628211U;
    return static_cast<size_t>(hash ^ (hash >> 29));
}

std::vector<const BindingClass*>& AllClasses() {
    static auto* const s_classes = new std::vector<const BindingClass*>();
    return *s_classes;
}

std::string MemberName(const char* id, std::string_view member) {
    return std::string(id).append(".").append(member);
}

}  // namespace

class BindingClass::Name {
 public:
    explicit Name(JSStringRef string) {
        // The length is in characters; anything longer than the longest name is none of ours.
        const size_t length = JSStringGetLength(string);
        if (length == 0 || length > kLongestName)
            return;
        const size_t written = JSStringGetUTF8CString(string, m_buffer.data(), m_buffer.size());
        if (written == length + 1)
            m_length = length;
    }
    [[nodiscard]] std::string_view Text() const { return {m_buffer.data(), m_length}; }

    // The array index that the name spells, if it is one in its canonical form.
    [[nodiscard]] std::optional<uint32_t> Index() const {
        if (m_length == 0 || m_length > 10 || (m_buffer[0] == '0' && m_length > 1))
            return std::nullopt;
        uint64_t index = 0;
        for (const char c : Text()) {
            if (c < '0' || c > '9')
                return std::nullopt;
            index = index * 10 + static_cast<uint64_t>(c - '0');
        }
        if (index >= UINT32_MAX)
            return std::nullopt;
        return static_cast<uint32_t>(index);
    }

 private:
    std::array<char, kLongestName + 1> m_buffer;
    size_t m_length = 0;
};

BindingClass::BindingClass(const char* id, std::span<const BindingAttribute> attributes,
                           std::span<const BindingMethod> methods, const BindingConstants* constants,
                           const BindingIndexing* indexing, const BindingCallbacks& callbacks)
    : m_id(id), m_indexing(indexing), m_table(std::bit_ceil(attributes.size() * 2 + 1)) {
    for (const BindingAttribute& attribute : attributes) {
        size_t slot = Hash(attribute.name) & (m_table.size() - 1);
        while (m_table[slot] != nullptr)
            slot = (slot + 1) & (m_table.size() - 1);
        m_table[slot] = &attribute;
        m_staticValues.push_back(
            {attribute.name, callbacks.getProperty,
             attribute.set != nullptr ? callbacks.setProperty : nullptr,
             attribute.set != nullptr ? kJSPropertyAttributeNone : kJSPropertyAttributeReadOnly});
    }
    for (const BindingMethod& method : methods)
        m_staticFunctions.push_back({method.name, method.call, kJSPropertyAttributeReadOnly});
    m_staticValues.push_back({nullptr, nullptr, nullptr, 0});
    m_staticFunctions.push_back({nullptr, nullptr, 0});
    if (constants != nullptr) {
        for (const auto& [name, value] : *constants)
            m_constants.push_back({JSStringHandle(name), value});
    }

    m_definition = kJSClassDefinitionEmpty;
    m_definition.className = id;
    m_definition.staticValues = m_staticValues.data();
    m_definition.staticFunctions = m_staticFunctions.data();
    // The engine lets go of its lock to call it, an eighth of the time that an object takes.
    m_definition.initialize = m_constants.empty() ? nullptr : callbacks.initialize;
    m_definition.finalize = callbacks.finalize;
    m_definition.hasProperty = callbacks.hasProperty;
    m_definition.getProperty = callbacks.getProperty;
    m_definition.setProperty = callbacks.setProperty;
    m_definition.callAsConstructor = callbacks.callAsConstructor;
    m_definition.convertToType = callbacks.convertToType;
    m_class = JSClassCreate(&m_definition);
    AllClasses().push_back(this);
}

const char* BindingClass::IdOf(JSContextRef context, JSObjectRef object) {
    const auto found = std::ranges::find_if(AllClasses(), [&](const BindingClass* each) {
        return JSValueIsObjectOfClass(context, object, each->Class());
    });
    return found != AllClasses().end() ? (*found)->Id() : nullptr;
}

const BindingAttribute* BindingClass::Find(const Name& name) const {
    const std::string_view text = name.Text();
    if (text.empty())
        return nullptr;
    for (size_t slot = Hash(text) & (m_table.size() - 1); m_table[slot] != nullptr;
         slot = (slot + 1) & (m_table.size() - 1)) {
        if (text == m_table[slot]->name)
            return m_table[slot];
    }
    return nullptr;
}

BindingObject* BindingClass::NativeOf(const char* where, JSContextRef context, JSValueRef value) const {
    BindingObject* native = nullptr;
    if (value != nullptr && JSValueIsObjectOfClass(context, value, m_class)) {
        // An object of the class is what the engine made of it: the cast changes nothing but the type.
        native = static_cast<BindingObject*>(JSObjectGetPrivate(const_cast<JSObjectRef>(value)));
    }
    if (native == nullptr && where != nullptr)
        HBBTV_LOG_ERROR("%s::%s JSObjectGetPrivate is NULL", m_id, where);
    return native;
}

BindingObject* BindingClass::NativeOfOwn(const char* where, JSObjectRef object) const {
    auto* native = static_cast<BindingObject*>(JSObjectGetPrivate(object));
    if (native != nullptr && &native->OwnClass() == this)
        return native;
    HBBTV_LOG_ERROR("%s::%s JSObjectGetPrivate is NULL", m_id, where);
    return nullptr;
}

void BindingClass::RegisterConstructor(JSContextRef context) const {
    JSObjectRef constructor = JSObjectMakeConstructor(context, m_class, m_definition.callAsConstructor);
    const JSStringHandle name(m_id);
    JSObjectSetProperty(context, JSContextGetGlobalObject(context), name.Get(), constructor,
                        kJSPropertyAttributeNone, nullptr);
    SetConstants(context, constructor);
}

JSObjectRef BindingClass::CreateObject(JSContextRef context, BindingObject* native) const {
    if (native == nullptr) {
        HBBTV_LOG_ERROR("%s::%s user data is NULL - empty object created instead.", m_id, __func__);
        return JSObjectMake(context, nullptr, nullptr);
    }
    return JSObjectMake(context, m_class, native);
}

void BindingClass::Initialise(JSContextRef context, JSObjectRef object) const {
    if (JSObjectGetPrivate(object) != nullptr)
        SetConstants(context, object);
}

void BindingClass::SetConstants(JSContextRef context, JSObjectRef object) const {
    for (const NamedConstant& constant : m_constants)
        JSObjectSetProperty(context, object, constant.name.Get(), JSValueMakeNumber(context, constant.value),
                            kJSPropertyAttributeReadOnly, nullptr);
}

bool BindingClass::HasProperty(JSObjectRef object, JSStringRef string) const {
    const Name name(string);
    if (Find(name) != nullptr)
        return true;
    if (m_indexing == nullptr)
        return false;
    const std::optional<uint32_t> index = name.Index();
    auto* native = index ? static_cast<BindingObject*>(JSObjectGetPrivate(object)) : nullptr;
    return native != nullptr && *index < m_indexing->length(*native);
}

inline JSValueRef BindingClass::Read(JSContextRef context, JSObjectRef object, const Name& name,
                                     JSValueRef* exception) const {
    BindingObject* native = NativeOfOwn("t_GetProperty", object);
    if (native == nullptr)
        return JSValueMakeNull(context);
    if (const BindingAttribute* attribute = Find(name))
        return attribute->get(*attribute, context, object, *native, exception);
    if (m_indexing != nullptr) {
        if (const std::optional<uint32_t> index = name.Index())
            return m_indexing->item(context, object, *native, *index, exception);
    }
    return JSValueMakeNull(context);
}

JSValueRef BindingClass::GetProperty(JSContextRef context, JSObjectRef object, JSStringRef string,
                                     JSValueRef* exception) const {
    const Name name(string);
    if (!PageRecord::IsOn()) [[likely]]
        return Read(context, object, name, exception);
    HbbTVPlatform::PCRecord record;
    record.Begin("get", MemberName(m_id, name.Text()), {});
    const JSValueRef value = Read(context, object, name, exception);
    PageRecord::SetOutcome(record, context, value, *exception);
    return value;
}

inline void BindingClass::Write(JSContextRef context, JSObjectRef object, const BindingAttribute& attribute,
                                JSValueRef value, JSValueRef* exception) const {
    if (BindingObject* native = NativeOfOwn("t_SetProperty", object))
        attribute.set(attribute, context, object, *native, value, exception);
}

bool BindingClass::SetProperty(JSContextRef context, JSObjectRef object, JSStringRef string, JSValueRef value,
                               JSValueRef* exception) const {
    const BindingAttribute* attribute = Find(Name(string));
    if (attribute == nullptr || attribute->set == nullptr)
        return false;
    if (!PageRecord::IsOn()) [[likely]] {
        Write(context, object, *attribute, value, exception);
        return true;
    }
    HbbTVPlatform::PCRecord record;
    record.Begin("set", MemberName(m_id, attribute->name), PageRecord::TextOf(context, value));
    Write(context, object, *attribute, value, exception);
    PageRecord::SetOutcome(record, context, nullptr, *exception);
    return true;
}

JSObjectRef BindingClass::RefuseConstruction(JSContextRef context, JSValueRef* exception) const {
    const std::string message = std::string("Not allowed to create ") + m_id + " object directly";
    Throw("t_CallAsConstructor", context, "SecurityError", message, exception);
    return nullptr;
}

}  // namespace OipfJavaScript
