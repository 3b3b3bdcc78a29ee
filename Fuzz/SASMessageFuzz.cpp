// Any bytes as a message of the common-interface module.
#include <numeric>
#include <span>
#include <vector>

#include "Fuzz/Fuzz.h"
#include "Wrapper/Src/SASDrmMessage.h"
#include "Wrapper/Src/SASMessage.h"
#include "Wrapper/Src/SASParentalControl.h"

namespace {

int s_valid = 0;
int s_broken = 0;

// Whether the header and what the items say of their lengths account for every byte.
bool IsWhole(std::span<const uint8_t> bytes) {
    size_t end = 8;
    for (size_t items = 0; end <= bytes.size() && items < bytes[7]; ++items)
        end += end + 3 > bytes.size() ? 3 : 3U + (bytes[end + 1] << 8U | bytes[end + 2]);
    return end == bytes.size();
}

}  // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***) {
    std::vector<uint8_t> longest = {1, 0, 0, 0, 0, 0, 0, 1, 5, 0xFF, 0xFF};
    longest.resize(longest.size() + 0xFFFF, 'x');
    return LLVMFuzzerTestOneInput(longest.data(), longest.size());
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const std::span<const uint8_t> bytes(data, size);
    const SASMessage message(bytes);
    ++(message.IsValid() ? s_valid : s_broken);
    Require(message.IsValid() == IsWhole(bytes));
    if (!message.IsValid()) {
        Require(message.CommandId() == 0 && message.CaSystemId() == 0 && message.TransactionId() == 0 &&
                message.Items().empty());
    } else {
        const auto add = [](size_t sum, const SASMessage::Item& item) { return sum + 3 + item.bytes.size(); };
        Require(std::accumulate(message.Items().begin(), message.Items().end(), size_t{8}, add) == size);
        Require(message.Items().size() == bytes[7] && message.CommandId() == bytes[0]);
        // Cut anywhere, or longer, it is not valid any more.
        for (size_t length = 0; length < size; length += 1 + size / 64)
            Require(!SASMessage(bytes.first(length)).IsValid());
        std::vector<uint8_t> longer(bytes.begin(), bytes.end());
        longer.push_back(0);
        Require(!SASMessage(longer).IsValid());
    }
    for (const SASMessage::Item& item : message.Items())
        Require(message.Find(item.datatypeId) <= &item);

    const SASDrmMessage drm(message);
    Require(drm.Result() >= SASDrmMessage::E_SUCCESSFUL && drm.Result() <= SASDrmMessage::E_HIGHEST_RESULT);
    Require(drm.Data().size() <= size);

    const SASParentalControl ratings(message);
    Require(message.IsValid() || !ratings.IsUnderstood());
    Require(ratings.Ratings().size() <= message.Items().size());
    return 0;
}

// Changes to contents leave a message valid, changes to structure do not.
void RequireEnoughWasMet() {
    Require(s_valid > 1000 && s_broken > 1000);
}
