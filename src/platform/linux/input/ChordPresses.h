#pragma once

#include <cstdint>
#include <optional>

namespace amberquill::desktop {

// Tells a chord's presses from the repetitions of a key that is held. X servers report these as presses
// without releases in between, or as a release and a press at the same time. Times are the server's, in
// milliseconds; they wrap around.
class ChordPresses {
public:
    // A key that has not repeated for so long was released unseen.
    static constexpr std::uint32_t longestSilence = 2'000;

    // Whether this is a press by a person.
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
