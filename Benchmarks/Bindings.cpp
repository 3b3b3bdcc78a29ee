// Generated bindings against the same class written by hand, a small class against a large one, and event
// dispatch against bare calls. Each case is a loop in a page's script, or in the code that makes objects;
// Table.mjs pairs them.
#include <JavaScriptCore/JavaScript.h>

#include <memory>
#include <string>
#include <vector>

#include <benchmark/benchmark.h>

#include "Benchmarks/Count.h"
#include "Benchmarks/HandWritten.h"
#include "Benchmarks/Script.h"
#include "InjectedBundle/Src/JSHandles.h"
#include "InjectedBundle/Src/JSHbbTVEventHandler.h"
#include "InjectedBundle/gen/js/jiFew.h"
#include "InjectedBundle/gen/js/jiMany.h"
#include "JavaScript/Src/CFewImpl.h"
#include "JavaScript/Src/CManyImpl.h"

namespace {

using Benchmarks::Script;
using OipfJavaScript::JSStringHandle;

constexpr int kRound = 1000;
const uint32_t kListeners = Benchmarks::Count(10);
const uint32_t kLiveObjects = Benchmarks::Count(1000);

template <class Binding, class Implementation>
JSObjectRef CreateBinding(JSContextRef context) {
    return Binding::CreateObject(context, new Binding(std::make_unique<Implementation>()), nullptr);
}

using Create = JSObjectRef (*)(JSContextRef);
constexpr Create kFew = &CreateBinding<OipfJavaScript::jiFew, OipfJavaScript::CFewImpl>;
constexpr Create kMany = &CreateBinding<OipfJavaScript::jiMany, OipfJavaScript::CManyImpl>;
constexpr Create kHand = &Benchmarks::CreateHandWritten;
constexpr Create kPlain = [](JSContextRef context) { return JSObjectMake(context, nullptr, nullptr); };

void RunLoop(benchmark::State& state, Create create, const char* body) {
    Script script;
    const JSObjectRef object = create(script.Context());
    script.Keep(object);
    const JSObjectRef loop =
        script.Function("function (o) { var sum = 0; for (var i = 0; i < " + std::to_string(kRound) +
                        "; ++i) { " + body + " } return sum; }");
    for (auto _ : state) {
        if (script.Call(loop, {object}) == nullptr)
            state.SkipWithError("the page's script threw");
    }
    state.SetItemsProcessed(state.iterations() * kRound);
}

void Read(benchmark::State& state, Create create) {
    RunLoop(state, create, "sum += o.value;");
}
void Write(benchmark::State& state, Create create) {
    RunLoop(state, create, "o.value = i;");
}
void Call(benchmark::State& state, Create create) {
    RunLoop(state, create, "sum += o.add(i);");
}

void MakeObjects(benchmark::State& state, Create create) {
    Script script;
    for (auto _ : state) {
        for (int i = 0; i < kRound; ++i)
            benchmark::DoNotOptimize(create(script.Context()));
    }
    state.SetItemsProcessed(state.iterations() * kRound);
}

// A page's array of objects, filled and read; the next one is made after the collector has had the last.
void MakeAndReadLive(benchmark::State& state, Create create) {
    Script script;
    const JSObjectRef read =
        script.Function("function (objects) { var sum = 0; for (var o of objects) sum += o.value; }");
    for (auto _ : state) {
        JSObjectRef objects = JSObjectMakeArray(script.Context(), 0, nullptr, nullptr);
        for (uint32_t i = 0; i < kLiveObjects; ++i)
            JSObjectSetPropertyAtIndex(script.Context(), objects, i, create(script.Context()), nullptr);
        script.Call(read, {objects});
        state.PauseTiming();
        JSGarbageCollect(script.Context());
        state.ResumeTiming();
    }
    state.SetItemsProcessed(state.iterations() * kLiveObjects);
}

std::vector<JSObjectRef> MakeListeners(Script& script) {
    std::vector<JSObjectRef> listeners;
    for (uint32_t i = 0; i < kListeners; ++i)
        listeners.push_back(
            script.Function("function (event) { return event.argument + " + std::to_string(i) + "; }"));
    return listeners;
}

void DispatchToListeners(benchmark::State& state) {
    Script script;
    const JSContextRef context = script.Context();
    JSObjectRef target = JSObjectMake(context, nullptr, nullptr);
    script.Keep(target);
    OipfJavaScript::JSHbbTVEventHandler handler("Benchmark");
    for (JSObjectRef listener : MakeListeners(script))
        handler.t_AddEventListener(context, target, "Measured", listener, false);
    for (auto _ : state)
        handler.DispatchEvent("Measured", "argument", JSValueMakeNumber(context, 7), nullptr, nullptr);
    handler.t_RemoveAllEventListeners(context, target, "Measured");
    state.SetItemsProcessed(state.iterations());
}

// One object of the given kind for each listener, with the same argument on it.
void CallBare(benchmark::State& state, Create create) {
    Script script;
    const JSContextRef context = script.Context();
    JSObjectRef target = JSObjectMake(context, nullptr, nullptr);
    script.Keep(target);
    const std::vector<JSObjectRef> listeners = MakeListeners(script);
    const JSStringHandle name("argument");
    for (auto _ : state) {
        for (JSObjectRef listener : listeners) {
            JSObjectRef argument = create(context);
            JSObjectSetProperty(context, argument, name.Get(), JSValueMakeNumber(context, 7),
                                kJSPropertyAttributeReadOnly, nullptr);
            const JSValueRef arguments[] = {argument};
            JSValueRef exception = nullptr;
            benchmark::DoNotOptimize(
                JSObjectCallAsFunction(context, listener, target, 1, arguments, &exception));
        }
    }
    state.SetItemsProcessed(state.iterations());
}

BENCHMARK_CAPTURE(Read, binding, kFew);
BENCHMARK_CAPTURE(Read, hand, kHand);
BENCHMARK_CAPTURE(Read, many, kMany);
BENCHMARK_CAPTURE(Write, binding, kFew);
BENCHMARK_CAPTURE(Write, hand, kHand);
BENCHMARK_CAPTURE(Write, many, kMany);
BENCHMARK_CAPTURE(Call, binding, kFew);
BENCHMARK_CAPTURE(Call, hand, kHand);
BENCHMARK_CAPTURE(Call, many, kMany);
BENCHMARK_CAPTURE(MakeObjects, binding, kFew);
BENCHMARK_CAPTURE(MakeObjects, hand, kHand);
BENCHMARK_CAPTURE(MakeAndReadLive, binding, kFew);
BENCHMARK_CAPTURE(MakeAndReadLive, hand, kHand);
BENCHMARK(DispatchToListeners);
BENCHMARK_CAPTURE(CallBare, hand, kHand);
BENCHMARK_CAPTURE(CallBare, plain, kPlain);

}  // namespace

BENCHMARK_MAIN();
