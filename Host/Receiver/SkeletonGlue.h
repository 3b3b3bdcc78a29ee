// What lies between the generated skeletons and the world, once for all interfaces. The generated types check
// each method's arguments and results, so a change of an interface description stops the compiler here.
#pragma once

#include <functional>
#include <string>
#include <tuple>
#include <type_traits>
#include <vector>

#include <gio/gio.h>

#include "Host/Inc/GHandles.h"
#include "Host/Inc/ReceiverNames.h"
#include "Host/Receiver/CallDispatcher.h"
#include "Host/Receiver/Variants.h"
#include "Host/Receiver/World/JsonReader.h"
#include "Host/Receiver/World/World.h"

namespace Receiver {

// An interface of the product or of the control: the generated skeleton type, the type of its interface, and
// the function that fills the table of handlers.
struct SkeletonDescription {
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

// A result as its completing function takes it, which takes over what is floating.
template <typename Value>
auto convert(const Value& value) {
    if constexpr (std::is_same_v<Value, std::string>)
        return value.c_str();
    else if constexpr (std::is_same_v<Value, bool> || std::is_enum_v<Value>)
        return static_cast<gint>(value);
    else if constexpr (requires { variantOf(value); })
        return variantOf(value);
    else
        return value;
}

// What a function works on.
template <typename Result, typename Owner, typename... Arguments>
Owner* handlerOwner(Result (*)(Owner&, Arguments...));
template <typename Result, typename Owner, typename... Arguments>
Owner* handlerOwner(Result (Owner::*)(Arguments...));
template <typename Result, typename Owner, typename... Arguments>
Owner* handlerOwner(Result (Owner::*)(Arguments...) const);
template <typename Lambda>
auto handlerOwner(Lambda lambda) -> decltype(handlerOwner(+lambda));

// The world or what is in it, else the one that calls, or something that it holds; the skeleton's owner is
// the world. Another owner may want to know who asks.
template <typename Owner>
Owner& ownerFor(gpointer skeleton, GDBusMethodInvocation* invocation) {
    const char* sender = g_dbus_method_invocation_get_sender(invocation);
    if constexpr (requires(Owner owner) { owner.asker; }) {
        auto& owner = *static_cast<Owner*>(ownerOf(skeleton));
        owner.asker = sender;
        return owner;
    } else {
        auto& world = *static_cast<World*>(ownerOf(skeleton));
        if constexpr (std::is_same_v<Owner, World>)
            return world;
        else if constexpr (std::is_same_v<Owner, const Scenario>)
            return world.scenario();
        else if constexpr (std::is_same_v<Owner, Applications>)
            return world.applications();
        else
            return world.caller(sender).part<Owner>();
    }
}

}  // namespace Wire

// The handler of one method: calls the function, or the member of what it works on, with the arguments, and
// completes the call with what it returns: nothing, one value, or a tuple. An optional value is the value, or
// an empty one, and whether there is any. A ScenarioError that it throws becomes the call's error.
template <auto Complete, auto Function, typename Interface, typename... Arguments>
gboolean answer(Interface* skeleton, GDBusMethodInvocation* invocation, Arguments... arguments) {
    using Owner = std::remove_pointer_t<decltype(Wire::handlerOwner(Function))>;
    using Result = std::decay_t<std::invoke_result_t<decltype(Function), Owner&, Arguments...>>;
    const auto call = [&] {
        return std::invoke(Function, Wire::ownerFor<Owner>(skeleton, invocation), arguments...);
    };
    const auto complete = [&](const auto&... values) {
        Complete(skeleton, invocation, Wire::convert(values)...);
    };
    try {
        if constexpr (std::is_void_v<Result>) {
            call();
            complete();
        } else if constexpr (requires { std::tuple_size<Result>::value; }) {
            std::apply(complete, call());
        } else if constexpr (requires(Result result) { result.has_value(); }) {
            const auto result = call();
            complete(result.value_or(typename Result::value_type()), result.has_value());
        } else {
            complete(call());
        }
    } catch (const ScenarioError& refusal) {
        g_dbus_method_invocation_return_dbus_error(invocation, Names::RefusedError, refusal.what());
    }
    return TRUE;
}

// What players of both kinds answer.
template <typename Players, ComponentType Type>
std::vector<Component> componentsOf(Players& players, std::uint32_t id, bool active) {
    return players.components(id, Type, active);
}
template <typename Players>
void updateLayout(Players& players, std::uint32_t id, std::uint32_t x, std::uint32_t y, std::uint32_t width,
                  std::uint32_t height, bool fullScreen) {
    players.setWindow(id, {x, y, width, height, fullScreen});
}

}  // namespace Receiver
