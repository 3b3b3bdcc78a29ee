// What one live object costs in resident memory, with the generated binding and with the class written by hand. Each
// kind is measured in a process of its own, so that neither uses up what the other has freed. Prints JSON.
#include <JavaScriptCore/JavaScript.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <fstream>
#include <memory>

#include "Benchmarks/HandWritten.h"
#include "Benchmarks/Script.h"
#include "InjectedBundle/gen/js/jiFew.h"
#include "JavaScript/Src/CFewImpl.h"

namespace {

constexpr unsigned kObjects = 200000;

JSObjectRef CreateBinding(JSContextRef context) {
    using namespace OipfJavaScript;
    return jiFew::CreateObject(context, new jiFew(std::make_unique<CFewImpl>()), nullptr);
}

double ResidentBytes() {
    std::ifstream file("/proc/self/statm");
    double total = 0;
    double resident = 0;
    file >> total >> resident;
    return resident * static_cast<double>(sysconf(_SC_PAGESIZE));
}

double BytesPerObject(JSObjectRef (*create)(JSContextRef)) {
    Benchmarks::Script script;
    const JSContextRef context = script.Context();
    JSObjectRef array = JSObjectMakeArray(context, 0, nullptr, nullptr);
    script.Keep(array);
    // The array at its full size and the class with its first object are not the objects' cost.
    for (unsigned i = 0; i < kObjects; ++i)
        JSObjectSetPropertyAtIndex(context, array, i, JSValueMakeNumber(context, i), nullptr);
    JSObjectSetPropertyAtIndex(context, array, 0, create(context), nullptr);
    JSGarbageCollect(context);
    const double before = ResidentBytes();
    for (unsigned i = 0; i < kObjects; ++i)
        JSObjectSetPropertyAtIndex(context, array, i, create(context), nullptr);
    return (ResidentBytes() - before) / kObjects;
}

// Negative when the process failed.
double InOwnProcess(JSObjectRef (*create)(JSContextRef)) {
    int result[2];
    if (pipe(result) != 0)
        return -1;
    const pid_t child = fork();
    if (child == 0) {
        const double bytes = BytesPerObject(create);
        _exit(write(result[1], &bytes, sizeof bytes) == sizeof bytes ? 0 : 1);
    }
    close(result[1]);
    double bytes = -1;
    if (child < 0 || read(result[0], &bytes, sizeof bytes) != sizeof bytes)
        bytes = -1;
    close(result[0]);
    waitpid(child, nullptr, 0);
    return bytes;
}

}  // namespace

int main() {
    const double binding = InOwnProcess(&CreateBinding);
    const double hand = InOwnProcess(&Benchmarks::CreateHandWritten);
    std::printf("{\"binding\": %.0f, \"hand\": %.0f}\n", binding, hand);
    return binding > 0 && hand > 0 ? 0 : 1;
}
