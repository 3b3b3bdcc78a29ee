// One operation of a client after another, by its signature: what is asked on the wire, what the caller then
// has, and what it has when the service refuses or answers with other types.
#pragma once

#include <functional>
#include <set>
#include <tuple>
#include <type_traits>
#include <utility>

#include "API/Src/IAVComponent.h"
#include "API/Src/IDAEBrowserAPICommon.h"
#include "API/Src/MetadataQuery.h"
#include "Tests/Bus/FakeService.h"

namespace operation_walk {

// An argument on the wire. No two of one call are the same; what a flag cannot tell in one round it tells in
// another.
struct Value {
    std::string type;
    int number = 0;
    bool flag = false;

    [[nodiscard]] int64_t Integer() const;
    // As text of GVariant, as that of the log, and as Render() shows it, behind what a list held before.
    [[nodiscard]] std::string Wire() const;
    [[nodiscard]] std::string Plain() const;
    [[nodiscard]] std::string Rendered(const std::string& before) const;

    template <typename T>
    T As() const {
        if constexpr (std::is_same_v<T, bool>)
            return flag;
        else if constexpr (std::is_floating_point_v<T>)
            return static_cast<T>(number + 0.5);
        else if constexpr (std::is_same_v<T, TOrderBy>)
            return {{E_QUERY_START_TIME, true}, {E_QUERY_NAME, false}};
        else if constexpr (std::is_same_v<T, TConstraints>)
            return {{E_QUERY_NAME, std::string("a")}};
        else if constexpr (std::is_same_v<T, std::string>)
            return Plain();
        else
            return static_cast<T>(Integer());
    }
};

struct Round {
    std::vector<Value> in, out;
    bool wantsOutputs = true;
    size_t nextIn = 0, nextOut = 0;
    std::vector<std::string> before, after, expected;  // the outputs and the result

    // The next answer's value, for a variable that holds this.
    void Expect(const std::string& held);
};

std::string Render(const AVComponentVector& components);
std::string Render(const TOrderBy& orderBy);
std::string Render(const std::vector<std::string>& strings);
std::string Render(const std::unique_ptr<IProgrammeCollection>& programmes);

template <typename T>
std::string Render(const T& value) {
    if constexpr (std::is_convertible_v<T, std::string>)
        return value;
    else if constexpr (std::is_arithmetic_v<T>)
        return std::to_string(value);
    else {
        std::string text;
        for (const auto number : value)
            text += std::to_string(number) + " ";
        return text;
    }
}

// A parameter of an operation. One that is no output takes its value from the round.
template <typename P>
struct Parameter {
    using Bare = std::remove_pointer_t<std::remove_reference_t<P>>;
    static constexpr bool kIsOutput = !std::is_const_v<Bare> && !std::is_same_v<P, Bare>;
    using Stored = std::conditional_t<std::is_same_v<P, const char*>, std::string, std::remove_const_t<Bare>>;

    explicit Parameter(Round& round) : value(Start(round)), wanted(round.wantsOutputs) {}

    static Stored Start(Round& round) {
        if constexpr (std::is_same_v<Stored, std::pair<EQueryType, bool>>) {
            const auto type = round.in.at(round.nextIn++).As<EQueryType>();
            return {type, round.in.at(round.nextIn++).flag};
        } else if constexpr (!kIsOutput) {
            return round.in.at(round.nextIn++).As<Stored>();
        } else if constexpr (std::is_same_v<Stored, bool>) {
            return !round.out.at(round.nextOut).flag;
        } else {
            return Stored{7};
        }
    }
    P Pass() {
        if constexpr (std::is_same_v<P, const char*>)
            return value.c_str();
        else if constexpr (std::is_pointer_v<P>)
            return wanted ? &value : nullptr;
        else
            return static_cast<P>(value);
    }

    Stored value;
    bool wanted;
};

using Operation = std::function<void(Round&)>;

template <typename R, typename... P>
Operation Make(auto& client, auto function) {
    return [&client, function](Round& round) {
        [[maybe_unused]] const auto start = [&round](auto parameter) {
            if constexpr (decltype(parameter)::kIsOutput)
                round.Expect(Render(parameter.value));
            return parameter;
        };
        std::tuple<Parameter<P>...> parameters{start(Parameter<P>(round))...};
        [[maybe_unused]] const auto end = [&round](auto& parameter) {
            if constexpr (std::decay_t<decltype(parameter)>::kIsOutput)
                round.after.push_back(parameter.wanted ? Render(parameter.value)
                                                       : round.expected[round.after.size()]);
        };
        std::apply(
            [&](auto&... each) {
                if constexpr (std::is_void_v<R>) {
                    (client.*function)(each.Pass()...);
                    (end(each), ...);
                } else {
                    round.Expect(Render(R{}));
                    const R result = (client.*function)(each.Pass()...);
                    (end(each), ...);
                    round.after.push_back(Render(result));
                }
            },
            parameters);
    };
}

template <typename Class, typename R, typename... P>
Operation OperationOf(auto& client, R (Class::*function)(P...)) {
    return Make<R, P...>(client, function);
}

template <typename Class, typename R, typename... P>
Operation OperationOf(auto& client, R (Class::*function)(P...) const) {
    return Make<R, P...>(client, function);
}

}  // namespace operation_walk

// An operation's name in the log and what follows it there: %k stands for the k-th argument, #k for it as an
// int, ?k for its meaning as a filter. The method is the wire's, where its name is another.
template <typename Function>
struct Op {
    Op(const char* operation, Function called, const char* traced = "", const char* onWire = "",
       const char* failing = "")
        : name(operation), function(called), trace(traced), method(onWire), failureClient(failing) {}

    std::string name;
    Function function;
    std::string trace, method, failureClient;
};

// Walks operations of one service, and in the end tells which of its methods nobody asked.
class OperationWalk {
 public:
    // Without a client's name the lines name the signatures of the operations.
    OperationWalk(const std::string& interface, std::string client, std::string failureClient)
        : m_service(interface), m_client(std::move(client)), m_failureClient(std::move(failureClient)) {}

    template <typename... Functions>
    void operator()(auto& client, const Op<Functions>&... ops) {
        (Walk(operation_walk::OperationOf(client, ops.function), ops.name, ops.trace,
              ops.method.empty() ? ops.name : ops.method,
              ops.failureClient.empty() ? m_failureClient : ops.failureClient),
         ...);
    }
    [[nodiscard]] std::set<std::string> Missed() const;
    [[nodiscard]] FakeService& Service() { return m_service; }

 private:
    void Walk(const operation_walk::Operation& operation, const std::string& name, const std::string& trace,
              const std::string& method, const std::string& failureClient);

    FakeService m_service;
    std::string m_client;
    std::string m_failureClient;
    std::set<std::string> m_walked;
};
