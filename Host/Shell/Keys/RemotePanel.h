// The remote control as a window, for the mouse.
#pragma once

#include <cstdint>
#include <functional>

#include <gtk/gtk.h>

#include "Host/Inc/GCallbacks.h"

namespace Shell {

class RemotePanel : Host::Pinned {
 public:
    // `press` is called with a key code, or with kExitButton.
    explicit RemotePanel(std::function<void(std::uint32_t)> press);
    ~RemotePanel();

    // Shows or hides it; above the window of the widget, which keeps the keyboard.
    void toggle(GtkWidget* screen);

    // No key of any page: the shell's own.
    static constexpr std::uint32_t kExitButton = 0;

 private:
    void onClicked(GtkButton* button);

    std::function<void(std::uint32_t)> m_press;
    GtkWidget* m_window;
};

}  // namespace Shell
