#include "Host/Control/Words.h"

#include <algorithm>
#include <charconv>

#include <nlohmann/json.hpp>

#include "Host/Control/Failure.h"

namespace Control {

using namespace Host;

namespace {

bool isNumber(const std::string& word) {
    return !word.empty() &&
           std::all_of(word.begin(), word.end(), [](unsigned char c) { return c >= '0' && c <= '9'; });
}

void addPlaces(const nlohmann::json& value, const nlohmann::json::json_pointer& place, bool dotted,
               const std::string& path, Words& places) {
    if (!path.empty())
        places.push_back(dotted ? path : place.to_string());
    if (!value.is_structured())
        return;
    for (const auto& [key, member] : value.items()) {
        const bool plain = dotted && key.find_first_of("./") == std::string::npos;
        const auto inside = value.is_array() ? place / std::stoul(key) : place / key;
        addPlaces(member, inside, plain, path.empty() ? key : path + "." + key, places);
    }
}

GVariant* parsed(const std::string& word, const char* type, GErrorSlot& error) {
    return g_variant_parse(type ? G_VARIANT_TYPE(type) : nullptr, word.c_str(), nullptr, nullptr,
                           error.out());
}

}  // namespace

std::string joined(const Words& words, size_t from) {
    std::string text;
    for (size_t at = from; at < words.size(); ++at)
        text += (at > from ? " " : "") + words[at];
    return text;
}

std::string pointerOf(const std::string& place) {
    if (place.empty() || place.front() == '/')
        return place;
    std::string pointer = "/" + place;
    std::replace(pointer.begin(), pointer.end(), '.', '/');
    return pointer;
}

Words placesIn(const nlohmann::json& value) {
    Words places;
    addPlaces(value, nlohmann::json::json_pointer(), true, "", places);
    return places;
}

nlohmann::json jsonOf(const std::string& word) {
    auto value = nlohmann::json::parse(word, nullptr, false);
    if (!value.is_discarded())
        return value;
    if (!word.empty() && std::string("{[\"").find(word.front()) != std::string::npos)
        throw Misuse(word + " begins like JSON and is none");
    return word;
}

std::string keyOf(const std::string& word) {
    if (isNumber(word) && word.size() > 1)
        return word;
    const GChars upper(g_ascii_strup(word.c_str(), -1));
    const std::string name = upper.get();
    return name.starts_with("VK_") ? name : "VK_" + name;
}

std::uint32_t numberOf(const std::string& word) {
    std::uint32_t number = 0;
    const auto* end = word.data() + word.size();
    const auto [stopped, error] = std::from_chars(word.data(), end, number);
    if (word.empty() || error != std::errc() || stopped != end)
        throw Misuse("not a number: " + word);
    return number;
}

GVariantHandle argumentOf(const std::string& word, const char* type) {
    const std::string wanted = type ? type : "";
    const auto text = [&word] {
        return GVariantHandle(g_variant_ref_sink(g_variant_new_string(word.c_str())));
    };
    if (wanted == "s")
        return text();
    GErrorSlot error;
    if (GVariant* value = parsed(word, type, error))
        return GVariantHandle(value);
    if (wanted == "ay")
        return GVariantHandle(
            g_variant_ref_sink(g_variant_new_fixed_array(G_VARIANT_TYPE_BYTE, word.data(), word.size(), 1)));
    if (wanted == "v")
        return GVariantHandle(g_variant_ref_sink(g_variant_new_variant(argumentOf(word, nullptr).get())));
    if (!type)
        return text();
    throw Misuse(word + " is not of the type \"" + wanted + "\": " + error.message());
}

}  // namespace Control
