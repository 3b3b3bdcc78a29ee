#include "Host/Shell/Keys/KeyMap.h"

#include <algorithm>
#include <iterator>

#include <gdk/gdkkeysyms.h>

namespace Shell {

namespace {

struct Mapping {
    std::uint32_t keyval;
    std::uint32_t keyCode;
    const char* keyboard;  // Null for the further keys of a line that is already in the table for people.
    const char* remote;
};

constexpr Mapping kMappings[] = {
    {GDK_KEY_Left, kLeft, "arrows", "LEFT, UP, RIGHT, DOWN"},
    {GDK_KEY_Up, kUp, nullptr, nullptr},
    {GDK_KEY_Right, kRight, nullptr, nullptr},
    {GDK_KEY_Down, kDown, nullptr, nullptr},
    {GDK_KEY_KP_Left, kLeft, nullptr, nullptr},
    {GDK_KEY_KP_Up, kUp, nullptr, nullptr},
    {GDK_KEY_KP_Right, kRight, nullptr, nullptr},
    {GDK_KEY_KP_Down, kDown, nullptr, nullptr},
    {GDK_KEY_Return, kEnter, "Enter", "ENTER (OK)"},
    {GDK_KEY_KP_Enter, kEnter, nullptr, nullptr},
    {GDK_KEY_Escape, kBack, "Escape, Backspace", "BACK"},
    {GDK_KEY_BackSpace, kBack, nullptr, nullptr},
    {GDK_KEY_Back, kBack, nullptr, nullptr},
    {GDK_KEY_F1, kRed, "F1, F2, F3, F4", "RED, GREEN, YELLOW, BLUE"},
    {GDK_KEY_F2, kGreen, nullptr, nullptr},
    {GDK_KEY_F3, kYellow, nullptr, nullptr},
    {GDK_KEY_F4, kBlue, nullptr, nullptr},
    {GDK_KEY_Red, kRed, nullptr, nullptr},
    {GDK_KEY_Green, kGreen, nullptr, nullptr},
    {GDK_KEY_Yellow, kYellow, nullptr, nullptr},
    {GDK_KEY_Blue, kBlue, nullptr, nullptr},
    {GDK_KEY_F5, kInfo, "F5", "INFO"},
    {GDK_KEY_F6, kGuide, "F6, F7, F8", "GUIDE, TELETEXT, SUBTITLE"},
    {GDK_KEY_F7, kTeletext, nullptr, nullptr},
    {GDK_KEY_F8, kSubtitle, nullptr, nullptr},
    {GDK_KEY_Subtitle, kSubtitle, nullptr, nullptr},
    {GDK_KEY_space, kPlayPause, "Space", "PLAY_PAUSE"},
    {GDK_KEY_F9, kRewind, "F9, F10, F11", "REWIND, STOP, FAST_FWD"},
    {GDK_KEY_F10, kStop, nullptr, nullptr},
    {GDK_KEY_F11, kFastForward, nullptr, nullptr},
    {GDK_KEY_AudioPlay, kPlay, "media keys", "PLAY, PAUSE, STOP, REWIND, FAST_FWD, PREV, NEXT, RECORD"},
    {GDK_KEY_AudioPause, kPause, nullptr, nullptr},
    {GDK_KEY_Pause, kPause, nullptr, nullptr},
    {GDK_KEY_AudioStop, kStop, nullptr, nullptr},
    {GDK_KEY_AudioRewind, kRewind, nullptr, nullptr},
    {GDK_KEY_AudioForward, kFastForward, nullptr, nullptr},
    {GDK_KEY_AudioPrev, kPrevious, nullptr, nullptr},
    {GDK_KEY_AudioNext, kNext, nullptr, nullptr},
    {GDK_KEY_AudioRecord, kRecord, nullptr, nullptr},
    {GDK_KEY_AudioRaiseVolume, kVolumeUp, "volume keys", "VOLUME_UP, VOLUME_DOWN, MUTE"},
    {GDK_KEY_AudioLowerVolume, kVolumeDown, nullptr, nullptr},
    {GDK_KEY_AudioMute, kMute, nullptr, nullptr},
    {GDK_KEY_plus, kChannelUp, "+, -", "CHANNEL_UP, CHANNEL_DOWN"},
    {GDK_KEY_minus, kChannelDown, nullptr, nullptr},
    {GDK_KEY_KP_Add, kChannelUp, nullptr, nullptr},
    {GDK_KEY_KP_Subtract, kChannelDown, nullptr, nullptr},
    {GDK_KEY_Page_Up, kPageUp, "Page Up, Page Down", "PAGE_UP, PAGE_DOWN"},
    {GDK_KEY_Page_Down, kPageDown, nullptr, nullptr},
    {GDK_KEY_KP_Page_Up, kPageUp, nullptr, nullptr},
    {GDK_KEY_KP_Page_Down, kPageDown, nullptr, nullptr},
    {GDK_KEY_Home, kHome, "Home, End", "HOME, END"},
    {GDK_KEY_End, kEnd, nullptr, nullptr},
    {GDK_KEY_Menu, kMenu, "Menu", "MENU"},
};

constexpr bool isDigit(std::uint32_t keyCode) {
    return keyCode >= '0' && keyCode <= '9';
}
constexpr bool isLetter(std::uint32_t keyCode) {
    return keyCode >= 'A' && keyCode <= 'Z';
}

}  // namespace

std::optional<std::uint32_t> keyCodeOf(std::uint32_t keyval) {
    // The keyvals of digits and Latin letters are their characters.
    if (isDigit(keyval) || isLetter(keyval))
        return keyval;
    if (keyval >= GDK_KEY_a && keyval <= GDK_KEY_z)
        return keyval - GDK_KEY_a + 'A';
    if (keyval >= GDK_KEY_KP_0 && keyval <= GDK_KEY_KP_9)
        return keyval - GDK_KEY_KP_0 + '0';
    const auto* found = std::find_if(std::begin(kMappings), std::end(kMappings),
                                     [keyval](const Mapping& mapping) { return mapping.keyval == keyval; });
    return found == std::end(kMappings) ? std::nullopt : std::optional(found->keyCode);
}

std::optional<std::uint32_t> keyCodeOfDriver(std::uint32_t domKeyCode) {
    enum : std::uint32_t {
        kBackspace = 8,
        kEscape = 27,
        kPad0 = 96,
        kPad9 = 105,
        kPadPlus = 107,
        kPadMinus = 109
    };
    enum : std::uint32_t { kContextMenu = 93, kF1 = 112, kF11 = 122 };
    if (domKeyCode >= kF1 && domKeyCode <= kF11)
        return keyCodeOf(GDK_KEY_F1 + domKeyCode - kF1);
    if (domKeyCode >= kPad0 && domKeyCode <= kPad9)
        return domKeyCode - kPad0 + '0';
    switch (domKeyCode) {
        case kBackspace:
        case kEscape:
            return kBack;
        case kPadPlus:
            return kChannelUp;
        case kPadMinus:
            return kChannelDown;
        case kContextMenu:
            return kMenu;
        default:
            return nativeKeyvalOf(domKeyCode) ? std::optional(domKeyCode) : std::nullopt;
    }
}

KeyGroup keyGroupOf(std::uint32_t keyCode) {
    switch (keyCode) {
        case kRed:
            return kGroupRed;
        case kGreen:
            return kGroupGreen;
        case kYellow:
            return kGroupYellow;
        case kBlue:
            return kGroupBlue;
        case kLeft:
        case kUp:
        case kRight:
        case kDown:
        case kEnter:
        case kBack:
            return kGroupNavigation;
        case kPause:
        case kRewind:
        case kStop:
        case kPlay:
        case kRecord:
        case kFastForward:
        case kPrevious:
        case kNext:
        case kPlayPause:
            return kGroupVcr;
        case kPageUp:
        case kPageDown:
            return kGroupScroll;
        case kInfo:
            return kGroupInfo;
        default:
            break;
    }
    if (isDigit(keyCode))
        return kGroupNumeric;
    return isLetter(keyCode) ? kGroupAlpha : kGroupOther;
}

std::optional<std::uint32_t> nativeKeyvalOf(std::uint32_t keyCode) {
    if (isDigit(keyCode))
        return keyCode;
    if (isLetter(keyCode))
        return keyCode - 'A' + GDK_KEY_a;
    switch (keyCode) {
        case kEnter:
            return GDK_KEY_Return;
        case kPause:
            return GDK_KEY_Pause;
        case kSpace:
            return GDK_KEY_space;
        case kPageUp:
            return GDK_KEY_Page_Up;
        case kPageDown:
            return GDK_KEY_Page_Down;
        case kEnd:
            return GDK_KEY_End;
        case kHome:
            return GDK_KEY_Home;
        case kLeft:
            return GDK_KEY_Left;
        case kUp:
            return GDK_KEY_Up;
        case kRight:
            return GDK_KEY_Right;
        case kDown:
            return GDK_KEY_Down;
        default:
            return std::nullopt;
    }
}

std::string keyTableText() {
    constexpr size_t kColumn = 22;
    std::string text;
    for (const Mapping& mapping : kMappings) {
        if (!mapping.keyboard)
            continue;
        std::string line = std::string("  ") + mapping.keyboard;
        line.resize(std::max(line.size() + 1, kColumn), ' ');
        text += line + mapping.remote + "\n";
    }
    text += "  0 to 9, A to Z      the same\n";
    text += "  Shift+Escape        EXIT: the broadcast's application, or the page, begins again\n";
    text += "\nShift+F2 or the right mouse button shows the remote control, for the mouse.\n";
    text += "\nFor the developer: F12 opens the Web Inspector, Ctrl+R loads the page anew.\n";
    return text;
}

}  // namespace Shell
