#include "window/LauncherKeys.h"

namespace amberquill {
namespace {

// Those that make a combination of a key, beside Control.
constexpr Qt::KeyboardModifiers otherModifiers = Qt::AltModifier | Qt::MetaModifier;

KeyAction returnAction(const KeyState& state) {
    if (state.folderIsOpen) {
        return KeyAction::EndEditing;
    }
    return state.isSearching ? KeyAction::LaunchFirstResult : KeyAction::Swallow;
}

KeyAction escapeAction(const KeyState& state) {
    if (state.folderIsOpen) {
        return KeyAction::CloseFolder;
    }
    return state.hasSearchText ? KeyAction::ClearSearch : KeyAction::Hide;
}

KeyAction arrowAction(const KeyState& state, KeyAction turn) {
    // The caret moves in the text, and a page under a dragged icon turns at the edges only.
    const bool passesOn = state.hasSearchText || state.folderIsOpen || state.isDragging;
    return passesOn ? KeyAction::PassOn : turn;
}

} // namespace

KeyAction keyAction(int key, Qt::KeyboardModifiers modifiers, const KeyState& state) {
    if (modifiers.testFlag(Qt::ControlModifier) || state.isComposing) {
        return KeyAction::PassOn;
    }
    switch (key) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
        return returnAction(state);
    case Qt::Key_Escape:
        return escapeAction(state);
    case Qt::Key_Left:
        return arrowAction(state, KeyAction::PreviousPage);
    case Qt::Key_Right:
        return arrowAction(state, KeyAction::NextPage);
    case Qt::Key_F10:
    case Qt::Key_Menu:
        return (modifiers & otherModifiers) != Qt::NoModifier ? KeyAction::PassOn : KeyAction::ShowMenu;
    default:
        return KeyAction::PassOn;
    }
}

bool isTyping(const QString& text, Qt::KeyboardModifiers modifiers) {
    const bool isCombination = (modifiers & (otherModifiers | Qt::ControlModifier)) != Qt::NoModifier;
    return !isCombination && !text.isEmpty() && text.front().category() != QChar::Other_Control;
}

} // namespace amberquill
