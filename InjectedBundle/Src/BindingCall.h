// The one road from a page's call to an implementation object: the right class? status reset, count and
// types, conversion, call, status to exception, result, undefined or null. Generated code adds a line per
// member to it.
#pragma once

#include <JavaScriptCore/JavaScript.h>

#include <array>
#include <tuple>
#include <type_traits>
#include <utility>

#include "InjectedBundle/Src/BindingClass.h"
#include "InjectedBundle/Src/BindingObject.h"
#include "InjectedBundle/Src/BindingTypes.h"
#include "InjectedBundle/Src/CallArguments.h"
#include "InjectedBundle/Src/CallStatus.h"
#include "InjectedBundle/Src/PageRecord.h"

namespace OipfJavaScript {

namespace Call {

// Fills the exception slot from the block; true when there is something to throw.
[[nodiscard]] bool Throws(const char* where, JSContextRef context, const CallStatus& status,
                          JSValueRef* exception);

// What the page gets instead of a result, for a status other than success.
[[nodiscard]] JSValueRef Missing(JSContextRef context, const CallStatus& status);

// Logs the arguments and throws. Returns null, the call's result.
[[nodiscard]] JSValueRef RefuseArguments(const char* id, const char* where, const CallArguments& call);

// Says that an argument which pages give, and which means nothing here, was given.
void LogIgnored(const char* where, size_t index);

void ThrowWrongValueType(const char* where, JSContextRef context, const char* typeName,
                         JSValueRef* exception);

// Turns the implementation's answer into the page's.
template <class Type, typename Produce>
JSValueRef Answer(const char* where, JSContextRef context, CallStatus& status, JSValueRef* exception,
                  Produce&& produce) {
    using Result = std::invoke_result_t<Produce>;
    static_assert(Idl::kReturns<Type, std::remove_cvref_t<Result>>,
                  "the implementation's member does not return what the description says");
    if constexpr (std::is_void_v<Result>) {
        produce();
        if (Throws(where, context, status, exception))
            return JSValueMakeNull(context);
        return status.m_status == CallStatus::kOk ? JSValueMakeUndefined(context) : Missing(context, status);
    } else {
        auto result = produce();
        if (Throws(where, context, status, exception))
            return JSValueMakeNull(context);
        if (status.m_status != CallStatus::kOk)
            return Missing(context, status);
        return Type::ToJS(context, std::move(result), exception);
    }
}

}  // namespace Call

// The types that a member takes, where const and reference make no difference.
template <typename Type, typename Plain = std::remove_cvref_t<Type>>
using Taken = std::conditional_t<std::is_pointer_v<Plain>, const std::remove_pointer_t<Plain>*, Plain>;
template <typename Member>
struct TakenBy;
template <typename Result, class Implementation, typename... Parameters>
struct TakenBy<Result (Implementation::*)(Parameters...)>
    : std::type_identity<std::tuple<Taken<Parameters>...>> {};
template <typename Result, class Implementation, typename... Parameters>
struct TakenBy<Result (Implementation::*)(Parameters...) const>
    : std::type_identity<std::tuple<Taken<Parameters>...>> {};

template <auto Member, typename... Parameters>
inline constexpr bool kTakes =
    std::is_same_v<typename TakenBy<decltype(Member)>::type, std::tuple<Taken<Parameters>...>>;

// An implementation's member may want the calling context before what the description names.
template <auto Member, typename... Natives>
inline constexpr bool kTakesContext = kTakes<Member, JSContextRef, Natives...>;

template <auto Member, class Implementation, typename... Natives>
decltype(auto) CallMember(Implementation& implementation, [[maybe_unused]] JSContextRef context,
                          Natives&... natives) {
    static_assert(kTakes<Member, Natives...> || kTakesContext<Member, Natives...>,
                  "the implementation's member does not take what the description says");
    if constexpr (kTakesContext<Member, Natives...>)
        return (implementation.*Member)(context, natives...);
    else
        return (implementation.*Member)(natives...);
}

// Chooses among overloaded members by the described types of their arguments.
template <class... Types>
struct Overload {
    template <class Type, typename Native = typename Type::Native>
    using Parameter = std::conditional_t<std::is_trivially_copyable_v<Native>, Native, const Native&>;

    template <typename Result, class Implementation>
    static consteval auto Of(Result (Implementation::*member)(Parameter<Types>...)) {
        return member;
    }
    template <typename Result, class Implementation>
    static consteval auto Of(Result (Implementation::*member)(JSContextRef, Parameter<Types>...)) {
        return member;
    }
};

// One form of an operation: the implementation's member, the result's type and the arguments' types.
template <auto Member, class Result, class... Arguments>
struct Operation {
    static constexpr size_t kMost = sizeof...(Arguments);
    static constexpr size_t kLeast = (0 + ... + (Idl::kMayBeMissing<Arguments> ? 0 : 1));

    static bool Matches(const CallArguments& call) {
        if (call.count < kLeast || call.count > kMost)
            return false;
        return MatchesTypes(call, std::index_sequence_for<Arguments...>{});
    }

    // Besides, every object among the arguments is of the class that the form names.
    static bool MatchesExactly(const CallArguments& call) {
        return Matches(call) && MatchesClasses(call, std::index_sequence_for<Arguments...>{});
    }

    template <class Implementation>
    static JSValueRef Invoke(const char* where, const CallArguments& call, Implementation& implementation) {
        return InvokeWith(where, call, implementation, std::index_sequence_for<Arguments...>{});
    }

 private:
    template <size_t... I>
    static bool MatchesTypes(const CallArguments& call, std::index_sequence<I...>) {
        return ((I >= call.count || Arguments::Accepts(call.context, call.values[I])) && ...);
    }

    template <class Type>
    static bool IsOfClass(const CallArguments& call, size_t index) {
        if constexpr (requires { Type::IsExactly(call.context, call.values[index]); })
            return index >= call.count || Type::IsExactly(call.context, call.values[index]);
        else
            return true;
    }

    template <size_t... I>
    static bool MatchesClasses(const CallArguments& call, std::index_sequence<I...>) {
        return (IsOfClass<Arguments>(call, I) && ...);
    }

    // What is passed on: everything but the ignored arguments.
    template <class Type>
    static auto Pass(const char* where, const CallArguments& call, size_t index,
                     typename Type::Native& native) {
        if constexpr (std::is_same_v<Type, Idl::Ignored>) {
            if (index < call.count)
                Call::LogIgnored(where, index);
            return std::tuple<>();
        } else {
            return std::tuple<typename Type::Native&>(native);
        }
    }

    template <class Implementation, size_t... I>
    static JSValueRef InvokeWith(const char* where, const CallArguments& call, Implementation& implementation,
                                 std::index_sequence<I...>) {
        [[maybe_unused]] std::tuple<typename Arguments::Native...> natives{};
        if (!((I >= call.count ||
               Arguments::FromJS(where, call.context, call.values[I], std::get<I>(natives))) &&
              ...))
            return JSValueMakeNull(call.context);
        return Call::Answer<Result>(
            where, call.context, implementation, call.exception, [&]() -> decltype(auto) {
                const auto forward = [&](auto&... passed) -> decltype(auto) {
                    return CallMember<Member>(implementation, call.context, passed...);
                };
                return std::apply(forward,
                                  std::tuple_cat(Pass<Arguments>(where, call, I, std::get<I>(natives))...));
            });
    }
};

// An operation whose implementation reads its arguments itself.
template <auto Member>
struct CustomOperation {
    static_assert(kTakes<Member, CallArguments>, "a custom operation takes the call's arguments");
    static bool Matches(const CallArguments&) { return true; }
    template <class Implementation>
    static JSValueRef Invoke(const char* where, const CallArguments& call, Implementation& implementation) {
        return Call::Answer<Idl::Any>(where, call.context, implementation, call.exception,
                                      [&] { return (implementation.*Member)(call); });
    }
};

// addEventListener and removeEventListener.
template <auto Member>
struct ListenerOperation {
    static_assert(kTakes<Member, JSContextRef, JSObjectRef, const char*, JSValueRef, bool>);
    static bool Matches(const CallArguments& call) {
        return (call.count == 2 || call.count == 3) && JSValueIsString(call.context, call.values[0]);
    }
    template <class Implementation>
    static JSValueRef Invoke(const char* where, const CallArguments& call, Implementation& implementation) {
        std::string type;
        if (!ToUtf8(call.context, call.values[0], type, call.exception))
            return JSValueMakeNull(call.context);
        const bool capture = call.count == 3 && JSValueToBoolean(call.context, call.values[2]);
        return Call::Answer<Idl::Undefined>(
            where, call.context, implementation, call.exception, [&]() -> void {
                (implementation.*Member)(call.context, call.thisObject, type.c_str(), call.values[1],
                                         capture);
            });
    }
};

// Calls the first of the forms whose argument count and types fit. Where there are several, those that take
// objects are told apart by the objects' classes first.
template <class Binding, class... Forms>
JSValueRef CallOperation(const char* where, const CallArguments& call) {
    HbbTVPlatform::PCRecord record;
    if (PageRecord::IsOn()) [[unlikely]]
        PageRecord::BeginCall(record, Binding::ID, where, call);
    const auto perform = [&]() -> JSValueRef {
        Binding* binding = Binding::FromJS(where, call.context, call.thisObject);
        if (binding == nullptr)
            return JSValueMakeNull(call.context);
        auto& implementation = binding->Implementation();
        implementation.ResetStatus();
        JSValueRef result = nullptr;
        if constexpr (sizeof...(Forms) > 1) {
            if (((Forms::MatchesExactly(call) &&
                  (result = Forms::Invoke(where, call, implementation), true)) ||
                 ...))
                return result;
        }
        const bool matched =
            ((Forms::Matches(call) && (result = Forms::Invoke(where, call, implementation), true)) || ...);
        return matched ? result : Call::RefuseArguments(Binding::ID, where, call);
    };
    const JSValueRef result = perform();
    if (record.HasBegun()) [[unlikely]]
        PageRecord::SetOutcome(record, call.context, result, *call.exception);
    return result;
}

template <class Binding, class Type, auto Member>
JSValueRef GetAttribute(const BindingAttribute& attribute, JSContextRef context, JSObjectRef,
                        BindingObject& native, JSValueRef* exception) {
    auto& implementation = static_cast<Binding&>(native).Implementation();
    implementation.ResetStatus();
    return Call::Answer<Type>(attribute.name, context, implementation, exception,
                              [&] { return CallMember<Member>(implementation, context); });
}

template <class Binding, class Type, auto Member>
void SetAttribute(const BindingAttribute& attribute, JSContextRef context, JSObjectRef, BindingObject& native,
                  JSValueRef value, JSValueRef* exception) {
    auto& implementation = static_cast<Binding&>(native).Implementation();
    implementation.ResetStatus();
    if (!Type::Accepts(context, value))
        return Call::ThrowWrongValueType(attribute.name, context, Type::kName, exception);
    typename Type::Native converted{};
    if (!Type::FromJS(attribute.name, context, value, converted))
        return;
    CallMember<Member>(implementation, context, converted);
    (void)Call::Throws(attribute.name, context, implementation, exception);
}

// An attribute that the implementation reads and converts itself.
template <class Binding, auto Member>
JSValueRef GetCustomAttribute(const BindingAttribute& attribute, JSContextRef context, JSObjectRef object,
                              BindingObject& native, JSValueRef* exception) {
    auto& implementation = static_cast<Binding&>(native).Implementation();
    implementation.ResetStatus();
    return Call::Answer<Idl::Any>(attribute.name, context, implementation, exception,
                                  [&] { return (implementation.*Member)(context, object); });
}

template <class Binding, auto Member>
void SetCustomAttribute(const BindingAttribute& attribute, JSContextRef context, JSObjectRef,
                        BindingObject& native, JSValueRef value, JSValueRef* exception) {
    auto& implementation = static_cast<Binding&>(native).Implementation();
    implementation.ResetStatus();
    // What the conversion throws is the page's own.
    (implementation.*Member)(context, value, exception);
    if (*exception == nullptr)
        (void)Call::Throws(attribute.name, context, implementation, exception);
}

// on<Event> attributes: the event's name is the attribute's without "on".
template <class Binding>
JSValueRef GetHandler(const BindingAttribute& attribute, JSContextRef context, JSObjectRef object,
                      BindingObject& native, JSValueRef*) {
    auto& implementation = static_cast<Binding&>(native).Implementation();
    implementation.ResetStatus();
    return implementation.t_GetCallbackFunction(context, object, attribute.name + 2);
}

template <class Binding>
void SetHandler(const BindingAttribute& attribute, JSContextRef context, JSObjectRef object,
                BindingObject& native, JSValueRef value, JSValueRef*) {
    auto& implementation = static_cast<Binding&>(native).Implementation();
    implementation.ResetStatus();
    implementation.t_AddCallbackFunction(context, object, attribute.name + 2, value);
}

// Array notation through the class's "length" and "item".
template <class Binding, auto Length>
uint32_t IndexedLength(BindingObject& native) {
    auto& implementation = static_cast<Binding&>(native).Implementation();
    implementation.ResetStatus();
    return (implementation.*Length)();
}

template <class Binding, class Type, auto Item>
JSValueRef IndexedItem(JSContextRef context, JSObjectRef, BindingObject& native, uint32_t index,
                       JSValueRef* exception) {
    auto& implementation = static_cast<Binding&>(native).Implementation();
    implementation.ResetStatus();
    return Call::Answer<Type>("item", context, implementation, exception,
                              [&] { return (implementation.*Item)(index); });
}

// Puts the one instance of a class on the global object.
void RegisterInstance(JSContextRef context, const char* id, JSObjectRef instance);

// A new binding object around a new implementation object.
template <class Binding, typename... Arguments>
std::unique_ptr<Binding> MakeBinding(Arguments&&... arguments) {
    return std::make_unique<Binding>(
        std::make_unique<typename Binding::Impl>(std::forward<Arguments>(arguments)...));
}

// A new JavaScript object around one.
template <class Binding, typename... Arguments>
JSObjectRef MakeObject(JSContextRef context, Arguments&&... arguments) {
    return Binding::CreateObject(
        context, MakeBinding<Binding>(std::forward<Arguments>(arguments)...).release(), nullptr);
}

}  // namespace OipfJavaScript
