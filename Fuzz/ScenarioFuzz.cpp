// Any text as a scenario, and any change to the default one: read, or refused with a reason. The first byte says which.
#include <array>
#include <fstream>
#include <span>
#include <string>

#include <glib.h>
#include <nlohmann/json.hpp>

#include "Fuzz/Fuzz.h"
#include "Host/Receiver/World/JsonReader.h"
#include "Host/Receiver/World/KeyCodes.h"
#include "Host/Receiver/World/Scenario.h"
#include "Host/Receiver/World/Urls.h"

namespace {

using nlohmann::json;

int s_read = 0;
int s_refused = 0;

const json& defaultScenario() {
    static const json s_default = json::parse(std::ifstream(HBBTV_DEFAULT_SCENARIO));
    return s_default;
}

// The input as a row of choices; what is behind its end is 0.
class Choices {
 public:
    explicit Choices(std::span<const uint8_t> bytes) : m_bytes(bytes) {}

    [[nodiscard]] bool left() const { return !m_bytes.empty(); }
    std::size_t below(std::size_t limit) {
        if (m_bytes.empty() || limit == 0)
            return 0;
        const std::size_t byte = m_bytes.front();
        m_bytes = m_bytes.subspan(1);
        return limit > 256 ? (byte << 8U | below(256)) % limit : byte % limit;
    }

 private:
    std::span<const uint8_t> m_bytes;
};

// A place somewhere in the document, every one within reach.
json& placeIn(json& document, Choices& choices) {
    json* place = &document;
    while (place->is_structured() && !place->empty() && choices.below(8) != 0) {
        auto child = place->begin();
        std::advance(child, choices.below(place->size()));
        place = &*child;
    }
    return *place;
}

void change(json& document, Choices& choices) {
    static const std::array<json, 22> s_values = {
        nullptr, true, 0, -1, 1, 255, 65536, 2147483647, -2147483648LL, 4294967295U, INT64_MIN, UINT64_MAX, 1e308, -0.5,
        "", "*", "0G", "dvb://1.2.3/../x", std::string("a\0b", 3), std::string(70000, 'x'), json::array(), json::object()};
    json& place = placeIn(document, choices);
    switch (choices.below(4)) {
        case 0: {
            const json other = placeIn(document, choices);
            place = other;
            break;
        }
        case 1:
            if (place.is_object() && !place.empty())
                place.erase(place.begin());
            else if (place.is_array() && place.size() < 1000)
                place.push_back(place.empty() ? json() : json(place.front()));
            break;
        default:
            place = s_values.at(choices.below(s_values.size()));
    }
}

// Whatever else it throws ends the program.
template <typename Read>
void readOrRefuse(const Read& read) {
    try {
        read();
        ++s_read;
    } catch (const Receiver::ScenarioError& error) {
        ++s_refused;
        Require(error.what()[0] != '\0' && g_utf8_validate(error.what(), -1, nullptr));
    }
}

void judgeAddress(const std::string& text) {
    using namespace Receiver;
    const std::string scheme = schemeOf(text);
    const std::string origin = originOf(text);
    Require(origin.empty() || origin.starts_with(scheme + "://"));
    Require(originOf(origin + "/x") == origin);
    Require(!parseDvbService(text) || text.starts_with("dvb://"));
    if (const auto reference = parseAitReference(text))
        Require(text.ends_with(reference->application + reference->rest));
    Require(matchesPattern(text, "*") && matchesPattern(text, text));
    const auto half = text.size() / 2;
    Require(matchesPattern(text, text.substr(0, half) + "*" + text.substr(half)));
    (void)matchesPattern(text.substr(0, half), text.substr(half));
    Require(keyCode(text).value_or(0) <= 463);
}

}  // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***) {
    (void)defaultScenario();
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    if (size == 0)
        return 0;
    const std::span<const uint8_t> rest(data + 1, size - 1);
    const std::string text(rest.begin(), rest.end());
    switch (data[0] % 3) {
        case 0:
            readOrRefuse([&] { (void)Receiver::readScenario(Receiver::parseJson(text), "."); });
            break;
        case 1: {
            json document = defaultScenario();
            for (Choices choices(rest); choices.left();)
                change(document, choices);
            readOrRefuse([&] { (void)Receiver::readScenario(document, "."); });
            break;
        }
        default:
            judgeAddress(text);
    }
    return 0;
}

void RequireEnoughWasMet() {
    Require(s_read > 20 && s_refused > 500);
}
