// Where the video plane's pictures lie on the screen.
#include <gtest/gtest.h>

#include "Host/Shell/PlaneLayout.h"

namespace {

using namespace Shell;

constexpr std::uint32_t minus(std::uint32_t distance) {
    return 0U - distance;
}

TEST(AWindowOfTheVideoPlane, LiesWhereThePageHasPutItAlsoWhenScrolledPartlyAway) {
    EXPECT_EQ(windowOnScreen({200, 100, 640, 360}, 1280, 720), (Rectangle{200, 100, 640, 360}));
    EXPECT_EQ(windowOnScreen({minus(639), minus(359), 640, 360}, 1280, 720),
              (Rectangle{-639, -359, 640, 360}));
    EXPECT_EQ(windowOnScreen({1279, 719, 640, 360}, 1280, 720), (Rectangle{1279, 719, 640, 360}));
    EXPECT_EQ(windowOnScreen({5, 5, 1, 1, true}, 1280, 720), (Rectangle{0, 0, 1280, 720}));
    EXPECT_EQ(windowOnScreen({0, 0, 0, 0, true}, 1280, 720), (Rectangle{0, 0, 1280, 720}));
}

TEST(AWindowOfTheVideoPlane, IsNowhereWhenNothingOfItCanBeSeen) {
    for (const PlaneWindow& unseen :
         {PlaneWindow{0, 0, 0, 360}, PlaneWindow{0, 0, 640, 0}, PlaneWindow{1280, 0, 640, 360},
          PlaneWindow{0, 720, 640, 360}, PlaneWindow{minus(640), 0, 640, 360},
          PlaneWindow{0, minus(360), 640, 360}, PlaneWindow{0, 0, minus(1), 360},
          PlaneWindow{0, 0, 0x7FFFFFFF, 360}, PlaneWindow{0x80000000U, 0, 640, 360}})
        EXPECT_EQ(windowOnScreen(unseen, 1280, 720), std::nullopt)
            << unseen.x << " " << unseen.y << " " << unseen.width << " " << unseen.height;
}

TEST(APictureOfTheVideoPlane, KeepsItsFormInTheMiddleOfAWindowOfAnother) {
    EXPECT_EQ(pictureIn({200, 100, 640, 360}), (Rectangle{200, 100, 640, 360}));
    EXPECT_EQ(pictureIn({0, 0, 400, 90}), (Rectangle{120, 0, 160, 90}));
    EXPECT_EQ(pictureIn({-100, -50, 160, 290}), (Rectangle{-100, 50, 160, 90}));
}

}  // namespace
