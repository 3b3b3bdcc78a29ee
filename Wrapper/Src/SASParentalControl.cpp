#include "Wrapper/Src/SASParentalControl.h"

#include <optional>

#include "Wrapper/Src/SASMessage.h"

namespace {

constexpr int kNoType = -1;
constexpr uint8_t kGranted = 1;
constexpr uint8_t kHighestDvbValue = 15;
constexpr int32_t kAgeOfDvbZero = 3;

// Of an item of one byte. An item of any other length has no meaning.
std::optional<uint8_t> ByteOf(const SASMessage::Item& item) {
    if (item.bytes.size() != 1)
        return std::nullopt;
    return static_cast<uint8_t>(item.bytes.front());
}

}  // namespace

SASParentalControl::SASParentalControl(const SASMessage& message) {
    std::string country;
    int type = kNoType;
    for (const SASMessage::Item& item : message.Items()) {
        const std::optional<uint8_t> byte = ByteOf(item);
        switch (item.datatypeId) {
            case SASMessage::E_COUNTRY_CODE:
                country = item.bytes;
                break;
            case SASMessage::E_RATING_TYPE:
                type = byte ? *byte : kNoType;
                break;
            case SASMessage::E_RATING_VALUE:
                if (byte)
                    AddRating(country, type, *byte);
                else
                    m_hasUnknownRating = true;
                break;
            case SASMessage::E_ACCESS_STATUS:
                m_hasStatus = byte.has_value();
                m_blocked = byte != kGranted;
                break;
            default:
                break;
        }
    }
}

void SASParentalControl::AddRating(const std::string& country, int type, uint8_t value) {
    if (type != SASMessage::E_RATING_DVB || value > kHighestDvbValue)
        m_hasUnknownRating = true;
    else if (value != 0)
        m_ratings.push_back({country, value + kAgeOfDvbZero});
}
