// A call through the DAE client against the generated call it makes, answered by a process of its own on the
// session bus. Run it under dbus-run-session.
#include <benchmark/benchmark.h>

#include "Benchmarks/Middleware.h"
#include "IPC/DBUS/Src/DAEBrowserAPIWK_DBus.h"
#include "gen/dbus/daebrowserapi-generated.h"

namespace {

using Benchmarks::kKeyMask;

void ClientCall(benchmark::State& state) {
    auto* client = CDAEBrowserAPIWK::GetInstance();
    for (auto _ : state) {
        if (client->GetKeyMask() != kKeyMask)
            state.SkipWithError("the client got no answer");
    }
}

void BareCall(benchmark::State& state) {
    const auto proxy = Benchmarks::NewProxy(&idaebrowser_api_proxy_new_sync, Benchmarks::kApiName);
    for (auto _ : state) {
        guint mask = 0;
        if (!idaebrowser_api_call_get_key_mask_sync(proxy.get(), &mask, nullptr, nullptr) || mask != kKeyMask)
            state.SkipWithError("the bare call got no answer");
    }
}

BENCHMARK(ClientCall)->UseRealTime();
BENCHMARK(BareCall)->UseRealTime();

}  // namespace

int main(int argc, char** argv) {
    return Benchmarks::RunAgainstMiddleware(argc, argv);
}
