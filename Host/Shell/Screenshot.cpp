#include "Host/Shell/Screenshot.h"

#include "Host/Inc/GHandles.h"

namespace Shell {

using namespace Host;

std::string takeScreenshot(GtkWidget* window, const std::string& path) {
    GdkWindow* screen = gtk_widget_get_window(window);
    const GObjectHandle<GdkPixbuf> picture(screen ? gdk_pixbuf_get_from_window(screen, 0, 0,
                                                                               gdk_window_get_width(screen),
                                                                               gdk_window_get_height(screen))
                                                  : nullptr);
    if (!picture)
        return "the display does not give the window's pixels";
    GErrorSlot error;
    const bool isWritten =
        gdk_pixbuf_save(picture.get(), path.c_str(), "png", error.out(), static_cast<void*>(nullptr));
    return isWritten ? "" : error.message();
}

}  // namespace Shell
