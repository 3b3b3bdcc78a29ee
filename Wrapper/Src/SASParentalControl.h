// What a message of the common-interface module says about the parental rating of the content that is played.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

class SASMessage;

class SASParentalControl {
 public:
    struct Rating {
        std::string country;  // as sent; empty for any
        int32_t age = 0;
    };

    // Any message can be given: it is then simply not understood.
    explicit SASParentalControl(const SASMessage& message);

    // False when the access status is missing, or when ratings were sent and this receiver knows the meaning
    // of none of them.
    [[nodiscard]] bool IsUnderstood() const {
        return m_hasStatus && (!m_ratings.empty() || !m_hasUnknownRating);
    }

    // Of no meaning in a message that is not understood.
    [[nodiscard]] bool IsBlocked() const { return m_blocked; }
    // Those whose meaning is known, in the order in which they were sent.
    [[nodiscard]] const std::vector<Rating>& Ratings() const { return m_ratings; }

 private:
    void AddRating(const std::string& country, int type, uint8_t value);

    bool m_hasStatus = false;
    bool m_hasUnknownRating = false;
    bool m_blocked = true;
    std::vector<Rating> m_ratings;
};
