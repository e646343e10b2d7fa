#pragma once

#include <QtCore/qnamespace.h>

namespace amberquill {

// What the launcher as a whole does with a key, before any field sees it.
enum class KeyAction {
    PassOn,      // nothing: the key goes on to the focused field and the menus
    CloseFolder, // Escape peels back one layer at a time
    Hide,
    PreviousPage,
    NextPage,
};

struct KeyState {
    bool folderIsOpen = false;
    bool hasSearchText = false;
};

// Qt's key code and modifiers. With Control held every key goes on to the menus.
KeyAction keyAction(int key, Qt::KeyboardModifiers modifiers, const KeyState& state);

} // namespace amberquill
