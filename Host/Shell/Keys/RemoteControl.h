// The road of a key: from the keyboard or the receiver, through the key mask, to the view on top.
#pragma once

#include <cstdint>

#include <gdk/gdk.h>

#include "Host/Shell/Keys/KeyMap.h"
#include "Host/Shell/View/BrowserView.h"

namespace Shell {

class RemoteControl {
 public:
    // Without a receiver every key passes.
    void setMask(std::uint32_t mask) { m_mask = mask; }

    // A key of the keyboard; false lets the event go on to the view by itself.
    [[nodiscard]] bool handleKeyEvent(BrowserView* view, const GdkEventKey& event) const;

    // A key that a driver presses in the page; true lets the page have it as it is.
    [[nodiscard]] bool takeDriverKey(BrowserView& view, std::uint32_t domKeyCode, bool pressed) const;

    // One key of the remote control, pressed and released.
    void press(BrowserView* view, std::uint32_t keyCode) const;

 private:
    // Tells a key that the mask keeps from the page.
    [[nodiscard]] bool passesKey(std::uint32_t keyCode, bool pressed) const;
    [[nodiscard]] bool passes(KeyGroup group) const { return (m_mask & group) != 0; }

    std::uint32_t m_mask = kAllKeyGroups;
};

}  // namespace Shell
