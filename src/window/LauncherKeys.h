#pragma once

#include <QString>
#include <QtCore/qnamespace.h>

namespace amberquill {

// What the launcher as a whole does with a key, before any field sees it.
enum class KeyAction {
    PassOn,  // nothing: the key goes on to the menus and the focused field
    Swallow, // nothing, and nobody else sees it either
    LaunchFirstResult,
    EndEditing,
    CloseFolder, // Escape peels back one layer at a time
    ClearSearch,
    Hide,
    PreviousPage,
    NextPage,
    ShowMenu,
};

// What the answer depends on.
struct KeyState {
    bool folderIsOpen = false;
    bool hasSearchText = false; // white space alone is a text too
    bool isSearching = false;   // and more than white space
    bool isDragging = false;
    bool isComposing = false; // an input method holds text that is not in the field yet
};

// Qt's key code and modifiers. With Control held every key goes on to the menus.
[[nodiscard]] KeyAction keyAction(int key, Qt::KeyboardModifiers modifiers, const KeyState& state);

// Whether the key writes this text into a field: a letter, a figure, a sign, and no combination of keys.
[[nodiscard]] bool isTyping(const QString& text, Qt::KeyboardModifiers modifiers);

} // namespace amberquill
