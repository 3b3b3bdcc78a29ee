#include "Host/Shell/Recording/Recording.h"

#include <string_view>

#include <nlohmann/json.hpp>

namespace Shell {

extern const std::string_view s_recordingPage;
extern const std::string_view s_recordingStyle;
extern const std::string_view s_recordingScript;

namespace {

using nlohmann::json;

// Of a line of the terminal.
constexpr std::size_t kLongestText = 4000;

std::string lineOf(const json& value) {
    return value.dump(-1, ' ', false, json::error_handler_t::replace);
}

// No text can end the script element that it is in, nor begin a comment in it.
void appendInert(std::string& page, std::string_view line) {
    for (const char c : line) {
        if (c == '<')
            page += "\\u003c";
        else
            page += c;
    }
    page += '\n';
}

}  // namespace

std::string entryOf(const char* kind, std::int64_t time, const std::string& name, const std::string& text) {
    return lineOf({kind, 0, 0, time, 0, name, text.substr(0, kLongestText), "", ""});
}

void Recording::add(std::string line) {
    m_bytes += line.size();
    m_lines.push_back(std::move(line));
    for (; m_lines.size() > m_mostEntries || m_bytes > m_mostBytes; ++m_gone) {
        m_bytes -= m_lines.front().size();
        m_lines.pop_front();
    }
}

std::string Recording::page(const std::string& title) const {
    // The texts stand where the page has their names.
    std::string page;
    std::string_view rest = s_recordingPage;
    const auto goTo = [&](std::string_view name) {
        const std::size_t at = rest.find(name);
        page += rest.substr(0, at);
        rest.remove_prefix(at + name.size());
    };
    goTo("@style@");
    page += s_recordingStyle;
    goTo("@entries@");
    page.reserve(m_bytes + m_bytes / 8 + s_recordingScript.size() + page.size());
    appendInert(page, lineOf({{"title", title}, {"gone", m_gone}}));
    for (const std::string& line : m_lines)
        appendInert(page, line);
    goTo("@script@");
    page += s_recordingScript;
    return page += rest;
}

}  // namespace Shell
