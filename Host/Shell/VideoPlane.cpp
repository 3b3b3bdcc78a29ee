#include "Host/Shell/VideoPlane.h"

#include <utility>

namespace Shell {

using namespace Host;

namespace {

// Often enough for a clock that is seen to run, and seldom enough to cost nothing.
constexpr unsigned kClockMs = 200;

}  // namespace

VideoPlane::VideoPlane(int width, int height)
    : m_width(width),
      m_height(height),
      m_widget(static_cast<GtkWidget*>(g_object_ref_sink(gtk_drawing_area_new()))) {
    g_signal_connect(m_widget.get(), "draw", G_CALLBACK(onDraw), this);
}

VideoPlane::~VideoPlane() {
    hideAll();
    g_signal_handlers_disconnect_by_data(m_widget.get(), this);
}

void VideoPlane::show(const PlanePlayer& player, const PlaneContent& content) {
    const auto place = windowOnScreen(content.window, m_width, m_height);
    if (!place) {
        hide(player);
        return;
    }
    m_pictures[player].change(*place, content);
    changed();
}

void VideoPlane::hide(const PlanePlayer& player) {
    if (m_pictures.erase(player) > 0)
        changed();
}

void VideoPlane::hideAll() {
    m_pictures.clear();
    changed();
}

bool VideoPlane::lacksFrames(const PlanePlayer& player) const {
    const auto found = m_pictures.find(player);
    return found != m_pictures.end() && found->second.lacksFrames();
}

void VideoPlane::setFrames(const PlanePlayer& player, std::unique_ptr<PictureView> frames) {
    const auto found = m_pictures.find(player);
    if (found == m_pictures.end())
        return;
    found->second.setFrames(std::move(frames));
    changed();
}

void VideoPlane::changed() {
    gtk_widget_queue_draw(m_widget.get());
    bool clocks = false;
    bool frames = false;
    for (const auto& [player, picture] : m_pictures) {
        clocks = clocks || picture.isClock();
        frames = frames || picture.hasFrames();
    }
    if (!clocks)
        m_clock.reset();
    else if (!m_clock.active())
        m_clock.reset(g_timeout_add(kClockMs, onClock, this));
    if (frames && m_frameClock == 0)
        m_frameClock = gtk_widget_add_tick_callback(m_widget.get(), onFrameClock, this, nullptr);
    else if (!frames && m_frameClock != 0)
        gtk_widget_remove_tick_callback(m_widget.get(), std::exchange(m_frameClock, 0));
}

void VideoPlane::drawAgain(const PlayerPicture& picture) {
    const Rectangle& window = picture.window();
    gtk_widget_queue_draw_area(m_widget.get(), window.x, window.y, window.width, window.height);
}

void VideoPlane::draw(cairo_t* cairo) {
    cairo_set_source_rgb(cairo, 0, 0, 0);
    cairo_paint(cairo);
    for (auto& [player, picture] : m_pictures) {
        picture.update();
        picture.draw(cairo);
    }
}

gboolean VideoPlane::onDraw(GtkWidget*, cairo_t* cairo, gpointer self) {
    static_cast<VideoPlane*>(self)->draw(cairo);
    return TRUE;
}

gboolean VideoPlane::onClock(gpointer self) {
    auto& plane = *static_cast<VideoPlane*>(self);
    for (const auto& [player, picture] : plane.m_pictures) {
        if (picture.isClock())
            plane.drawAgain(picture);
    }
    return G_SOURCE_CONTINUE;
}

gboolean VideoPlane::onFrameClock(GtkWidget*, GdkFrameClock*, gpointer self) {
    auto& plane = *static_cast<VideoPlane*>(self);
    for (auto& [player, picture] : plane.m_pictures) {
        if (picture.update())
            plane.drawAgain(picture);
    }
    return G_SOURCE_CONTINUE;
}

}  // namespace Shell
