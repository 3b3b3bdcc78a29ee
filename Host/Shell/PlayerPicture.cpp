#include "Host/Shell/PlayerPicture.h"

#include "Host/Shell/TestCard.h"

namespace Shell {

void PlayerPicture::change(const Rectangle& window, const PlaneContent& content) {
    m_window = window;
    m_title = content.title;
    m_picture = content.picture;
    if (m_picture != PlanePicture::Frames)
        m_frames.reset();
}

void PlayerPicture::draw(cairo_t* cairo) const {
    cairo_set_source_rgb(cairo, 0, 0, 0);
    cairo_rectangle(cairo, m_window.x, m_window.y, m_window.width, m_window.height);
    cairo_fill(cairo);
    switch (m_picture) {
        case PlanePicture::Card:
            drawTestCard(cairo, pictureIn(m_window), m_title);
            break;
        case PlanePicture::Audio:
            drawAudioCard(cairo, pictureIn(m_window), m_title);
            break;
        case PlanePicture::Frames:
            drawFrame(cairo);
            break;
        case PlanePicture::None:
        default:
            break;
    }
}

void PlayerPicture::drawFrame(cairo_t* cairo) const {
    if (!m_frames || m_frames->width() == 0)
        return;
    const int width = m_frames->width();
    const int height = m_frames->height();
    const Rectangle place = pictureIn(m_window, width, height);
    // The surface borrows the pixels and leaves them as they are; it takes no read-only ones.
    auto* pixels = reinterpret_cast<unsigned char*>(const_cast<std::uint32_t*>(m_frames->pixels().data()));
    cairo_surface_t* frame = cairo_image_surface_create_for_data(
        pixels, CAIRO_FORMAT_RGB24, width, height, cairo_format_stride_for_width(CAIRO_FORMAT_RGB24, width));
    cairo_save(cairo);
    cairo_rectangle(cairo, place.x, place.y, place.width, place.height);
    cairo_clip(cairo);
    cairo_translate(cairo, place.x, place.y);
    cairo_scale(cairo, static_cast<double>(place.width) / width, static_cast<double>(place.height) / height);
    cairo_set_source_surface(cairo, frame, 0, 0);
    // Without the second line the frame's edges would be mixed with what is outside, that is, with nothing.
    cairo_pattern_set_filter(cairo_get_source(cairo), CAIRO_FILTER_BILINEAR);
    cairo_pattern_set_extend(cairo_get_source(cairo), CAIRO_EXTEND_PAD);
    cairo_paint(cairo);
    cairo_restore(cairo);
    // Whoever still refers to it gets a copy, before the pixels are others.
    cairo_surface_finish(frame);
    cairo_surface_destroy(frame);
}

}  // namespace Shell
