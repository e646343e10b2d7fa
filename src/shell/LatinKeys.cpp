#include "shell/LatinKeys.h"

#include <QChar>
#include <QKeyEvent>
#include <array>
#include <string_view>

namespace amberquill {

namespace {

// The letters of a row of keys, the first of which has this code of X11 and of Wayland's keymaps.
struct Row {
    quint32 first;
    std::string_view letters;
};
constexpr std::array rows = {Row{24, "QWERTYUIOP"}, Row{38, "ASDFGHJKL"}, Row{52, "ZXCVBNM"}};

bool isForeignLetter(int key) {
    constexpr int firstWithoutText = Qt::Key_Escape;
    if (key <= 0 || key >= firstWithoutText) {
        return false;
    }
    const auto letter = static_cast<char32_t>(key);
    return QChar::isLetter(letter) && QChar::script(letter) != QChar::Script_Latin;
}

} // namespace

int combinationKey(const QKeyEvent& event) {
    if (!isForeignLetter(event.key())) {
        return event.key();
    }
    const quint32 code = event.nativeScanCode();
    for (const Row& row : rows) {
        if (code >= row.first && code - row.first < row.letters.size()) {
            return row.letters[code - row.first];
        }
    }
    return event.key();
}

} // namespace amberquill
