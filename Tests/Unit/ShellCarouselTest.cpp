// What the shell takes a file of the object carousel for.
#include <string>

#include <gtest/gtest.h>

#include "Host/Shell/Content/CarouselFile.h"

namespace {

using namespace Shell;

TEST(AFileOfTheCarousel, IsWhatItsNameSays) {
    EXPECT_EQ(mediaTypeOf("dvb://1.2.3/a/index.HTML?x=.css#.js", ""), "text/html");
    EXPECT_EQ(mediaTypeOf("dvb://1.2.3/a.hbbtv", ""), "application/vnd.hbbtv.xhtml+xml");
    EXPECT_EQ(mediaTypeOf("dvb://1.2.3/a.hbbtv.xhtml", ""), "application/vnd.hbbtv.xhtml+xml");
    EXPECT_EQ(mediaTypeOf("dvb:/a.xhtml", "<html>"), "application/xhtml+xml");
    EXPECT_EQ(mediaTypeOf("dvb:/a.b.js", "<html>"), "text/javascript");
    EXPECT_EQ(mediaTypeOf("dvb://1.2.3/page.html/data", "plain"), "text/plain")
        << "a folder's name is not its";
}

TEST(AFileOfTheCarousel, IsWhatItBeginsWithWhereItsNameSaysNothing) {
    EXPECT_EQ(mediaTypeOf("dvb://1.2.3/a", "\xef\xbb\xbf \n<!DocType HTML><p>"), "text/html");
    EXPECT_EQ(mediaTypeOf("dvb://1.2.3/a", "<?xml version='1.0'?><html xmlns='x'/>"),
              "application/xhtml+xml");
    EXPECT_EQ(mediaTypeOf("dvb://1.2.3/a.dat", "<?xml version='1.0'?><data/>"), "application/xml");
    EXPECT_EQ(mediaTypeOf("dvb://1.2.3/a", "\x89PNG\r\n\x1a\n"), "image/png");
    EXPECT_EQ(mediaTypeOf("dvb://1.2.3/a", "\xff\xd8\xff\xe0"), "image/jpeg");
    EXPECT_EQ(mediaTypeOf("dvb://1.2.3/a",
                          "gr\xc3\xbc\xc3\x9f"
                          "e"),
              "text/plain");
    EXPECT_EQ(mediaTypeOf("dvb://1.2.3/a", std::string("a\0b", 3)), "application/octet-stream");
    EXPECT_EQ(mediaTypeOf("dvb://1.2.3/folder/", "<p>"), "text/html") << "the page of a folder";
    EXPECT_EQ(mediaTypeOf("dvb://1.2.3/a", ""), "text/plain");
}

}  // namespace
