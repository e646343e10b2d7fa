#include "window/LauncherKeys.h"

namespace amberquill {
namespace {

// The modifiers, beside Control, that make a key a combination.
constexpr Qt::KeyboardModifiers otherModifiers = Qt::AltModifier | Qt::MetaModifier;

KeyAction returnAction(const KeyState& state) {
    if (state.folderIsOpen) {
        return KeyAction::EndEditing;
    }
    return state.isSearching ? KeyAction::LaunchFirstResult : KeyAction::Ignore;
}

KeyAction escapeAction(const KeyState& state) {
    if (state.folderIsOpen) {
        return KeyAction::CloseFolder;
    }
    return state.hasSearchText ? KeyAction::ClearSearch : KeyAction::Hide;
}

KeyAction arrowAction(const KeyState& state, KeyAction turn) {
    // In a text the arrows move the caret; while dragging, pages turn at the edges only.
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
