#include "Host/Shell/VideoPlane.h"

#include "Host/Shell/TestCard.h"

namespace Shell {

using namespace Host;

namespace {

// Often enough for a clock that is seen to run, and seldom enough to cost nothing.
constexpr unsigned kTickMs = 200;

}  // namespace

VideoPlane::VideoPlane(int width, int height)
    : m_width(width),
      m_height(height),
      m_widget(static_cast<GtkWidget*>(g_object_ref_sink(gtk_drawing_area_new()))) {
    g_signal_connect(m_widget.get(), "draw", G_CALLBACK(onDraw), this);
}

VideoPlane::~VideoPlane() {
    g_signal_handlers_disconnect_by_data(m_widget.get(), this);
}

void VideoPlane::show(std::uint32_t player, const PlaneWindow& window, const std::string& channel) {
    const auto place = windowOnScreen(window, m_width, m_height);
    if (!place) {
        hide(player);
        return;
    }
    m_pictures[player] = {*place, channel};
    changed();
}

void VideoPlane::hide(std::uint32_t player) {
    if (m_pictures.erase(player) > 0)
        changed();
}

void VideoPlane::hideAll() {
    m_pictures.clear();
    changed();
}

void VideoPlane::changed() {
    gtk_widget_queue_draw(m_widget.get());
    if (m_pictures.empty())
        m_ticks.reset();
    else if (!m_ticks.active())
        m_ticks.reset(g_timeout_add(kTickMs, onTick, this));
}

void VideoPlane::draw(cairo_t* cairo) const {
    cairo_set_source_rgb(cairo, 0, 0, 0);
    cairo_paint(cairo);
    for (const auto& [player, picture] : m_pictures) {
        const Rectangle& window = picture.window;
        cairo_set_source_rgb(cairo, 0, 0, 0);
        cairo_rectangle(cairo, window.x, window.y, window.width, window.height);
        cairo_fill(cairo);
        drawTestCard(cairo, pictureIn(window), picture.channel);
    }
}

gboolean VideoPlane::onDraw(GtkWidget*, cairo_t* cairo, gpointer self) {
    static_cast<const VideoPlane*>(self)->draw(cairo);
    return TRUE;
}

gboolean VideoPlane::onTick(gpointer self) {
    const auto& plane = *static_cast<const VideoPlane*>(self);
    for (const auto& [player, picture] : plane.m_pictures) {
        const Rectangle& window = picture.window;
        gtk_widget_queue_draw_area(plane.m_widget.get(), window.x, window.y, window.width, window.height);
    }
    return G_SOURCE_CONTINUE;
}

}  // namespace Shell
