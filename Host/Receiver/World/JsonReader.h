// Strict reading of the scenario's JSON: every value is checked for type and range, every key must be known,
// and each refusal names the place as a JSON pointer.
#pragma once

#include <cstdint>
#include <functional>
#include <limits>
#include <set>
#include <stdexcept>
#include <string>
#include <vector>

#include <nlohmann/json_fwd.hpp>

namespace Receiver {

// A scenario, or a change to it, that the receiver does not take.
class ScenarioError : public std::runtime_error {
 public:
    ScenarioError(std::string place, const std::string& reason)
        : std::runtime_error(place.empty() ? reason : place + ": " + reason), m_place(std::move(place)) {}

    [[nodiscard]] const std::string& place() const { return m_place; }

 private:
    std::string m_place;
};

// Parses a text; refuses syntax errors (with line and column) and keys given twice in one object.
[[nodiscard]] nlohmann::json parseJson(const std::string& text);

// A string of JSON, safe for texts that are not UTF-8.
[[nodiscard]] std::string toText(const nlohmann::json& value);

class JsonValue {
 public:
    JsonValue(const nlohmann::json& value, std::string place) : m_value(value), m_place(std::move(place)) {}

    [[nodiscard]] std::string text() const;
    // One that is not empty.
    [[nodiscard]] std::string name() const;
    [[nodiscard]] bool flag() const;
    [[nodiscard]] std::int64_t number(std::int64_t minimum, std::int64_t maximum) const;
    // Two hexadecimal digits a byte, in any case, no separators.
    [[nodiscard]] std::vector<std::uint8_t> bytes() const;
    [[nodiscard]] std::vector<JsonValue> elements() const;
    [[nodiscard]] std::vector<std::string> texts() const;
    // The position of the text among those listed; any other text is refused with the list.
    [[nodiscard]] std::size_t oneOf(const std::vector<std::string>& choices) const;

    [[noreturn]] void refuse(const std::string& reason) const;

    [[nodiscard]] const nlohmann::json& json() const { return m_value; }
    [[nodiscard]] const std::string& place() const { return m_place; }

 private:
    const nlohmann::json& m_value;
    std::string m_place;
};

// Reads the members of one object; each function does nothing when the object has no such key.
class JsonObject {
 public:
    explicit JsonObject(const JsonValue& value);
    // Has the reader take the members of the record, and refuses the keys that it did not ask for.
    template <typename Record, typename Reader>
    static void readAll(const JsonValue& value, Record& record, const Reader& reader) {
        JsonObject object(value);
        reader(object, record);
        object.finish();
    }

    // The member that is read next must be there.
    JsonObject& required() {
        m_isRequired = true;
        return *this;
    }

    void read(const char* key, const std::function<void(const JsonValue&)>& take);
    void text(const char* key, std::string& target);
    // One that must be there, and not be empty.
    void name(const char* key, std::string& target);
    void flag(const char* key, bool& target);
    template <typename Integer>
    void number(const char* key, Integer& target, std::int64_t minimum = std::numeric_limits<Integer>::min(),
                std::int64_t maximum = std::numeric_limits<Integer>::max()) {
        read(key,
             [&](const JsonValue& value) { target = static_cast<Integer>(value.number(minimum, maximum)); });
    }
    // The texts stand for 0, 1 and so on.
    template <typename Choice>
    void choice(const char* key, Choice& target, const std::vector<std::string>& choices) {
        read(key, [&](const JsonValue& value) { target = static_cast<Choice>(value.oneOf(choices)); });
    }
    void texts(const char* key, std::vector<std::string>& target);
    template <typename Record, typename Reader>
    void record(const char* key, Record& target, const Reader& reader) {
        read(key, [&](const JsonValue& value) { readAll(value, target, reader); });
    }
    template <typename Record, typename Reader>
    void list(const char* key, std::vector<Record>& target, const Reader& reader) {
        read(key, [&](const JsonValue& value) {
            for (const auto& element : value.elements())
                readAll(element, target.emplace_back(), reader);
        });
    }

    // Refuses the keys that nobody asked for.
    void finish() const;

 private:
    const JsonValue m_value;
    std::set<std::string> m_asked;
    bool m_isRequired = false;
};

}  // namespace Receiver
