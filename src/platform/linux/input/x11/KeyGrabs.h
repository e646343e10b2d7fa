#pragma once

#include "platform/GlobalShortcut.h"

#include <array>
#include <cstdint>
#include <vector>
#include <xcb/xcb.h>

namespace amberquill::desktop {

// What an X server says of its keyboard.
struct KeyboardMapping {
    std::uint8_t firstKeyCode = 8;
    std::size_t symbolsPerKey = 0;
    std::vector<xcb_keysym_t> symbols; // of all keys, one after the other
    std::array<std::vector<xcb_keycode_t>, 8>
        modifiers; // the keys of each modifier: Shift, Lock, Control, Mod1...
};

// What is to be asked of an X server so that a chord arrives whatever locks are on.
struct KeyGrabs {
    std::vector<xcb_keycode_t> keyCodes; // each of them; none: the keyboard has no such key
    std::uint16_t modifiers = 0;         // X's mask of the chord's modifiers
    std::vector<std::uint16_t> locks;    // every combination of lock modifiers, none included

    bool operator==(const KeyGrabs&) const = default;
};

// A chord of a letter, a digit or the space bar.
[[nodiscard]] KeyGrabs grabsOf(const KeyChord& chord, const KeyboardMapping& mapping);

// Whether a key event with this code and modifier state is the chord.
[[nodiscard]] bool matches(const KeyGrabs& grabs, xcb_keycode_t keyCode, std::uint16_t state);

} // namespace amberquill::desktop
