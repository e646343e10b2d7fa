#pragma once

#include "platform/Keyboard.h"

#include <array>
#include <cstdint>
#include <string_view>

namespace amberquill::desktop {

// A keyboard with X11's keycodes, which Wayland keymaps use, too.
class XkbKeyboard final : public Keyboard {
public:
    [[nodiscard]] char americanLetter(std::uint32_t scanCode) const override {
        for (const Row& row : rows) {
            if (scanCode >= row.firstCode && scanCode - row.firstCode < row.letters.size()) {
                return row.letters[scanCode - row.firstCode];
            }
        }
        return 0;
    }

private:
    // Neighbouring keys with consecutive keycodes.
    struct Row {
        std::uint32_t firstCode;
        std::string_view letters;
    };
    static constexpr std::array rows = {Row{24, "QWERTYUIOP"}, Row{38, "ASDFGHJKL"}, Row{52, "ZXCVBNM"}};
};

} // namespace amberquill::desktop
