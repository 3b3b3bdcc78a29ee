// A picture of the screen, taken from the views themselves so that it needs no visible window manager.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include <webkit2/webkit2.h>

#include "Host/Inc/GHandles.h"
#include "Host/Shell/VideoPlane.h"

namespace Shell {

class Screenshot {
 public:
    // The reason of a failure, empty for success.
    using Done = std::function<void(const std::string& error)>;

    explicit Screenshot(std::string path) : m_path(std::move(path)) {}
    ~Screenshot();
    Screenshot(const Screenshot&) = delete;
    Screenshot& operator=(const Screenshot&) = delete;

    // The plane, and above it the views from the bottom up. `done` is not called when this object dies
    // before.
    void take(VideoPlane& plane, const std::vector<WebKitWebView*>& views, Done done);

 private:
    struct SurfaceDestroy {
        void operator()(cairo_surface_t* surface) const { cairo_surface_destroy(surface); }
    };
    using Surface = std::unique_ptr<cairo_surface_t, SurfaceDestroy>;

    static void onSnapshot(GObject* view, GAsyncResult* result, gpointer self);

    void takeNext();
    void paint(cairo_surface_t* surface);
    void finish(const std::string& error);

    std::string m_path;
    Done m_done;
    Surface m_picture;
    std::vector<Host::GObjectHandle<WebKitWebView>> m_remaining;  // The next one is the last.
    Host::GObjectHandle<GCancellable> m_cancellable;
};

}  // namespace Shell
