// The command line of a program: GLib's parser with -h, --help and --version, which end the program.
#pragma once

#include <cstdlib>
#include <functional>
#include <iostream>
#include <list>
#include <string>
#include <utility>
#include <vector>

#include "Host/Inc/GHandles.h"

namespace Host {

using GOptionContextHandle = std::unique_ptr<GOptionContext, GFree<&g_option_context_free>>;

inline constexpr int kBadUsage = 2;

// Where the texts of entries for strings go: each entry has a place, and take() gives on what has come.
class OptionTexts {
 public:
    template <typename Target>
    [[nodiscard]] char** placeFor(Target& target) {
        const auto take = [&target](const char* text) { target = text; };
        return &m_texts.emplace_back(nullptr, take).first;
    }
    void take() {
        for (auto& [text, give] : m_texts) {
            if (const GChars given{std::exchange(text, nullptr)})
                give(given.get());
        }
    }

 private:
    std::list<std::pair<char*, std::function<void(const char*)>>> m_texts;
};

struct CommandLine {
    const char* program;
    const char* version;
    const char* parameters;
    const char* summary;
    std::string description = {};  // Stands at the end of the help.
    bool optionsFirst = false;     // What comes after the first parameter is no option.
};

// The entries end with an empty one. Why the arguments are no good; empty when they are.
[[nodiscard]] inline std::string parseCommandLine(const CommandLine& line, const GOptionEntry* entries,
                                                  const std::vector<std::string>& arguments) {
    gboolean version = FALSE;
    const GOptionEntry own[] = {
        {"version", 0, G_OPTION_FLAG_NONE, G_OPTION_ARG_NONE, &version, "Tell the version", nullptr}, {}};
    const GOptionContextHandle context(g_option_context_new(line.parameters));
    g_option_context_set_summary(context.get(), line.summary);
    g_option_context_set_description(context.get(), line.description.c_str());
    g_option_context_set_strict_posix(context.get(), line.optionsFirst ? TRUE : FALSE);
    g_option_context_add_main_entries(context.get(), entries, nullptr);
    g_option_context_add_main_entries(context.get(), own, nullptr);
    g_set_prgname(line.program);
    char** strings = g_new0(char*, arguments.size() + 2);
    strings[0] = g_strdup(line.program);
    for (size_t at = 0; at < arguments.size(); ++at)
        strings[at + 1] = g_strdup(arguments[at].c_str());
    GErrorSlot error;
    const bool parsed = g_option_context_parse_strv(context.get(), &strings, error.out());
    const GStrings rest(strings);
    if (parsed && version) {
        std::cout << line.program << ' ' << line.version << std::endl;
        std::exit(0);
    }
    if (!parsed)
        return error.message();
    return rest.get()[0] && rest.get()[1] ? std::string("unknown argument ") + rest.get()[1] : std::string();
}

// For a program whose arguments are no good; its exit code.
inline int refuseCommandLine(const CommandLine& line, const std::string& problem) {
    std::cerr << line.program << ": " << problem << "\n" << line.program << " --help tells more\n";
    return kBadUsage;
}

}  // namespace Host
