#include "Host/Receiver/World/KeyCodes.h"

#include <algorithm>
#include <charconv>

#include "Host/Receiver/World/Urls.h"

namespace Receiver {

namespace {

// Keys whose codes follow one another, without the "VK_" of their names.
struct Keys {
    std::uint32_t firstCode;
    const char* names;
};

constexpr Keys kKeys[] = {
    {0, "UNDEFINED"},
    {3, "CANCEL"},
    {8, "BACK_SPACE TAB"},
    {12, "CLEAR ENTER"},
    {16, "SHIFT CONTROL ALT PAUSE CAPS_LOCK KANA"},
    {24, "FINAL KANJI"},
    {27,
     "ESCAPE CONVERT NONCONVERT ACCEPT MODECHANGE SPACE PAGE_UP PAGE_DOWN END HOME LEFT UP RIGHT "
     "DOWN"},
    {44, "COMMA"},
    {46, "PERIOD SLASH 0 1 2 3 4 5 6 7 8 9"},
    {59, "SEMICOLON"},
    {61, "EQUALS"},
    {65, "A B C D E F G H I J K L M N O P Q R S T U V W X Y Z OPEN_BRACKET BACK_SLASH CLOSE_BRACKET"},
    {96,
     "NUMPAD0 NUMPAD1 NUMPAD2 NUMPAD3 NUMPAD4 NUMPAD5 NUMPAD6 NUMPAD7 NUMPAD8 NUMPAD9 MULTIPLY ADD "
     "SEPARATER SUBTRACT DECIMAL DIVIDE F1 F2 F3 F4 F5 F6 F7 F8 F9 F10 F11 F12"},
    {127, "DELETE"},
    {144, "NUM_LOCK SCROLL_LOCK"},
    {154, "PRINTSCREEN INSERT HELP META"},
    {192, "BACK_QUOTE"},
    {222, "QUOTE"},
    {403,
     "RED GREEN YELLOW BLUE GREY BROWN POWER DIMMER WINK REWIND STOP EJECT_TOGGLE PLAY RECORD "
     "FAST_FWD PLAY_SPEED_UP PLAY_SPEED_DOWN PLAY_SPEED_RESET RECORD_SPEED_NEXT GO_TO_START "
     "GO_TO_END PREV NEXT RANDOM_TOGGLE CHANNEL_UP CHANNEL_DOWN STORE_FAVORITE_0 STORE_FAVORITE_1 "
     "STORE_FAVORITE_2 STORE_FAVORITE_3 RECALL_FAVORITE_0 RECALL_FAVORITE_1 RECALL_FAVORITE_2 "
     "RECALL_FAVORITE_3 CLEAR_FAVORITE_0 CLEAR_FAVORITE_1 CLEAR_FAVORITE_2 CLEAR_FAVORITE_3 "
     "SCAN_CHANNELS_TOGGLE PINP_TOGGLE SPLIT_SCREEN_TOGGLE DISPLAY_SWAP SCREEN_MODE_NEXT "
     "VIDEO_MODE_NEXT VOLUME_UP VOLUME_DOWN MUTE SURROUND_MODE_NEXT BALANCE_RIGHT BALANCE_LEFT "
     "FADER_FRONT FADER_REAR BASS_BOOST_UP BASS_BOOST_DOWN INFO GUIDE TELETEXT SUBTITLE BACK MENU "
     "PLAY_PAUSE"},
};

constexpr std::uint32_t kLargestCode = 463;

}  // namespace

std::optional<std::uint32_t> keyCode(const std::string& key) {
    for (const auto& keys : kKeys) {
        const auto names = split(keys.names, ' ');
        const auto named =
            std::ranges::find_if(names, [&key](const std::string& name) { return "VK_" + name == key; });
        if (named != names.end())
            return keys.firstCode + static_cast<std::uint32_t>(named - names.begin());
    }
    std::uint32_t code = 0;
    const auto* end = key.data() + key.size();
    const auto [stopped, error] = std::from_chars(key.data(), end, code);
    if (key.empty() || error != std::errc() || stopped != end || code > kLargestCode)
        return std::nullopt;
    return code;
}

}  // namespace Receiver
