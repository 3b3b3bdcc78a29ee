#include "Host/Receiver/World/JsonReader.h"

#include <algorithm>
#include <cctype>
#include <utility>

#include <glib.h>

#include <nlohmann/json.hpp>

#include "Host/Inc/GHandles.h"

namespace Receiver {

namespace {

std::string escapedForPointer(const std::string& key) {
    std::string escaped;
    for (const char character : key) {
        if (character == '~')
            escaped += "~0";
        else if (character == '/')
            escaped += "~1";
        else
            escaped += character;
    }
    return escaped;
}

std::string lineAndColumn(const std::string& text, std::size_t byte) {
    // The parser counts from one and names the byte after the last one that it read.
    const auto end =
        text.begin() + static_cast<std::ptrdiff_t>(std::min(byte > 0 ? byte - 1 : 0, text.size()));
    const auto line = 1 + std::count(text.begin(), end, '\n');
    auto lineStart = end;
    while (lineStart != text.begin() && *(lineStart - 1) != '\n')
        --lineStart;
    return "line " + std::to_string(line) + ", column " + std::to_string(1 + (end - lineStart));
}

// "[json.exception.parse_error.101] parse error at line 1, column 2: syntax error ..." without its head.
// It quotes what it had read, which may end within a character.
std::string withoutLibraryPrefix(const std::string& whole) {
    const Host::GChars valid(g_utf8_make_valid(whole.data(), static_cast<gssize>(whole.size())));
    const std::string message = valid.get();
    const auto syntax = message.find("syntax error");
    if (syntax != std::string::npos)
        return message.substr(syntax);
    const auto bracket = message.find("] ");
    return bracket == std::string::npos ? message : message.substr(bracket + 2);
}

}  // namespace

nlohmann::json parseJson(const std::string& text) {
    // The library keeps the last of two equal keys; somebody who writes a key twice wants to know.
    std::vector<std::set<std::string>> keys;
    const auto refuseDuplicates = [&keys](int, nlohmann::json::parse_event_t event, nlohmann::json& parsed) {
        using Event = nlohmann::json::parse_event_t;
        if (event == Event::object_start)
            keys.emplace_back();
        else if (event == Event::object_end)
            keys.pop_back();
        else if (event == Event::key && !keys.back().insert(parsed.get<std::string>()).second)
            throw ScenarioError("",
                                "the key \"" + parsed.get<std::string>() + "\" is given twice in one object");
        return true;
    };
    try {
        return nlohmann::json::parse(text, refuseDuplicates);
    } catch (const nlohmann::json::parse_error& error) {
        throw ScenarioError(lineAndColumn(text, error.byte), withoutLibraryPrefix(error.what()));
    }
}

std::string toText(const nlohmann::json& value) {
    return value.dump(-1, ' ', false, nlohmann::json::error_handler_t::replace);
}

void JsonValue::refuse(const std::string& reason) const {
    throw ScenarioError(m_place.empty() ? "the whole document" : m_place, reason);
}

std::string JsonValue::text() const {
    if (!m_value.is_string())
        refuse(std::string("must be a text, is ") + m_value.type_name());
    auto text = m_value.get<std::string>();
    if (text.find('\0') != std::string::npos)
        refuse("must not contain a NUL character");
    return text;
}

std::string JsonValue::name() const {
    auto name = text();
    if (name.empty())
        refuse("must not be empty");
    return name;
}

bool JsonValue::flag() const {
    if (!m_value.is_boolean())
        refuse(std::string("must be true or false, is ") + m_value.type_name());
    return m_value.get<bool>();
}

std::int64_t JsonValue::number(std::int64_t minimum, std::int64_t maximum) const {
    const auto wanted =
        "must be a whole number from " + std::to_string(minimum) + " to " + std::to_string(maximum);
    if (!m_value.is_number_integer())
        refuse(wanted + ", is " + (m_value.is_number() ? toText(m_value) : m_value.type_name()));
    const bool tooLarge =
        m_value.is_number_unsigned() &&
        m_value.get<std::uint64_t>() > static_cast<std::uint64_t>(std::max<std::int64_t>(maximum, 0));
    if (tooLarge || m_value.get<std::int64_t>() < minimum || m_value.get<std::int64_t>() > maximum)
        refuse(wanted + ", is " + toText(m_value));
    return m_value.get<std::int64_t>();
}

std::vector<std::uint8_t> JsonValue::bytes() const {
    const auto digits = text();
    const bool allHex = std::all_of(digits.begin(), digits.end(),
                                    [](unsigned char digit) { return std::isxdigit(digit) != 0; });
    if (digits.size() % 2 != 0 || !allHex)
        refuse("must be bytes as pairs of hexadecimal digits");
    std::vector<std::uint8_t> bytes;
    for (std::size_t i = 0; i < digits.size(); i += 2)
        bytes.push_back(static_cast<std::uint8_t>(std::stoi(digits.substr(i, 2), nullptr, 16)));
    return bytes;
}

std::vector<JsonValue> JsonValue::elements() const {
    if (!m_value.is_array())
        refuse(std::string("must be a list, is ") + m_value.type_name());
    std::vector<JsonValue> elements;
    for (std::size_t i = 0; i < m_value.size(); ++i)
        elements.emplace_back(m_value[i], m_place + "/" + std::to_string(i));
    return elements;
}

std::vector<std::string> JsonValue::texts() const {
    std::vector<std::string> texts;
    for (const auto& element : elements())
        texts.push_back(element.text());
    return texts;
}

std::size_t JsonValue::oneOf(const std::vector<std::string>& choices) const {
    const auto given = text();
    const auto found = std::find(choices.begin(), choices.end(), given);
    if (found == choices.end()) {
        std::string list;
        for (const auto& choice : choices)
            list += (list.empty() ? "\"" : ", \"") + choice + "\"";
        refuse("must be one of " + list + ", is \"" + given + "\"");
    }
    return static_cast<std::size_t>(found - choices.begin());
}

JsonObject::JsonObject(const JsonValue& value) : m_value(value) {
    if (!value.json().is_object())
        value.refuse(std::string("must be an object, is ") + value.json().type_name());
}

void JsonObject::read(const char* key, const std::function<void(const JsonValue&)>& take) {
    const bool isRequired = std::exchange(m_isRequired, false);
    const auto found = m_value.json().find(key);
    if (isRequired && found == m_value.json().end())
        m_value.refuse("the key \"" + std::string(key) + "\" is missing");
    m_asked.insert(key);
    if (found != m_value.json().end())
        take(JsonValue(*found, m_value.place() + "/" + escapedForPointer(key)));
}

void JsonObject::text(const char* key, std::string& target) {
    read(key, [&](const JsonValue& value) { target = value.text(); });
}

void JsonObject::name(const char* key, std::string& target) {
    required().read(key, [&](const JsonValue& value) { target = value.name(); });
}

void JsonObject::flag(const char* key, bool& target) {
    read(key, [&](const JsonValue& value) { target = value.flag(); });
}

void JsonObject::texts(const char* key, std::vector<std::string>& target) {
    read(key, [&](const JsonValue& value) { target = value.texts(); });
}

void JsonObject::finish() const {
    for (const auto& member : m_value.json().items()) {
        if (m_asked.contains(member.key()))
            continue;
        std::string known;
        for (const auto& key : m_asked)
            known += (known.empty() ? "" : ", ") + key;
        throw ScenarioError(m_value.place() + "/" + escapedForPointer(member.key()),
                            "unknown key; there are " + known);
    }
}

}  // namespace Receiver
