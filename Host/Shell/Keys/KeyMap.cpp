#include "Host/Shell/Keys/KeyMap.h"

#include <algorithm>
#include <initializer_list>
#include <span>

#include <gdk/gdkkeysyms.h>

namespace Shell {

namespace {

// Keys that follow one another in both of two numberings.
struct Run {
    std::uint32_t from;
    std::uint32_t to;
    std::uint32_t count = 1;
};

// From keyvals to key codes.
constexpr Run kKeyboard[] = {
    {GDK_KEY_0, '0', 10},
    {GDK_KEY_KP_0, '0', 10},
    {GDK_KEY_A, 'A', 26},
    {GDK_KEY_a, 'A', 26},
    // Left, up, right, down.
    {GDK_KEY_Left, kLeft, 4},
    {GDK_KEY_KP_Left, kLeft, 4},
    {GDK_KEY_Return, kEnter},
    {GDK_KEY_KP_Enter, kEnter},
    {GDK_KEY_Escape, kBack},
    {GDK_KEY_BackSpace, kBack},
    {GDK_KEY_Back, kBack},
    // Red, green, yellow, blue.
    {GDK_KEY_F1, kRed, 4},
    {GDK_KEY_Red, kRed, 4},
    // Information, guide, teletext, subtitles.
    {GDK_KEY_F5, kInfo, 4},
    {GDK_KEY_Subtitle, kSubtitle},
    {GDK_KEY_space, kPlayPause},
    {GDK_KEY_F9, kRewind},
    {GDK_KEY_F10, kStop},
    {GDK_KEY_F11, kFastForward},
    {GDK_KEY_AudioPlay, kPlay},
    {GDK_KEY_AudioPause, kPause},
    {GDK_KEY_Pause, kPause},
    {GDK_KEY_AudioStop, kStop},
    {GDK_KEY_AudioRewind, kRewind},
    {GDK_KEY_AudioForward, kFastForward},
    {GDK_KEY_AudioPrev, kPrevious},
    {GDK_KEY_AudioNext, kNext},
    {GDK_KEY_AudioRecord, kRecord},
    {GDK_KEY_AudioRaiseVolume, kVolumeUp},
    {GDK_KEY_AudioLowerVolume, kVolumeDown},
    {GDK_KEY_AudioMute, kMute},
    {GDK_KEY_plus, kChannelUp},
    {GDK_KEY_minus, kChannelDown},
    {GDK_KEY_KP_Add, kChannelUp},
    {GDK_KEY_KP_Subtract, kChannelDown},
    {GDK_KEY_Page_Up, kPageUp, 2},
    {GDK_KEY_KP_Page_Up, kPageUp, 2},
    {GDK_KEY_Home, kHome},
    {GDK_KEY_End, kEnd},
    {GDK_KEY_Menu, kMenu},
};

// From what a page sees of a keyboard's keys to their keyvals, where that is not the code of the remote
// control.
constexpr Run kDriver[] = {{8, GDK_KEY_BackSpace}, {27, GDK_KEY_Escape},  {93, GDK_KEY_Menu},
                           {96, GDK_KEY_KP_0, 10}, {107, GDK_KEY_KP_Add}, {109, GDK_KEY_KP_Subtract},
                           {112, GDK_KEY_F1, 11}};

// From key codes to the keyvals of the same code.
constexpr Run kNative[] = {{'0', GDK_KEY_0, 10},    {'A', GDK_KEY_a, 26},    {kEnter, GDK_KEY_Return},
                           {kPause, GDK_KEY_Pause}, {kSpace, GDK_KEY_space}, {kPageUp, GDK_KEY_Page_Up, 2},
                           {kEnd, GDK_KEY_End},     {kHome, GDK_KEY_Home},   {kLeft, GDK_KEY_Left, 4}};

std::optional<std::uint32_t> find(std::span<const Run> runs, std::uint32_t key) {
    for (const auto& [from, to, count] : runs) {
        if (key >= from && key - from < count)
            return to + key - from;
    }
    return std::nullopt;
}

}  // namespace

std::optional<std::uint32_t> keyCodeOf(std::uint32_t keyval) {
    return find(kKeyboard, keyval);
}

std::optional<std::uint32_t> keyCodeOfDriver(std::uint32_t domKeyCode) {
    if (const auto keyval = find(kDriver, domKeyCode))
        return keyCodeOf(*keyval);
    return nativeKeyvalOf(domKeyCode) ? std::optional(domKeyCode) : std::nullopt;
}

KeyGroup keyGroupOf(std::uint32_t keyCode) {
    const auto isOneOf = [keyCode](std::initializer_list<std::uint32_t> keyCodes) {
        return std::find(keyCodes.begin(), keyCodes.end(), keyCode) != keyCodes.end();
    };
    if (keyCode >= kRed && keyCode <= kBlue)
        return static_cast<KeyGroup>(kGroupRed << (keyCode - kRed));
    if (isOneOf({kLeft, kUp, kRight, kDown, kEnter, kBack}))
        return kGroupNavigation;
    if (isOneOf({kPause, kRewind, kStop, kPlay, kRecord, kFastForward, kPrevious, kNext, kPlayPause}))
        return kGroupVcr;
    if (isOneOf({kPageUp, kPageDown}))
        return kGroupScroll;
    if (keyCode == kInfo)
        return kGroupInfo;
    if (keyCode >= '0' && keyCode <= '9')
        return kGroupNumeric;
    return keyCode >= 'A' && keyCode <= 'Z' ? kGroupAlpha : kGroupOther;
}

std::optional<std::uint32_t> nativeKeyvalOf(std::uint32_t keyCode) {
    return find(kNative, keyCode);
}

std::string keyTableText() {
    return R"(  arrows              LEFT, UP, RIGHT, DOWN
  Enter               ENTER (OK)
  Escape, Backspace   BACK
  F1, F2, F3, F4      RED, GREEN, YELLOW, BLUE
  F5                  INFO
  F6, F7, F8          GUIDE, TELETEXT, SUBTITLE
  Space               PLAY_PAUSE
  F9, F10, F11        REWIND, STOP, FAST_FWD
  media keys          PLAY, PAUSE, STOP, REWIND, FAST_FWD, PREV, NEXT, RECORD
  volume keys         VOLUME_UP, VOLUME_DOWN, MUTE
  +, -                CHANNEL_UP, CHANNEL_DOWN
  Page Up, Page Down  PAGE_UP, PAGE_DOWN
  Home, End           HOME, END
  Menu                MENU
  0 to 9, A to Z      the same
  Shift+Escape        EXIT: the broadcast's application, or the page, begins again

Shift+F2 or the right mouse button shows the remote control, for the mouse.

For the developer: F12 opens the Web Inspector, Ctrl+R loads the page anew.
)";
}

}  // namespace Shell
