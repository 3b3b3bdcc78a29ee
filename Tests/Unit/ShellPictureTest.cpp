// What the shell draws for a player, on a surface instead of a screen.
#include <memory>
#include <vector>

#include <cairo/cairo.h>
#include <gtest/gtest.h>

#include "Host/Picture/PictureWriter.h"
#include "Host/Shell/PlayerPicture.h"

namespace {

using namespace Shell;

constexpr int width = 320;
constexpr int height = 180;
constexpr std::uint32_t outside = 0x123456;
constexpr std::uint32_t black = 0;

class APlayersPicture : public testing::Test {
 protected:
    ~APlayersPicture() override {
        cairo_destroy(m_cairo);
        cairo_surface_destroy(m_surface);
    }

    void draw() {
        cairo_set_source_rgb(m_cairo, 0x12 / 255.0, 0x34 / 255.0, 0x56 / 255.0);
        cairo_paint(m_cairo);
        m_picture.draw(m_cairo);
        cairo_surface_flush(m_surface);
    }
    [[nodiscard]] std::uint32_t at(int x, int y) const {
        const auto* row = cairo_image_surface_get_data(m_surface) +
                          static_cast<std::ptrdiff_t>(y) * cairo_image_surface_get_stride(m_surface);
        return std::uint32_t{row[x * 4]} | std::uint32_t{row[x * 4 + 1]} << 8 |
               std::uint32_t{row[x * 4 + 2]} << 16;
    }
    // A frame with a red left and a blue right half.
    void write(int frameWidth, int frameHeight) {
        std::vector<std::uint8_t> bytes;
        for (int pixel = 0; pixel < frameWidth * frameHeight; ++pixel) {
            const bool left = pixel % frameWidth < frameWidth / 2;
            bytes.insert(bytes.end(), {static_cast<std::uint8_t>(left ? 0 : 0xFF), 0,
                                       static_cast<std::uint8_t>(left ? 0xFF : 0), 0x77});
        }
        ASSERT_NE(m_writer.write(frameWidth, frameHeight, frameWidth * 4, bytes.data()),
                  Host::Written::Refused);
    }
    void open() { m_picture.setFrames(Host::PictureView::open(m_writer.share())); }

    cairo_surface_t* m_surface = cairo_image_surface_create(CAIRO_FORMAT_RGB24, width, height);
    cairo_t* m_cairo = cairo_create(m_surface);
    Host::PictureWriter m_writer;
    PlayerPicture m_picture;
};

TEST_F(APlayersPicture, IsTheNewestFrameInItsOwnFormInTheMiddleOfTheWindow) {
    m_picture.change({100, 40, 200, 100}, {{}, "film.mp4", PlanePicture::Frames});
    EXPECT_TRUE(m_picture.lacksFrames());
    draw();
    EXPECT_EQ(at(200, 90), black) << "no frames yet, and no card instead";
    EXPECT_EQ(at(99, 90), outside);
    write(40, 40);
    open();
    EXPECT_FALSE(m_picture.lacksFrames());
    EXPECT_TRUE(m_picture.update());
    EXPECT_FALSE(m_picture.update());
    draw();
    EXPECT_EQ(at(149, 90), black);
    EXPECT_EQ(at(150, 40), 0xFF0000U);
    EXPECT_EQ(at(190, 90), 0xFF0000U);
    EXPECT_EQ(at(210, 139), 0x0000FFU);
    EXPECT_EQ(at(249, 90), 0x0000FFU);
    EXPECT_EQ(at(250, 90), black);
    EXPECT_EQ(at(200, 140), outside);
    // A frame of another form, and the window elsewhere.
    write(400, 10);
    EXPECT_TRUE(m_picture.update());
    m_picture.change({-200, 0, 400, 50}, {{}, "film.mp4", PlanePicture::Frames});
    draw();
    EXPECT_EQ(at(100, 19), black);
    EXPECT_EQ(at(100, 20), 0x0000FFU);
    EXPECT_EQ(at(199, 29), 0x0000FFU);
    EXPECT_EQ(at(100, 30), black);
    EXPECT_EQ(at(200, 25), outside);
    m_writer.clear();
    EXPECT_TRUE(m_picture.update());
    draw();
    EXPECT_EQ(at(100, 25), black);
}

TEST_F(APlayersPicture, GivesItsFramesUpWhenThePlayerHasNoneAnyMore) {
    write(16, 9);
    m_picture.change({0, 0, 320, 180}, {{}, "film.mp4", PlanePicture::Frames});
    open();
    m_picture.change({0, 0, 320, 180}, {{}, "song.mp3", PlanePicture::Audio});
    EXPECT_FALSE(m_picture.hasFrames());
    EXPECT_FALSE(m_picture.lacksFrames());
    // The next medium of the player has frames again, in memory that must be asked for again.
    m_picture.change({0, 0, 320, 180}, {{}, "film.mp4", PlanePicture::Frames});
    EXPECT_TRUE(m_picture.lacksFrames());
    draw();
    EXPECT_EQ(at(5, 5), black);
}

}  // namespace
