// Any text as a scenario, any change to the default one, and any use of its world: done, or refused with a
// reason. The first byte says which.
#include <algorithm>
#include <array>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <set>
#include <span>
#include <string>

#include <glib.h>
#include <nlohmann/json.hpp>

#include "Fuzz/Fuzz.h"
#include "Host/Receiver/World/JsonReader.h"
#include "Host/Receiver/World/KeyCodes.h"
#include "Host/Receiver/World/Scenario.h"
#include "Host/Receiver/World/Urls.h"
#include "Tests/Bus/ReceiverSimulation.h"

namespace {

using nlohmann::json;
namespace fs = std::filesystem;

int s_read = 0;
int s_refused = 0;
int s_served = 0;

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

const json& anyValue(Choices& choices) {
    static const json s_values = [] {
        json values = json::parse(R"([null, true, 0, -1, 1, 255, 65536, 2147483647, -2147483648, 4294967295,
            -9223372036854775808, 18446744073709551615, 1e308, -0.5, "", "*", "0G", "dvb://1.2.3/../x",
            "a\u0000b", [], {}])");
        values.push_back(std::string(70000, 'x'));
        return values;
    }();
    return s_values.at(choices.below(s_values.size()));
}

void change(json& document, Choices& choices) {
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
            place = anyValue(choices);
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

// A place of the scenario, or one beside it.
std::string anyPointer(Choices& choices) {
    static const json s_known = defaultScenario().flatten();
    static const std::array<const char*, 8> s_tails = {"", "", "", "/-", "/0", "/4294967296", "/~", "/a/b"};
    std::string pointer = std::next(s_known.begin(), static_cast<int>(choices.below(s_known.size()))).key();
    for (auto left = choices.below(3); left > 0 && !pointer.empty(); --left)
        pointer.resize(pointer.rfind('/'));
    return pointer + s_tails.at(choices.below(s_tails.size()));
}

std::string anyFileAddress(Choices& choices) {
    static const std::array<const char*, 16> s_parts = {
        "/", "/", "//", "..", "../",       "%2e%2e",     "%2F",      "%00",
        "%", ".", "?",  "#",  "reply.bin", "SASMessage", "Scenario", "key.bin"};
    std::string url = choices.below(2) ? "dvb:/" : "dvb://1.2.3/";
    for (auto left = choices.below(12); left > 0; --left)
        url += s_parts.at(choices.below(s_parts.size()));
    return url;
}

// What it tells of a file is one of its folder's, whatever the address; whatever has become of it, it can be
// written down and read again.
void useWorld(Choices& choices) {
    static const std::string s_folder = fs::path(HBBTV_DEFAULT_SCENARIO).parent_path() / "../../Fuzz/corpus";
    static const std::set<std::string> s_answers = [] {
        std::set<std::string> answers = {"file 1  0"};
        for (const auto& entry : fs::directory_iterator(s_folder + "/SASMessage")) {
            std::ifstream file(entry.path(), std::ios::binary);
            answers.insert("file 1 " + std::string(std::istreambuf_iterator<char>(file), {}) + " 1");
        }
        return answers;
    }();
    json document = defaultScenario();
    document["carousel"] = {{"folder", "SASMessage"}, {"reply_ms", 0}};
    ReceiverTest::Simulation simulation(document.dump(), s_folder);
    Receiver::World& world = simulation.world;
    for (int left = 8; left > 0 && choices.left(); --left) {
        const std::string pointer = anyPointer(choices);
        switch (choices.below(4)) {
            case 0:
                readOrRefuse([&] { world.setValue(pointer, anyValue(choices).dump()); });
                break;
            case 1:
                readOrRefuse([&] { (void)world.value(pointer); });
                break;
            case 2:
                world.setKeyMask(static_cast<uint32_t>(choices.below(65536)) * 0x10001U);
                break;
            default:
                (void)simulation.me.carousel().request(1, anyFileAddress(choices));
        }
        simulation.timers.pass(1000);
        Require((world.scenario().keys.mask & ~world.scenario().keys.maximum) == 0);
        for (const std::string& told : simulation.events.take()) {
            Require(!told.starts_with("file") || s_answers.contains(told));
            s_served += told.starts_with("file") && told.ends_with(" 1") ? 1 : 0;
        }
    }
    json whole = world.value("");
    whole.erase("state");
    (void)Receiver::readScenario(whole, s_folder);
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
    switch (data[0] % 4) {
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
        case 2:
            judgeAddress(text);
            break;
        default: {
            Choices choices(rest);
            useWorld(choices);
        }
    }
    return 0;
}

void RequireEnoughWasMet() {
    Require(s_read > 20 && s_refused > 500 && s_served > 0);
}
