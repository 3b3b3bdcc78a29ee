// The command line of a program: GLib's parser with -h, --help and --version, which end the program.
#pragma once

#include <cstdlib>
#include <functional>
#include <iostream>
#include <list>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "Host/Inc/GHandles.h"

namespace Host {

using GOptionContextHandle = std::unique_ptr<GOptionContext, GFree<&g_option_context_free>>;

inline constexpr int kBadUsage = 2;

// The text of a G_OPTION_ARG_STRING or G_OPTION_ARG_FILENAME entry, which is freed.
[[nodiscard]] inline std::optional<std::string> takeText(char* text) {
    const GChars owned(text);
    return owned ? std::optional<std::string>(owned.get()) : std::nullopt;
}

// Where the texts of such entries go: each entry has a place, and take() gives on what has come.
class OptionTexts {
 public:
    template <typename Target>
    [[nodiscard]] char** placeFor(Target& target) {
        const auto take = [&target](const char* text) { target = text; };
        return &m_texts.emplace_back(nullptr, take).first;
    }
    void take() {
        for (auto& [text, give] : m_texts) {
            if (const auto given = takeText(std::exchange(text, nullptr)))
                give(given->c_str());
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

// The entries end with an empty one. False, with the reason, for arguments that are no good.
[[nodiscard]] inline bool parseCommandLine(const CommandLine& line, const GOptionEntry* entries,
                                           const std::vector<std::string>& arguments, std::string& problem) {
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
        problem = error.message();
    else if (rest.get()[0] && rest.get()[1])
        problem = std::string("unknown argument ") + rest.get()[1];
    return problem.empty();
}

// For a program whose arguments are no good; its exit code.
inline int refuseCommandLine(const CommandLine& line, const std::string& problem) {
    std::cerr << line.program << ": " << problem << "\n" << line.program << " --help tells more\n";
    return kBadUsage;
}

}  // namespace Host
