// What every binding class has beside its own members: the implementation object it owns, and the callbacks
// that its JSClassDefinition names. `Self` is the generated class, which has ID and Class().
#pragma once

#include <JavaScriptCore/JavaScript.h>

#include <memory>
#include <utility>

#include "InjectedBundle/Src/BindingClass.h"
#include "InjectedBundle/Src/BindingObject.h"

namespace OipfJavaScript {

template <class Self, class Implementing>
class Binding : public BindingObject {
 public:
    using Impl = Implementing;

    explicit Binding(std::unique_ptr<Impl> implementation) : m_implementation(std::move(implementation)) {}
    // A deep copy, for the classes whose implementations can be copied.
    Binding(const Binding& other)
        : BindingObject(other), m_implementation(std::make_unique<Impl>(*other.m_implementation)) {}
    Binding& operator=(const Binding& other) {
        m_implementation = std::make_unique<Impl>(*other.m_implementation);
        return *this;
    }

    [[nodiscard]] Impl& Implementation() { return *m_implementation; }
    [[nodiscard]] const Impl& Implementation() const { return *m_implementation; }

    [[nodiscard]] const BindingClass& OwnClass() const override { return Self::Class(); }

    static void Register(JSContextRef context) { Self::Class().RegisterConstructor(context); }
    // Takes over `native`; a null one gives a plain empty object.
    static JSObjectRef CreateObject(JSContextRef context, Self* native, JSValueRef*) {
        return Self::Class().CreateObject(context, native);
    }
    // The native object of a value of this class, or null (logged, unless `where` is null).
    [[nodiscard]] static Self* FromJS(const char* where, JSContextRef context, JSValueRef value) {
        return static_cast<Self*>(Self::Class().NativeOf(where, context, value));
    }

    static const JSClassDefinition* t_GetClassDefinition() { return Self::Class().Definition(); }
    static void t_InitCb(JSContextRef context, JSObjectRef object) {
        Self::Class().Initialise(context, object);
    }
    static void t_FinaliseCb(JSObjectRef object) {
        delete static_cast<BindingObject*>(JSObjectGetPrivate(object));
    }
    static bool t_HasProperty(JSContextRef, JSObjectRef object, JSStringRef name) {
        return Self::Class().HasProperty(object, name);
    }
    static JSValueRef t_GetProperty(JSContextRef context, JSObjectRef object, JSStringRef name,
                                    JSValueRef* exception) {
        return Self::Class().GetProperty(context, object, name, exception);
    }
    static bool t_SetProperty(JSContextRef context, JSObjectRef object, JSStringRef name, JSValueRef value,
                              JSValueRef* exception) {
        return Self::Class().SetProperty(context, object, name, value, exception);
    }
    static JSObjectRef t_CallAsConstructor(JSContextRef context, JSObjectRef, size_t, const JSValueRef[],
                                           JSValueRef* exception) {
        return Self::Class().RefuseConstruction(context, exception);
    }

 protected:
    static BindingCallbacks Callbacks(JSObjectConvertToTypeCallback convertToType = nullptr) {
        return {&t_InitCb,      &t_FinaliseCb,        &t_HasProperty, &t_GetProperty,
                &t_SetProperty, &t_CallAsConstructor, convertToType};
    }

 private:
    std::unique_ptr<Impl> m_implementation;
};

}  // namespace OipfJavaScript
