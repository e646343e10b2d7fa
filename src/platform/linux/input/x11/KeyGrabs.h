#pragma once

#include "platform/GlobalShortcut.h"

#include <array>
#include <cstdint>
#include <optional>
#include <vector>
#include <xcb/xcb.h>

namespace amberquill::desktop {

// An X server's keyboard mapping.
struct KeyboardMapping {
    std::uint8_t firstKeyCode = 8;
    std::size_t symbolsPerKey = 0;
    std::vector<xcb_keysym_t> symbols; // of all keys, one after the other
    std::array<std::vector<xcb_keycode_t>, 8>
        modifiers; // the keys of each modifier: Shift, Lock, Control, Mod1, …
};

// The key grabs that make a chord arrive with any combination of Caps Lock and Num Lock.
struct KeyGrabs {
    std::vector<xcb_keycode_t> keyCodes; // grab each of them; empty: the keyboard has no such key
    std::uint16_t modifiers = 0;         // X's mask of the chord's modifiers
    std::vector<std::uint16_t> locks;    // every combination of lock modifiers, including no lock

    bool operator==(const KeyGrabs&) const = default;
};

// The grabs for a chord of a letter, a digit or the space bar.
[[nodiscard]] KeyGrabs grabsOf(const KeyChord& chord, const KeyboardMapping& mapping);

// Whether a key event with this code and modifier state is the chord.
[[nodiscard]] bool matches(const KeyGrabs& grabs, xcb_keycode_t keyCode, std::uint16_t state);

// Tells a chord's presses from the repetitions of a key that is held. X servers report these as presses
// without releases in between, or as a release and a press at the same time. Times are the server's, in
// milliseconds; they wrap around.
class ChordPresses {
public:
    // In milliseconds: a held key without a repetition for this time was released unseen.
    static constexpr std::uint32_t longestSilence = 2'000;

    // Whether this is a real press, not a repetition.
    bool press(std::uint8_t keyCode, std::uint32_t time);

    // Whether the key was down as part of the chord.
    bool release(std::uint8_t keyCode, std::uint32_t time);

private:
    struct Key {
        std::uint8_t code;
        std::uint32_t time; // of its latest event
        bool isDown;
    };

    std::optional<Key> key_; // the one that was pressed last
};

} // namespace amberquill::desktop
