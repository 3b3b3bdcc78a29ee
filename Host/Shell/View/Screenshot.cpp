#include "Host/Shell/View/Screenshot.h"

#include <gdk/gdkx.h>

#include "Host/Inc/GHandles.h"

namespace Shell {

using namespace Host;

namespace {

// What the window has drawn, where the display server gives it.
GdkPixbuf* pixelsOf(GdkWindow* window) {
    return gdk_pixbuf_get_from_window(window, 0, 0, gdk_window_get_width(window),
                                      gdk_window_get_height(window));
}

// Drawn once more, for a server that keeps it to itself.
GdkPixbuf* drawnAgain(GtkWidget* content) {
    const int scale = gtk_widget_get_scale_factor(content);
    const int width = gtk_widget_get_allocated_width(content) * scale;
    const int height = gtk_widget_get_allocated_height(content) * scale;
    cairo_surface_t* surface = cairo_image_surface_create(CAIRO_FORMAT_RGB24, width, height);
    cairo_surface_set_device_scale(surface, scale, scale);
    cairo_t* cairo = cairo_create(surface);
    gtk_widget_draw(content, cairo);
    cairo_destroy(cairo);
    GdkPixbuf* picture = gdk_pixbuf_get_from_surface(surface, 0, 0, width, height);
    cairo_surface_destroy(surface);
    return picture;
}

}  // namespace

std::string takeScreenshot(GtkWidget* screen, const std::string& path) {
    GdkWindow* window = gtk_widget_get_window(screen);
    const bool givesPixels = GDK_IS_X11_DISPLAY(gtk_widget_get_display(screen));
    const GObjectHandle<GdkPixbuf> picture(!window       ? nullptr
                                           : givesPixels ? pixelsOf(window)
                                                         : drawnAgain(screen));
    if (!picture)
        return "the display does not give the window's pixels";
    GErrorSlot error;
    const bool isWritten =
        gdk_pixbuf_save(picture.get(), path.c_str(), "png", error.out(), static_cast<void*>(nullptr));
    return isWritten ? "" : error.message();
}

}  // namespace Shell
