// Conversions between JavaScript and C++: every input has a defined result, and no text is silently cut.

#include <cmath>
#include <limits>

#include "InjectedBundle/Src/JSConversions.h"
#include "InjectedBundle/Src/JSHandles.h"
#include "JavaScript/Src/jiUtility.h"
#include "Tests/Unit/FakeBrowser.h"

namespace OipfJavaScript {
namespace {

std::string Utf8Of(std::u16string_view text) {
    const auto string = JSStringHandle::Adopt(
        JSStringCreateWithCharacters(reinterpret_cast<const JSChar*>(text.data()), text.size()));
    return ToUtf8(string.Get());
}

TEST(ANumber, BecomesAnIntegerWhateverItIs) {
    constexpr double inf = std::numeric_limits<double>::infinity();
    EXPECT_EQ(ToInt32(NAN), 0);
    EXPECT_EQ(ToInt32(-3.9), -3);
    EXPECT_EQ(ToInt32(1e300), std::numeric_limits<int32_t>::max());
    EXPECT_EQ(ToInt32(-inf), std::numeric_limits<int32_t>::min());
    EXPECT_EQ(ToUint32(NAN), 0U);
    EXPECT_EQ(ToUint32(4294967295.0), 4294967295U);
    EXPECT_EQ(ToUint32(inf), 4294967295U);
    EXPECT_EQ(ToUint32(-1), 4294967295U);
    EXPECT_EQ(ToUint32(-0.5), 0U);
    EXPECT_NE(ToUint32(-1e300), 0U) << "a negative index never names a first element";
    EXPECT_EQ(ToInt64(inf), std::numeric_limits<int64_t>::max());
    EXPECT_EQ(ToInt64(-1e300), std::numeric_limits<int64_t>::min());
}

TEST(AText, KeepsEverythingAroundWhatIsIllFormed) {
    EXPECT_EQ(Utf8Of(u""), "");
    EXPECT_EQ(Utf8Of(u"plain"), "plain");
    EXPECT_EQ(Utf8Of(u"Gr\u00fc\u00dfe \u20ac \U0001F4FA"), "Gr\u00fc\u00dfe \u20ac \U0001F4FA");
    EXPECT_EQ(Utf8Of(std::u16string{u'a', 0xD800, u'b'}), "a\uFFFDb");
    EXPECT_EQ(Utf8Of(std::u16string{0xDC00, u'\u00e9', 0xD83D}), "\uFFFD\u00e9\uFFFD");
    EXPECT_EQ(Utf8Of(std::u16string{0xD83D, 0xD83D, 0xDCFA}), "\uFFFD\U0001F4FA");
    EXPECT_EQ(Utf8Of(std::u16string{u'a', 0, u'\u00e9', 0, 0xD800}), std::string("a\0\u00e9\0\uFFFD", 8));
}

TEST(AText, IsReadFromBytesWithoutLosingTheRest) {
    EXPECT_EQ(ToUtf16("a\xFF\xC3\xA9"), u"a\uFFFD\u00e9");
    EXPECT_EQ(ToUtf16(std::string("x\0y", 3)), std::u16string(u"x\0y", 3));
    EXPECT_EQ(ToUtf16("\xF0\x9F\x93"), u"\uFFFD\uFFFD\uFFFD");
    EXPECT_EQ(ToUtf16("\xF0\x9F\x93\xBA"), u"\U0001F4FA");
    EXPECT_EQ(WellFormedUtf8("a\xFF\xC3\xA9\xE2\x82"
                             "b\xED\xA0\x80\xF0\x9F\x93\xBA\xC3"),
              "a\u00e9b\U0001F4FA");
    EXPECT_EQ(WellFormedUtf8(std::string("\0x\0\x80\0", 5)), std::string("\0x\0\0", 4));
    EXPECT_EQ(BytesToUtf8(std::string("\0A\x80\xFF", 4)), std::string("\0A\u0080\u00ff", 6));
    EXPECT_EQ(jiUtility::Ucs2ToUtf8(u"\u20ac!", 2), "\u20ac!");
    EXPECT_EQ(jiUtility::Utf8ToUcs2("\u20ac!", 4), u"\u20ac!");
}

TEST(AText, ReachesAPageByteByByteWhereItIsBytes) {
    FakePage page;
    page.main.SetGlobal("bytes", MakeByteString(page.main.context, std::string("\0\x80\xFF", 3)));
    EXPECT_EQ(page.main.Eval(
                  "[bytes.length, bytes.charCodeAt(0), bytes.charCodeAt(1), bytes.charCodeAt(2)].join()"),
              "3,0,128,255");
    EXPECT_EQ(ToBytes(JSStringHandle("a\u00ff\u0100").Get()), std::string("a\xFF\0", 3));
}

TEST(ATextAsNumber, IsAWholeUnsignedNumberOrNothing) {
    const auto parse = [](const char* text) {
        long value = -5;
        const bool good = jiUtility::JSStringToLong(JSStringHandle(text).Get(), value);
        return std::make_pair(good, value);
    };
    EXPECT_EQ(parse("42"), std::make_pair(true, 42L));
    EXPECT_EQ(parse(""), std::make_pair(true, 0L));
    EXPECT_EQ(parse("42a"), std::make_pair(false, -5L));
    EXPECT_EQ(parse("99999999999999999999999"), std::make_pair(false, -5L));
}

TEST(APath, IsCompletedFromThePagesFolder) {
    FakePage page;
    const auto absolute = [&](std::string path) {
        jiUtility::MakeAbsolutePath(page.main.context, path);
        return path;
    };
    EXPECT_EQ(jiUtility::GetDocumentLocation(nullptr), "");
    EXPECT_EQ(jiUtility::GetDocumentLocation(page.main.context), "") << "without a document";
    page.main.Eval("document = {location: {origin: 'http://tv.example:80', pathname: '/app/index.html'}}");
    EXPECT_EQ(jiUtility::GetDocumentLocation(page.main.context), "http://tv.example:80/app/");
    EXPECT_EQ(absolute("next.html?a=b"), "http://tv.example:80/app/next.html?a=b");
    EXPECT_EQ(absolute("/root.html"), "http://tv.example:80/root.html");
    EXPECT_EQ(absolute("dvb://1.2.3/x"), "dvb://1.2.3/x");
    page.main.Eval("document = {get location() { throw 1; }}");
    EXPECT_EQ(absolute("next.html"), "/next.html")
        << "a page that hides its location breaks only its own path";
}

}  // namespace
}  // namespace OipfJavaScript
