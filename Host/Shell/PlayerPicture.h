// What is to be seen of one player: its window, and in it a card or the frames that the receiver decodes.
#pragma once

#include <memory>

#include <cairo/cairo.h>

#include "Host/Picture/PictureView.h"
#include "Host/Shell/PlaneLayout.h"

namespace Shell {

class PlayerPicture {
 public:
    void change(const Rectangle& window, const PlaneContent& content);

    [[nodiscard]] const Rectangle& window() const { return m_window; }
    // A card with a clock, which has to be drawn anew by and by.
    [[nodiscard]] bool isClock() const { return m_picture == PlanePicture::Card; }

    [[nodiscard]] bool hasFrames() const { return m_frames != nullptr; }
    // The player has frames that nobody has opened yet.
    [[nodiscard]] bool lacksFrames() const { return m_picture == PlanePicture::Frames && !m_frames; }
    void setFrames(std::unique_ptr<Host::PictureView> frames) { m_frames = std::move(frames); }
    // Takes the newest frame; true when there is another one than before.
    bool update() { return m_frames && m_frames->update(); }

    void draw(cairo_t* cairo) const;

 private:
    void drawFrame(cairo_t* cairo) const;

    Rectangle m_window;
    std::string m_title;
    PlanePicture m_picture = PlanePicture::None;
    std::unique_ptr<Host::PictureView> m_frames;
};

}  // namespace Shell
