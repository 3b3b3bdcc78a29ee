// Messages of the common-interface module, whole and broken.

#include <cstdint>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "Wrapper/Src/SASMessage.h"

namespace {

using Bytes = std::vector<uint8_t>;

// Two items of one type, the second with no bytes, and one that holds a NUL.
const Bytes kMessage = {0x02, 0x4B, 0x13, 0x81, 0x02, 0x03, 0x04, 3,  //
                        0x0A, 0x00, 0x03, 'a',  'b',  'c',  0x0A, 0x00, 0x00, 0xFF, 0x00, 0x02, 0x00, 0xFF};

// A vector of the very size lets the sanitizer see every read beyond the end.
SASMessage Parse(const Bytes& bytes) {
    return SASMessage(Bytes(bytes));
}

bool IsEmpty(const SASMessage& message) {
    return message.CommandId() == 0 && message.CaSystemId() == 0 && message.TransactionId() == 0 &&
           message.Items().empty();
}

TEST(ASasMessage, MayHaveNoItemsOrVeryLongOnes) {
    EXPECT_TRUE(Parse({1, 0, 0, 0, 0, 0, 0, 0}).IsValid());
    Bytes longest = {1, 0, 0, 0, 0, 0, 0, 1, 5, 0xFF, 0xFF};
    longest.resize(longest.size() + 0xFFFF, 'x');
    ASSERT_TRUE(Parse(longest).IsValid());
    EXPECT_EQ(Parse(longest).Find(5)->bytes.size(), 0xFFFFU);
}

TEST(ASasMessage, IsNotValidWhenItIsCutAnywhereOrGoesOn) {
    for (size_t length = 0; length < kMessage.size(); ++length) {
        const SASMessage cut = Parse(Bytes(kMessage.begin(), kMessage.begin() + static_cast<long>(length)));
        EXPECT_FALSE(cut.IsValid()) << length;
        EXPECT_TRUE(IsEmpty(cut)) << length;
    }
    Bytes longer = kMessage;
    longer.push_back(0);
    EXPECT_FALSE(Parse(longer).IsValid());
    EXPECT_TRUE(IsEmpty(Parse(longer)));
}

}  // namespace
