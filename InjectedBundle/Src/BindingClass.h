// The JavaScript class behind one binding class: its member tables, found by hash, and its one JSClassRef.
#pragma once

#include <JavaScriptCore/JavaScript.h>

#include <cstdint>
#include <map>
#include <span>
#include <string_view>
#include <vector>

#include "InjectedBundle/Src/JSHandles.h"

namespace OipfJavaScript {

class BindingObject;

// One attribute of a class. `set` is null for a read-only one.
struct BindingAttribute {
    const char* name;
    JSValueRef (*get)(const BindingAttribute&, JSContextRef, JSObjectRef, BindingObject&,
                      JSValueRef* exception);
    void (*set)(const BindingAttribute&, JSContextRef, JSObjectRef, BindingObject&, JSValueRef value,
                JSValueRef* exception);
};

struct BindingMethod {
    const char* name;
    JSObjectCallAsFunctionCallback call;
};

// Array notation of a collection: how many indices there are, and the element at one of them.
struct BindingIndexing {
    uint32_t (*length)(BindingObject&);
    JSValueRef (*item)(JSContextRef, JSObjectRef, BindingObject&, uint32_t index, JSValueRef* exception);
};

using BindingConstants = std::map<const char*, int32_t>;

// The callbacks that every binding class declares itself, under the names of the class.
struct BindingCallbacks {
    JSObjectInitializeCallback initialize;
    JSObjectFinalizeCallback finalize;
    JSObjectHasPropertyCallback hasProperty;
    JSObjectGetPropertyCallback getProperty;
    JSObjectSetPropertyCallback setProperty;
    JSObjectCallAsConstructorCallback callAsConstructor;
    JSObjectConvertToTypeCallback convertToType;
};

// Made once per binding class and kept for the process: a JSClassRef made per object would leak its prototype
// until the page's global object dies, and cost several times the object itself.
class BindingClass {
 public:
    BindingClass(const char* id, std::span<const BindingAttribute> attributes,
                 std::span<const BindingMethod> methods, const BindingConstants* constants,
                 const BindingIndexing* indexing, const BindingCallbacks& callbacks);
    BindingClass(const BindingClass&) = delete;
    BindingClass& operator=(const BindingClass&) = delete;
    ~BindingClass() = delete;  // the engine keeps the tables as long as it lives

    [[nodiscard]] const char* Id() const { return m_id; }
    [[nodiscard]] const JSClassDefinition* Definition() const { return &m_definition; }
    [[nodiscard]] JSClassRef Class() const { return m_class; }

    // The native object behind a value, or null (logged, unless `where` is null) when the value is not an
    // object of exactly this class: a foreign `this` hands over a private pointer of another type, which must
    // never be used.
    [[nodiscard]] BindingObject* NativeOf(const char* where, JSContextRef context, JSValueRef value) const;

    // The name of the object's class; null when it is none of ours.
    [[nodiscard]] static const char* IdOf(JSContextRef context, JSObjectRef object);

    // Puts the constructor object with its constants on the context's global object.
    void RegisterConstructor(JSContextRef context) const;
    [[nodiscard]] JSObjectRef CreateObject(JSContextRef context, BindingObject* native) const;

    void Initialise(JSContextRef context, JSObjectRef object) const;
    [[nodiscard]] bool HasProperty(JSObjectRef object, JSStringRef name) const;
    [[nodiscard]] JSValueRef GetProperty(JSContextRef context, JSObjectRef object, JSStringRef name,
                                         JSValueRef* exception) const;
    [[nodiscard]] bool SetProperty(JSContextRef context, JSObjectRef object, JSStringRef name,
                                   JSValueRef value, JSValueRef* exception) const;
    [[nodiscard]] JSObjectRef RefuseConstruction(JSContextRef context, JSValueRef* exception) const;

 private:
    struct NamedConstant {
        JSStringHandle name;
        int32_t value;
    };

    // A property name in the form the tables are searched by: ASCII, in a buffer as long as the longest name.
    class Name;
    // The same for the object of a property callback. The engine calls it with the object whose class names
    // the callback, whatever the receiver was, so the native object's own word is enough; asking the engine
    // takes its lock and would cost more than the whole rest.
    [[nodiscard]] BindingObject* NativeOfOwn(const char* where, JSObjectRef object) const;
    [[nodiscard]] const BindingAttribute* Find(const Name& name) const;
    [[nodiscard]] JSValueRef Read(JSContextRef context, JSObjectRef object, const Name& name,
                                  JSValueRef* exception) const;
    void Write(JSContextRef context, JSObjectRef object, const BindingAttribute& attribute, JSValueRef value,
               JSValueRef* exception) const;
    void SetConstants(JSContextRef context, JSObjectRef object) const;

    const char* m_id;
    const BindingIndexing* m_indexing;
    std::vector<const BindingAttribute*> m_table;  // open addressing; its size is a power of two
    std::vector<JSStaticValue> m_staticValues;
    std::vector<JSStaticFunction> m_staticFunctions;
    std::vector<NamedConstant> m_constants;
    JSClassDefinition m_definition;
    JSClassRef m_class;
};

}  // namespace OipfJavaScript
