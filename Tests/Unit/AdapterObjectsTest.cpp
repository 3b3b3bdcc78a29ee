// The counted objects that the web-process adapter hands to a bundle.
#include <array>
#include <string>

#include <gtest/gtest.h>

#include "Host/WebProcess/WKObjects.h"

namespace {

using namespace WebProcess;

struct Counted final : WKObject {
    explicit Counted(int& alive) : m_alive(alive) { ++m_alive; }
    ~Counted() override { --m_alive; }
    int& m_alive;
};

std::string copied(const char* text, size_t size, size_t& written) {
    std::array<char, 64> buffer;
    buffer.fill('#');
    const auto string = WKRetained<Text>::adopt(new Text(text));
    written = string->copy(buffer.data(), size);
    EXPECT_EQ(buffer[written], '#') << "nothing is written past what is reported";
    return written > 0 ? std::string(buffer.data()) : std::string();
}

TEST(AnAdapterString, IsCopiedInWholeCharactersWithItsTerminator) {
    size_t written = 0;
    EXPECT_EQ(copied("a\u00e4\u20ac", 64, written), "a\u00e4\u20ac");
    EXPECT_EQ(written, 7U);
    EXPECT_EQ(copied("a\u00e4\u20ac", 7, written), "a\u00e4\u20ac");
    EXPECT_EQ(copied("a\u00e4\u20ac", 6, written), "a\u00e4");
    EXPECT_EQ(written, 4U);
    EXPECT_EQ(copied("a\u00e4\u20ac", 3, written), "a");
    EXPECT_EQ(copied("a", 1, written), "");
    EXPECT_EQ(written, 1U);
    EXPECT_EQ(copied("a", 0, written), "");
    EXPECT_EQ(written, 0U);
    // Ill-formed text, as in WebKit.
    EXPECT_EQ(copied("a\xff", 64, written), "");
    EXPECT_EQ(written, 1U);
}

TEST(AnAdapterObject, LivesUntilItsLastReferenceIsGivenBack) {
    int alive = 0;
    {
        auto first = WKRetained<Counted>::adopt(new Counted(alive));
        const WKRetained<Counted> second = first;
        first = {};
        EXPECT_EQ(alive, 1);
        WKRetained<Counted> third(second.get());
        // As a bundle releases what it was given.
        fromRef<WKObject>(toRef<WKTypeRef>(third.leak()))->release();
        EXPECT_EQ(alive, 1);
    }
    EXPECT_EQ(alive, 0);
}

}  // namespace
