#include "Host/Control/Commands.h"

#include <algorithm>
#include <cstdint>
#include <iostream>
#include <iterator>

#include <nlohmann/json.hpp>

#include "Host/Control/Failure.h"

namespace Control {

using namespace Host;

namespace {

constexpr size_t kAny = SIZE_MAX;

// The keys of the shell's table; `press` takes every name and code that the receiver knows.
constexpr char kKeys[] =
    "0\n1\n2\n3\n4\n5\n6\n7\n8\n9\nLEFT\nUP\nRIGHT\nDOWN\nENTER\nBACK\nRED\nGREEN\nYELLOW\nBLUE\n"
    "PLAY\nPAUSE\nSTOP\nPLAY_PAUSE\nRECORD\nPREV\nNEXT\nREWIND\nFAST_FWD\nPAGE_UP\nPAGE_DOWN\nHOME\n"
    "END\nINFO\nGUIDE\nTELETEXT\nSUBTITLE\nMENU\nMUTE\nVOLUME_UP\nVOLUME_DOWN\nCHANNEL_UP\n"
    "CHANNEL_DOWN\n";

void setValue(const Television& television, const std::string& pointer, const nlohmann::json& value) {
    television.control("SetWorld", g_variant_new("(ss)", pointer.c_str(), value.dump().c_str()));
}

nlohmann::json valueAt(const Television& television, const std::string& pointer) {
    const auto reply = television.control("GetWorld", g_variant_new("(s)", pointer.c_str()));
    const char* json = nullptr;
    g_variant_get(reply.get(), "(&s)", &json);
    return nlohmann::json::parse(json);
}

// Without quotes where that is what `set` takes.
std::string wordOf(const nlohmann::json& value) {
    return value.is_string() ? value.get<std::string>() : value.dump(2);
}

void tune(const Television& television, const Words& words) {
    setValue(television, "/broadcast/current_channel", numberOf(words[0]));
}

void press(const Television& television, const Words& words) {
    for (const auto& word : words)
        television.control("PressKey", g_variant_new("(s)", keyOf(word).c_str()));
}

void set(const Television& television, const Words& words) {
    setValue(television, pointerOf(words[0]), jsonOf(joined(words, 1)));
}

void get(const Television& television, const Words& words) {
    std::cout << wordOf(valueAt(television, words.empty() ? "" : pointerOf(words[0]))) << std::endl;
}

void places(const Television& television, const Words&) {
    for (const auto& place : placesIn(valueAt(television, "")))
        std::cout << place << '\n';
}

void trigger(const Television& television, const Words& words) {
    const auto data = argumentOf(joined(words, 1), "ay");
    television.control("TriggerStreamEvent", g_variant_new("(s@ay)", words[0].c_str(), data.get()));
}

void emit(const Television& television, const Words& words) {
    const Words rest(words.begin() + 1, words.end());
    const auto all = television.introspect();
    const Member* signal = findMember(all.signals, words[0]);
    // With its interface, one that nobody has declared may be sent, to try the pages.
    if (!signal && words[0].find('.') == std::string::npos)
        throw Misuse("there is no signal " + words[0]);
    const auto arguments = tupleOf(rest, signal);
    television.control("EmitSignal", g_variant_new("(sv)", words[0].c_str(), arguments.get()));
}

// As the receiver names it, if it does.
std::string methodOf(const Television& television, const std::string& name) {
    const auto all = television.introspect();
    const Member* method = findMember(all.methods, name);
    return method ? method->shortName() : name;
}

void fail(const Television& television, const Words& words) {
    const std::string message = words.size() > 1 ? joined(words, 1) : "failed by hbbtv-control";
    television.control("FailMethod",
                       g_variant_new("(ss)", methodOf(television, words[0]).c_str(), message.c_str()));
}

void delay(const Television& television, const Words& words) {
    television.control("DelayMethod",
                       g_variant_new("(su)", methodOf(television, words[0]).c_str(), numberOf(words[1])));
}

void reset(const Television& television, const Words&) {
    television.control("ResetMethods");
}

void tellCall(const char* method, const char* arguments) {
    std::cout << method << ' ' << arguments << std::endl;
}

void calls(const Television& television, const Words& words) {
    if (words.empty()) {
        const auto reply = television.control("GetCalls");
        GVariantIter* entries = nullptr;
        const char* method = nullptr;
        const char* arguments = nullptr;
        g_variant_get(reply.get(), "(a(sst))", &entries);
        while (g_variant_iter_next(entries, "(&s&st)", &method, &arguments, nullptr))
            tellCall(method, arguments);
        g_variant_iter_free(entries);
    } else if (words[0] == "--follow" || words[0] == "-f") {
        television.followCalls(tellCall);
    } else if (words[0] == "--clear") {
        television.control("ClearCalls");
    } else {
        throw Misuse("calls takes --follow or --clear, not " + words[0]);
    }
}

void call(const Television& television, const Words& words) {
    const auto all = television.introspect();
    const Member* method = findMember(all.methods, words[0]);
    if (!method)
        throw Misuse("there is no method " + words[0]);
    const auto arguments = tupleOf({words.begin() + 1, words.end()}, method);
    const auto reply = television.call(*method, arguments.get());
    std::cout << GChars(g_variant_print(reply.get(), FALSE)).get() << std::endl;
}

// What may stand behind a command, for the completion in shells.
void complete(const Television& television, const Words& words) {
    const std::string command = words[0];
    const auto tell = [](const std::string& word) { std::cout << word << '\n'; };
    if (command == "press")
        std::cout << kKeys;
    else if (command == "set" || command == "get")
        places(television, {});
    else if (command == "tune")
        for (const auto& channel : valueAt(television, "/broadcast/channels"))
            tell(channel.at("id").dump());
    else if (command == "trigger")
        for (const auto& source : valueAt(television, "/stream_events"))
            tell(source.at("name").get<std::string>());
    else if (command == "emit")
        for (const auto& signal : television.introspect().signals)
            tell(signal.shortName());
    else if (command == "fail" || command == "delay" || command == "call")
        for (const auto& method : television.introspect().methods)
            tell(method.shortName());
}

constexpr Command kCommands[] = {
    {"tune", "CHANNEL", "Choose a channel by its id, 0 for none", 1, 1, tune},
    {"press", "KEY...", "Press keys of the remote control: RED, 5, VK_UP, or codes of two digits and more", 1,
     kAny, press},
    {"get", "[PLACE]", "Tell a value of the television, or all; \"state\" is what nobody can set", 0, 1, get},
    {"set", "PLACE VALUE", "Change a value: a number, true, a text, or JSON", 2, kAny, set},
    {"places", "", "Tell all places, for get and set", 0, 0, places},
    {"trigger", "NAME [TEXT]", "Send a stream event now to the pages that listen to it", 1, kAny, trigger},
    {"calls", "[--follow|--clear]", "Tell what pages have asked of the receiver, or ask from now on", 0, 1,
     calls},
    {"delay", "METHOD MS", "Answer all calls of a method later; 0 ends it", 2, 2, delay},
    {"fail", "METHOD [MESSAGE]", "Answer all calls of a method with an error", 1, kAny, fail},
    {"reset", "", "End all delays and failures", 0, 0, reset},
    {"emit", "SIGNAL [ARGUMENT...]", "Send a signal to all pages", 1, kAny, emit},
    {"call", "METHOD [ARGUMENT...]", "Call a method as a page would, or one of the control interface", 1,
     kAny, call},
    {"complete", "COMMAND", nullptr, 1, 1, complete},
};

}  // namespace

const Command* findCommand(const std::string& name) {
    const auto* found = std::find_if(std::begin(kCommands), std::end(kCommands),
                                     [&name](const Command& command) { return name == command.name; });
    return found == std::end(kCommands) ? nullptr : found;
}

std::string commandTable() {
    constexpr size_t kColumn = 31;
    std::string text;
    for (const auto& command : kCommands) {
        if (!command.help)
            continue;
        std::string line = std::string("  ") + command.name + " " + command.parameters;
        line.resize(std::max(line.size() + 1, kColumn), ' ');
        text += line + command.help + "\n";
    }
    return text;
}

}  // namespace Control
