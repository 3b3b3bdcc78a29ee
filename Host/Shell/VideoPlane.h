// The plane beneath all views: the pictures of the players that have something to show, and black.
#pragma once

#include <map>
#include <memory>

#include <gtk/gtk.h>

#include "Host/Inc/GHandles.h"
#include "Host/Shell/PlaneLayout.h"
#include "Host/Shell/PlayerPicture.h"

namespace Shell {

class VideoPlane {
 public:
    VideoPlane(int width, int height);
    ~VideoPlane();
    VideoPlane(const VideoPlane&) = delete;
    VideoPlane& operator=(const VideoPlane&) = delete;

    [[nodiscard]] GtkWidget* widget() const { return m_widget.get(); }

    void show(const PlanePlayer& player, const PlaneContent& content);
    void hide(const PlanePlayer& player);
    void hideAll();

    // The player is shown and has frames that nobody has opened yet.
    [[nodiscard]] bool lacksFrames(const PlanePlayer& player) const;
    // Without effect for a player that is not shown.
    void setFrames(const PlanePlayer& player, std::unique_ptr<Host::PictureView> frames);

    // Everything as it is now, for the widget and for screenshots.
    void draw(cairo_t* cairo);

 private:
    static gboolean onDraw(GtkWidget* widget, cairo_t* cairo, gpointer self);
    static gboolean onClock(gpointer self);
    static gboolean onFrameClock(GtkWidget* widget, GdkFrameClock* clock, gpointer self);

    void changed();
    void drawAgain(const PlayerPicture& picture);

    const int m_width;
    const int m_height;
    Host::GObjectHandle<GtkWidget> m_widget;
    std::map<PlanePlayer, PlayerPicture> m_pictures;
    Host::GSourceHandle m_clock;  // While there is a clock to move.
    unsigned m_frameClock = 0;    // While there are frames to look for.
};

}  // namespace Shell
