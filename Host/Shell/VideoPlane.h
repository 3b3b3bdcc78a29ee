// The plane beneath all views: the pictures of the players that have something to show, and black.
#pragma once

#include <cstdint>
#include <map>
#include <string>

#include <gtk/gtk.h>

#include "Host/Inc/GHandles.h"
#include "Host/Shell/PlaneLayout.h"

namespace Shell {

class VideoPlane {
 public:
    VideoPlane(int width, int height);
    ~VideoPlane();
    VideoPlane(const VideoPlane&) = delete;
    VideoPlane& operator=(const VideoPlane&) = delete;

    [[nodiscard]] GtkWidget* widget() const { return m_widget.get(); }

    void show(std::uint32_t player, const PlaneWindow& window, const std::string& channel);
    void hide(std::uint32_t player);
    void hideAll();

    // Everything as it is now, for the widget and for screenshots.
    void draw(cairo_t* cairo) const;

 private:
    struct Picture {
        Rectangle window;
        std::string channel;
    };

    static gboolean onDraw(GtkWidget* widget, cairo_t* cairo, gpointer self);
    static gboolean onTick(gpointer self);

    void changed();

    const int m_width;
    const int m_height;
    Host::GObjectHandle<GtkWidget> m_widget;
    std::map<std::uint32_t, Picture> m_pictures;
    Host::GSourceHandle m_ticks;  // While there is a clock to move.
};

}  // namespace Shell
