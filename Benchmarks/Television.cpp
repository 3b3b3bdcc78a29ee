// Live television: the channel list against the bare remote calls behind it, a search in it against the same
// search in script, and a stream event against a bare signal handler. Run it under dbus-run-session.
#include <JavaScriptCore/JavaScript.h>

#include <array>
#include <map>
#include <string>

#include <benchmark/benchmark.h>

#include "Benchmarks/Middleware.h"
#include "Benchmarks/PlainChannel.h"
#include "Benchmarks/Script.h"
#include "IPC/DBUS/Src/DAEBrowserAPIWK_DBus.h"
#include "IPC/DBUS/Src/DAEBrowserSignals.h"
#include "InjectedBundle/Src/BindingCall.h"
#include "InjectedBundle/gen/js/jiChannelConfig.h"
#include "InjectedBundle/gen/js/jiOipfVideoBroadcast.h"
#include "JavaScript/Src/CChannelConfigImpl.h"
#include "JavaScript/Src/COipfVideoBroadcastImpl.h"
#include "gen/dbus/daebrowserapi-generated.h"

namespace {

using Benchmarks::kChannels;
using Benchmarks::Script;

// One of them is to the event that comes.
const uint32_t kSubscriptions = Benchmarks::Count(1);

void Expect(benchmark::State& state, Script& script, JSValueRef value, const std::string& condition) {
    const JSObjectRef function = script.Function("function (value) { return " + condition + "; }");
    if (value == nullptr || !script.IsTrue(script.Call(function, {value})))
        state.SkipWithError(condition.c_str());
}

GObjectPtr<IDAEBrowserAPI> NewApi() {
    return Benchmarks::NewProxy(&idaebrowser_api_proxy_new_sync, Benchmarks::kApiName);
}

constexpr char kReadList[] = "function (config) { return config.channelList; }";

// Every list stays alive until the measurement is over, so that none is finalised, and no channel released,
// within it.
void ReadChannelList(benchmark::State& state) {
    Script script;
    const JSValueRef config = OipfJavaScript::MakeObject<OipfJavaScript::jiChannelConfig>(script.Context());
    script.Keep(config);
    const JSObjectRef read = script.Function(kReadList);
    for (auto _ : state) {
        const JSValueRef list = script.Call(read, {config});
        state.PauseTiming();
        script.Keep(list);
        Expect(state, script, list, "value.length === " + std::to_string(kChannels));
        state.ResumeTiming();
    }
}

void CallForChannelList(benchmark::State& state) {
    const GObjectPtr<IDAEBrowserAPI> api = NewApi();
    const auto cache = Benchmarks::NewProxy(&ijschannel_cache_proxy_new_sync, Benchmarks::kCacheName);
    for (auto _ : state) {
        GVariantPtr list;
        idaebrowser_api_call_get_channel_list_sync(api.get(), OutPointer(list), nullptr, nullptr);
        gsize count = 0;
        const auto* ids =
            list ? static_cast<const guint32*>(g_variant_get_fixed_array(list.get(), &count, sizeof(guint32)))
                 : nullptr;
        if (count != kChannels)
            state.SkipWithError("the bare calls got no list");
        for (gsize i = 0; i < count; ++i) {
            gboolean retained = FALSE;
            if (!ijschannel_cache_call_retain_sync(cache.get(), ids[i], &retained, nullptr, nullptr) ||
                !retained || !Benchmarks::AskForChannel(cache.get(), ids[i]))
                state.SkipWithError("a bare call got no channel");
        }
    }
}

// What is found stays alive until the measurement is over: no channel is released within it.
void Find(benchmark::State& state, Script& script, JSValueRef channels, const char* search) {
    script.Keep(channels);
    const JSValueRef id = script.Call(
        script.Function("function (channels) { return channels[channels.length - 1].ccid; }"), {channels});
    script.Keep(id);
    const JSObjectRef found = JSObjectMakeArray(script.Context(), 0, nullptr, nullptr);
    script.Keep(found);
    const JSObjectRef find =
        script.Function(std::string("function (channels, id, found) { found.push(") + search + "); }");
    for (auto _ : state) {
        if (script.Call(find, {channels, id, found}) == nullptr)
            state.SkipWithError("the page's script threw");
    }
    Expect(state, script, found,
           "value.every(channel => channel.majorChannel === " + std::to_string(kChannels) + ")");
}

void FindInList(benchmark::State& state) {
    Script script;
    const JSValueRef config = OipfJavaScript::MakeObject<OipfJavaScript::jiChannelConfig>(script.Context());
    Find(state, script, script.Call(script.Function(kReadList), {config}), "channels.getChannel(id)");
}

void FindInArray(benchmark::State& state) {
    Script script;
    const Benchmarks::PlainChannels plain(script);
    const JSObjectRef array = JSObjectMakeArray(script.Context(), 0, nullptr, nullptr);
    script.Keep(array);
    for (uint32_t i = 0; i < kChannels; ++i)
        JSObjectSetPropertyAtIndex(script.Context(), array, i, plain.Make(i + 1), nullptr);
    Find(state, script, array,
         "channels.find(channel => channel.ccid === id || channel.ipBroadcastID === id)");
}

// What a bare handler needs: the page's functions, by their jobs.
struct Listeners {
    JSContextRef context;
    std::map<guint, JSObjectRef> functions;
};

void HandSignalToClient(GDBusProxy* /*proxy*/, gchar* /*sender*/, gchar* name, GVariant* parameters,
                        gpointer client) {
    DispatchDAEBrowserSignal(*static_cast<CDAEBrowserAPIWK*>(client), name, parameters);
}

void HandSignalToFunction(GDBusProxy* /*proxy*/, gchar* /*sender*/, gchar* /*name*/, GVariant* parameters,
                          gpointer data) {
    const auto* listeners = static_cast<const Listeners*>(data);
    guint job = 0;
    g_variant_get_child(parameters, 4, "u", &job);
    JSObjectCallAsFunction(listeners->context, listeners->functions.at(job), nullptr, 0, nullptr, nullptr);
}

// Emits the proxy's signal as it does when a message has arrived, without the bus.
void Emit(benchmark::State& state, Script& script, GDBusProxy* proxy, const char* heard) {
    static constexpr std::array<guint8, 8> kPayload{'p', 'a', 'y', 'l', 'o', 'a', 'd', '1'};
    const GVariantPtr parameters(g_variant_ref_sink(
        g_variant_new("(uns@ayu)", 0U, 3, Benchmarks::kStreamEvent,
                      g_variant_new_fixed_array(G_VARIANT_TYPE_BYTE, kPayload.data(), kPayload.size(), 1),
                      Benchmarks::kStreamEventJob)));
    for (auto _ : state)
        g_signal_emit_by_name(proxy, "g-signal", ":1.1", "StreamEvent", parameters.get());
    const auto count = static_cast<double>(state.iterations());
    Expect(state, script, JSValueMakeNumber(script.Context(), count), heard);
}

void StreamEventToListener(benchmark::State& state) {
    Script script;
    CDAEBrowserAPIWK* client = CDAEBrowserAPIWK::GetInstance();
    const JSValueRef television =
        OipfJavaScript::MakeObject<OipfJavaScript::jiOipfVideoBroadcast>(script.Context(), script.Context());
    script.Keep(television);
    const JSObjectRef subscribe = script.Function(
        "function (tv) { globalThis.heard = 0;"
        " for (let i = 0; i < " +
        std::to_string(kSubscriptions) + "; ++i) tv.addStreamEventListener('dvb://1.1.1/events', '" +
        Benchmarks::kStreamEvent + "' + (i || ''), function () { ++heard; }); }");
    script.Call(subscribe, {television});
    const GObjectPtr<IDAEBrowserAPI> proxy = NewApi();
    g_signal_connect(proxy.get(), "g-signal", G_CALLBACK(&HandSignalToClient), client);
    Emit(state, script, G_DBUS_PROXY(proxy.get()), "heard === value");
}

void StreamEventBare(benchmark::State& state) {
    Script script;
    Listeners listeners{script.Context(), {}};
    for (uint32_t i = 0; i < kSubscriptions; ++i)
        listeners.functions.emplace(Benchmarks::kStreamEventJob + i,
                                    script.Function("globalThis.heard = 0, function () { ++heard; }"));
    const GObjectPtr<IDAEBrowserAPI> proxy = NewApi();
    g_signal_connect(proxy.get(), "g-signal", G_CALLBACK(&HandSignalToFunction), &listeners);
    Emit(state, script, G_DBUS_PROXY(proxy.get()), "heard === value");
}

BENCHMARK(ReadChannelList)->UseRealTime();
BENCHMARK(CallForChannelList)->UseRealTime();
BENCHMARK(FindInList)->UseRealTime();
BENCHMARK(FindInArray)->UseRealTime();
BENCHMARK(StreamEventToListener)->UseRealTime();
BENCHMARK(StreamEventBare)->UseRealTime();

}  // namespace

int main(int argc, char** argv) {
    return Benchmarks::RunAgainstMiddleware(argc, argv);
}
