#pragma once

#include <cstdint>

namespace amberquill {

// Where the keys are on the user's keyboard. Main thread only.
class Keyboard {
public:
    Keyboard() = default;
    Keyboard(const Keyboard&) = delete;
    Keyboard& operator=(const Keyboard&) = delete;
    virtual ~Keyboard() = default;

    // The letter, from 'A' to 'Z', that an American keyboard has on this key, whatever layout is set; 0:
    // none. Keys are told apart by QKeyEvent::nativeScanCode().
    [[nodiscard]] virtual char americanLetter(std::uint32_t scanCode) const = 0;
};

} // namespace amberquill
