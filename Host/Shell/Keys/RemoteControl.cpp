#include "Host/Shell/Keys/RemoteControl.h"

#include <memory>

#include "Host/Inc/GHandles.h"
#include "Host/Inc/ShellChannel.h"

namespace Shell {

using namespace Host;

namespace {

// What a key without a key of the keyboard is sent as; the browser extensions of the page turn it into its
// code.
guint keyvalOf(std::uint32_t keyCode) {
    return nativeKeyvalOf(keyCode).value_or(
        gdk_unicode_to_keyval(ShellChannel::kFirstPrivateCharacter + keyCode));
}

// As the keyboard would send it. It goes to the view, whether or not the window has the focus.
void send(BrowserView& view, std::uint32_t keyCode, bool pressed) {
    GdkWindow* window = gtk_widget_get_window(view.widget());
    if (!window)
        return;
    const guint keyval = keyvalOf(keyCode);
    const std::unique_ptr<GdkEvent, GFree<&gdk_event_free>> event(
        gdk_event_new(pressed ? GDK_KEY_PRESS : GDK_KEY_RELEASE));
    event->key.window = retain(window).release();
    event->key.send_event = TRUE;
    event->key.time = GDK_CURRENT_TIME;
    event->key.keyval = keyval;
    GdkDisplay* display = gdk_window_get_display(window);
    GdkKeymapKey* keys = nullptr;
    int count = 0;
    if (gdk_keymap_get_entries_for_keyval(gdk_keymap_get_for_display(display), keyval, &keys, &count)) {
        const std::unique_ptr<GdkKeymapKey, GFree<&g_free>> owned(keys);
        event->key.hardware_keycode = static_cast<guint16>(keys[0].keycode);
        event->key.group = static_cast<guint8>(keys[0].group);
    }
    gdk_event_set_device(event.get(), gdk_seat_get_keyboard(gdk_display_get_default_seat(display)));
    gtk_widget_event(view.widget(), event.get());
}

}  // namespace

bool RemoteControl::handleKeyEvent(BrowserView* view, const GdkEventKey& event) const {
    if (!view)
        return true;
    const auto keyCode = keyCodeOf(event.keyval);
    // Tabulator, punctuation and the like: nothing of a remote control, yet of use in a form.
    if (!keyCode)
        return !passes(kGroupOther);
    if (!passesKey(*keyCode, event.type == GDK_KEY_PRESS))
        return true;
    const auto native = nativeKeyvalOf(*keyCode);
    if (native && gdk_keyval_to_lower(event.keyval) == *native)
        return false;
    send(*view, *keyCode, event.type == GDK_KEY_PRESS);
    return true;
}

bool RemoteControl::takeDriverKey(BrowserView& view, std::uint32_t domKeyCode, bool pressed) const {
    const auto keyCode = keyCodeOfDriver(domKeyCode);
    if (!keyCode)
        return passes(kGroupOther);
    if (!passesKey(*keyCode, pressed))
        return false;
    if (*keyCode == domKeyCode)
        return true;
    send(view, *keyCode, pressed);
    return false;
}

bool RemoteControl::passesKey(std::uint32_t keyCode, bool pressed) const {
    const KeyGroup group = keyGroupOf(keyCode);
    if (!passes(group) && pressed)
        g_message("the page does not get the key %u: its group, 0x%x, is not in the key mask, 0x%x", keyCode,
                  group, m_mask);
    else if (pressed)
        g_info("key %u", keyCode);
    return passes(group);
}

void RemoteControl::press(BrowserView* view, std::uint32_t keyCode) const {
    if (!view || !passesKey(keyCode, true))
        return;
    send(*view, keyCode, true);
    send(*view, keyCode, false);
}

}  // namespace Shell
