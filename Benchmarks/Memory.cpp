// What one live object costs in resident memory: a generated binding, the same class written by hand, a
// channel of the receiver and a plain script object with a channel's values. Each kind is measured in a
// process of its own, so that none uses up what another has freed. Prints JSON. Run it under
// dbus-run-session.
#include <JavaScriptCore/JavaScript.h>
#include <unistd.h>

#include <cstdio>
#include <fstream>
#include <functional>
#include <memory>

#include "Benchmarks/HandWritten.h"
#include "Benchmarks/Middleware.h"
#include "Benchmarks/OwnProcess.h"
#include "Benchmarks/PlainChannel.h"
#include "Benchmarks/Script.h"
#include "InjectedBundle/Src/BindingCall.h"
#include "InjectedBundle/gen/js/jiChannel.h"
#include "InjectedBundle/gen/js/jiFew.h"
#include "JavaScript/Src/CChannelImpl.h"
#include "JavaScript/Src/CFewImpl.h"

namespace {

constexpr unsigned kObjects = 200000;
// Fewer, because each takes two remote calls.
constexpr unsigned kChannelObjects = 40000;

using Create = std::function<JSObjectRef(unsigned index)>;
using Prepare = Create (*)(Benchmarks::Script& script);

Create Bindings(Benchmarks::Script& script) {
    using namespace OipfJavaScript;
    return [context = script.Context()](unsigned) {
        return jiFew::CreateObject(context, new jiFew(std::make_unique<CFewImpl>()), nullptr);
    };
}

Create HandWritten(Benchmarks::Script& script) {
    return [context = script.Context()](unsigned) { return Benchmarks::CreateHandWritten(context); };
}

uint32_t ChannelId(unsigned index) {
    return index % Benchmarks::kChannels + 1;
}

Create Channels(Benchmarks::Script& script) {
    return [context = script.Context()](unsigned index) {
        return OipfJavaScript::MakeObject<OipfJavaScript::jiChannel>(context, ChannelId(index));
    };
}

Create PlainChannels(Benchmarks::Script& script) {
    return
        [plain = Benchmarks::PlainChannels(script)](unsigned index) { return plain.Make(ChannelId(index)); };
}

double ResidentBytes() {
    std::ifstream file("/proc/self/statm");
    double total = 0;
    double resident = 0;
    file >> total >> resident;
    return resident * static_cast<double>(sysconf(_SC_PAGESIZE));
}

double BytesPerObject(Prepare prepare, unsigned objects) {
    Benchmarks::Script script;
    const JSContextRef context = script.Context();
    const Create create = prepare(script);
    JSObjectRef array = JSObjectMakeArray(context, 0, nullptr, nullptr);
    script.Keep(array);
    // The array at its full size and the class with its first object are not the objects' cost.
    for (unsigned i = 0; i < objects; ++i)
        JSObjectSetPropertyAtIndex(context, array, i, JSValueMakeNumber(context, i), nullptr);
    JSObjectSetPropertyAtIndex(context, array, 0, create(0), nullptr);
    JSGarbageCollect(context);
    const double before = ResidentBytes();
    for (unsigned i = 0; i < objects; ++i)
        JSObjectSetPropertyAtIndex(context, array, i, create(i), nullptr);
    return (ResidentBytes() - before) / objects;
}

}  // namespace

int main() {
    const Benchmarks::Middleware middleware;
    if (!middleware.Serves())
        return 1;
    const auto measure = [](Prepare prepare, unsigned objects) {
        return Benchmarks::InOwnProcess([=] { return BytesPerObject(prepare, objects); });
    };
    const double binding = measure(&Bindings, kObjects);
    const double hand = measure(&HandWritten, kObjects);
    const double channel = measure(&Channels, kChannelObjects);
    const double plain = measure(&PlainChannels, kObjects);
    std::printf("{\"binding\": %.0f, \"hand\": %.0f, \"channel\": %.0f, \"plainChannel\": %.0f}\n", binding,
                hand, channel, plain);
    return binding > 0 && hand > 0 && channel > 0 && plain > 0 ? 0 : 1;
}
