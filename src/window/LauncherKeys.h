#pragma once

#include <QString>
#include <QtCore/qnamespace.h>

namespace amberquill {

// What the launcher does with a key before any field gets it.
enum class KeyAction {
    PassOn, // nothing: the key goes on to the menus and the focused field
    Ignore, // nothing, and the key goes no further
    LaunchFirstResult,
    EndEditing,
    CloseFolder, // Escape closes one layer at a time
    ClearSearch,
    Hide,
    PreviousPage,
    NextPage,
    ShowMenu,
};

// The launcher's state, as far as keys depend on it.
struct KeyState {
    bool folderIsOpen = false;
    bool hasSearchText = false; // also if it is only white space
    bool isSearching = false;   // it has more than white space
    bool isDragging = false;
    bool isComposing = false; // an input method holds text that is not in the field yet
};

// Qt's key code and modifiers. With Control held every key goes on to the menus.
[[nodiscard]] KeyAction keyAction(int key, Qt::KeyboardModifiers modifiers, const KeyState& state);

// Whether the key types this text: it is a printable character, not a key combination.
[[nodiscard]] bool isTyping(const QString& text, Qt::KeyboardModifiers modifiers);

} // namespace amberquill
