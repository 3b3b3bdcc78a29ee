// The keyboard as a remote control.
#include <cstdint>
#include <optional>
#include <set>
#include <vector>

#include <gdk/gdkkeysyms.h>
#include <gtest/gtest.h>

#include "Host/Shell/Keys/KeyMap.h"

namespace {

using namespace Shell;

TEST(ARemoteControl, HasTheKeysOfTheKeyboard) {
    const std::vector<std::pair<std::uint32_t, std::uint32_t>> expected = {
        {GDK_KEY_F1, 403},      {GDK_KEY_F2, 404},        {GDK_KEY_F3, 405},   {GDK_KEY_F4, 406},
        {GDK_KEY_Escape, 461},  {GDK_KEY_BackSpace, 461}, {GDK_KEY_Left, 37},  {GDK_KEY_Down, 40},
        {GDK_KEY_KP_Enter, 13}, {GDK_KEY_KP_7, 55},       {GDK_KEY_0, 48},     {GDK_KEY_a, 65},
        {GDK_KEY_Z, 90},        {GDK_KEY_space, 463},     {GDK_KEY_F11, 417},  {GDK_KEY_AudioStop, 413},
        {GDK_KEY_F5, 457},      {GDK_KEY_F7, 459},        {GDK_KEY_plus, 427}, {GDK_KEY_Page_Down, 34},
    };
    for (const auto& [keyval, keyCode] : expected)
        EXPECT_EQ(keyCodeOf(keyval), keyCode) << "keyval " << keyval;
    for (const std::uint32_t keyval :
         {GDK_KEY_Tab, GDK_KEY_Shift_L, GDK_KEY_F12, GDK_KEY_comma, GDK_KEY_adiaeresis})
        EXPECT_EQ(keyCodeOf(keyval), std::nullopt) << "keyval " << keyval;
}

TEST(AKeyCode, BelongsToOneGroup) {
    const std::vector<std::pair<KeyGroup, std::vector<std::uint32_t>>> groups = {
        {kGroupRed, {403}},
        {kGroupGreen, {404}},
        {kGroupYellow, {405}},
        {kGroupBlue, {406}},
        {kGroupNavigation, {37, 38, 39, 40, 13, 461}},
        {kGroupVcr, {19, 412, 413, 415, 416, 417, 424, 425, 463}},
        {kGroupScroll, {33, 34}},
        {kGroupInfo, {457}},
        {kGroupNumeric, {48, 53, 57}},
        {kGroupAlpha, {65, 77, 90}},
        // Their neighbours in the tables of codes, and what no table knows.
        {kGroupOther, {47, 58, 64, 91, 96, 402, 407, 411, 414, 418, 458, 462, 0, 0xFFFFFFFF}},
    };
    std::uint32_t all = 0;
    for (const auto& [group, keyCodes] : groups) {
        all |= group;
        for (const std::uint32_t keyCode : keyCodes)
            EXPECT_EQ(keyGroupOf(keyCode), group) << "key code " << keyCode;
    }
    EXPECT_EQ(all, kAllKeyGroups);
}

TEST(AKeyCode, ComesAsARealKeyWhereTheKeyboardHasOneWithThisVeryCode) {
    // The space bar stands for another key, yet is a key by itself when the receiver sends it.
    EXPECT_EQ(nativeKeyvalOf(32), std::uint32_t{GDK_KEY_space});
    EXPECT_EQ(nativeKeyvalOf(65), std::uint32_t{GDK_KEY_a});
    EXPECT_EQ(nativeKeyvalOf(13), std::uint32_t{GDK_KEY_Return});
    for (const std::uint32_t keyCode : {403U, 415U, 457U, 461U, 463U})
        EXPECT_EQ(nativeKeyvalOf(keyCode), std::nullopt) << "key code " << keyCode;
    // No two codes may be sent as the same key.
    std::set<std::uint32_t> keyvals;
    for (std::uint32_t keyCode = 0; keyCode < 512; ++keyCode) {
        if (const auto keyval = nativeKeyvalOf(keyCode)) {
            EXPECT_TRUE(keyvals.insert(*keyval).second) << "key code " << keyCode;
        }
    }
}

}  // namespace
