// What lies between the generated skeletons and the world, once for all interfaces. The generated types check
// each method's arguments and results, so a change of an interface description stops the compiler here.
#pragma once

#include <string>
#include <tuple>
#include <type_traits>
#include <utility>

#include <gio/gio.h>

#include "Host/Inc/GHandles.h"
#include "Host/Inc/ReceiverNames.h"
#include "Host/Receiver/CallDispatcher.h"
#include "Host/Receiver/World/JsonReader.h"
#include "Host/Receiver/World/World.h"

namespace Receiver {

// An interface of the product or of the control: the generated skeleton type, the type of its interface, and
// the function that fills the table of handlers.
struct SkeletonDescription {
    const char* typeName;
    GType skeleton;
    GType interface;
    GInterfaceInitFunc fillTable;
};

// An object of a type derived from the skeleton. "owner" is what the handlers work on; with a dispatcher,
// calls go through it.
[[nodiscard]] Host::GObjectHandle<GDBusInterfaceSkeleton> makeSkeleton(const SkeletonDescription& description,
                                                                       void* owner,
                                                                       CallDispatcher* dispatcher);

[[nodiscard]] void* ownerOf(gpointer skeleton);

namespace Wire {

inline const char* convert(const std::string& text) {
    return text.c_str();
}
inline gboolean convert(bool flag) {
    return flag ? TRUE : FALSE;
}
template <typename Value>
requires(std::is_arithmetic_v<Value> && !std::is_same_v<Value, bool>) Value convert(Value value) {
    return value;
}
// Floating: the completing function takes it over.
inline GVariant* convert(GVariant* value) {
    return value;
}

template <typename Handler, typename Result, typename Owner, typename... Arguments>
Owner* handlerOwner(Result (Handler::*)(Owner&, Arguments...) const);

// A handler that works on a caller gets the one that calls; its skeleton's owner is the world. Another owner
// may want to know who asks.
template <typename Owner>
Owner& ownerFor(gpointer skeleton, GDBusMethodInvocation* invocation) {
    const char* sender = g_dbus_method_invocation_get_sender(invocation);
    if constexpr (std::is_same_v<Owner, Caller>) {
        return static_cast<World*>(ownerOf(skeleton))->caller(sender);
    } else {
        auto& owner = *static_cast<Owner*>(ownerOf(skeleton));
        if constexpr (requires { owner.asker; })
            owner.asker = sender;
        return owner;
    }
}

}  // namespace Wire

// The handler of one method: calls the function with the owner, or the caller, and the arguments, and
// completes the call with what it returns: nothing, one value, or a tuple. A ScenarioError that it throws
// becomes the call's error.
template <auto Complete, auto Function, typename Interface, typename... Arguments>
gboolean answer(Interface* skeleton, GDBusMethodInvocation* invocation, Arguments... arguments) {
    using Owner = std::remove_pointer_t<decltype(Wire::handlerOwner(&decltype(Function)::operator()))>;
    auto& owner = Wire::ownerFor<Owner>(skeleton, invocation);
    try {
        using Result = decltype(Function(owner, arguments...));
        if constexpr (std::is_void_v<Result>) {
            Function(owner, arguments...);
            Complete(skeleton, invocation);
        } else if constexpr (requires { std::tuple_size<Result>::value; }) {
            const auto result = Function(owner, arguments...);
            std::apply(
                [&](const auto&... values) { Complete(skeleton, invocation, Wire::convert(values)...); },
                result);
        } else {
            const auto result = Function(owner, arguments...);
            Complete(skeleton, invocation, Wire::convert(result));
        }
    } catch (const ScenarioError& refusal) {
        g_dbus_method_invocation_return_dbus_error(invocation, Names::RefusedError, refusal.what());
    }
    return TRUE;
}

}  // namespace Receiver
