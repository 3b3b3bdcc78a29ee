#include "Host/Shell/Screenshot.h"

#include <utility>

#include "Host/Shell/Screen.h"

namespace Shell {

using namespace Host;

Screenshot::~Screenshot() {
    if (m_cancellable)
        g_cancellable_cancel(m_cancellable.get());
}

void Screenshot::take(VideoPlane& plane, const std::vector<WebKitWebView*>& views, Done done) {
    m_done = std::move(done);
    m_cancellable.reset(g_cancellable_new());
    m_remaining.clear();
    for (auto view = views.rbegin(); view != views.rend(); ++view)
        m_remaining.push_back(retain(*view));
    m_picture.reset(cairo_image_surface_create(CAIRO_FORMAT_RGB24, kScreenWidth, kScreenHeight));
    cairo_t* cairo = cairo_create(m_picture.get());
    plane.draw(cairo);
    cairo_destroy(cairo);
    takeNext();
}

void Screenshot::takeNext() {
    if (m_remaining.empty()) {
        const cairo_status_t status = cairo_surface_write_to_png(m_picture.get(), m_path.c_str());
        finish(status == CAIRO_STATUS_SUCCESS ? "" : m_path + ": " + cairo_status_to_string(status));
        return;
    }
    webkit_web_view_get_snapshot(m_remaining.back().get(), WEBKIT_SNAPSHOT_REGION_VISIBLE,
                                 WEBKIT_SNAPSHOT_OPTIONS_TRANSPARENT_BACKGROUND, m_cancellable.get(),
                                 onSnapshot, this);
}

void Screenshot::onSnapshot(GObject* view, GAsyncResult* result, gpointer self) {
    GErrorSlot error;
    const Surface surface(webkit_web_view_get_snapshot_finish(WEBKIT_WEB_VIEW(view), result, error.out()));
    // Cancelled: the screenshot is gone.
    if (error.is(G_IO_ERROR, G_IO_ERROR_CANCELLED))
        return;
    auto& screenshot = *static_cast<Screenshot*>(self);
    if (!surface) {
        screenshot.finish(error.message());
        return;
    }
    screenshot.paint(surface.get());
    screenshot.m_remaining.pop_back();
    screenshot.takeNext();
}

void Screenshot::paint(cairo_surface_t* surface) {
    cairo_t* cairo = cairo_create(m_picture.get());
    cairo_set_source_surface(cairo, surface, 0, 0);
    cairo_paint(cairo);
    cairo_destroy(cairo);
}

void Screenshot::finish(const std::string& error) {
    m_remaining.clear();
    if (const Done done = std::exchange(m_done, nullptr))
        done(error);
}

}  // namespace Shell
