// What holds for a message of the common-interface module whatever its bytes are. Fails by a trap, which
// every sanitizer and test runner sees; the fuzzer and the ordinary tests share it.
#pragma once

#include <cstdint>
#include <cstdlib>
#include <numeric>
#include <span>
#include <vector>

#include "Wrapper/Src/SASDrmMessage.h"
#include "Wrapper/Src/SASMessage.h"
#include "Wrapper/Src/SASParentalControl.h"

inline void Require(bool holds) {
    if (!holds)
        std::abort();
}

inline void CheckSASMessage(std::span<const uint8_t> bytes) {
    // Memory of the very size lets the sanitizer see every read beyond the end.
    const std::vector<uint8_t> copy(bytes.begin(), bytes.end());
    const SASMessage message(copy);
    if (!message.IsValid()) {
        Require(message.CommandId() == 0 && message.CaSystemId() == 0 && message.TransactionId() == 0 &&
                message.Items().empty());
    } else {
        // The items account for every byte.
        const auto add = [](size_t sum, const SASMessage::Item& item) { return sum + 3 + item.bytes.size(); };
        Require(std::accumulate(message.Items().begin(), message.Items().end(), size_t{8}, add) ==
                copy.size());
        Require(message.Items().size() == copy[7] && message.CommandId() == copy[0]);
        // Cut anywhere, or longer, it is not valid any more.
        for (size_t length = 0; length < copy.size(); length += 1 + copy.size() / 64)
            Require(!SASMessage(std::span(copy).first(length)).IsValid());
        std::vector<uint8_t> longer(copy);
        longer.push_back(0);
        Require(!SASMessage(longer).IsValid());
    }
    for (const SASMessage::Item& item : message.Items())
        Require(message.Find(item.datatypeId) <= &item);

    const SASDrmMessage drm(message);
    Require(drm.Result() >= SASDrmMessage::E_SUCCESSFUL && drm.Result() <= SASDrmMessage::E_HIGHEST_RESULT);
    Require(drm.Data().size() <= copy.size());

    const SASParentalControl ratings(message);
    Require(message.IsValid() || !ratings.IsUnderstood());
    Require(ratings.Ratings().size() <= message.Items().size());
}
