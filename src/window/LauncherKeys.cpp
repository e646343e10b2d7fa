#include "window/LauncherKeys.h"

namespace amberquill {

KeyAction keyAction(int key, Qt::KeyboardModifiers modifiers, const KeyState& state) {
    if (modifiers.testFlag(Qt::ControlModifier)) {
        return KeyAction::PassOn;
    }
    switch (key) {
    case Qt::Key_Escape:
        return state.folderIsOpen ? KeyAction::CloseFolder : KeyAction::Hide;
    case Qt::Key_Left:
    case Qt::Key_Right:
        if (state.hasSearchText || state.folderIsOpen) {
            return KeyAction::PassOn;
        }
        return key == Qt::Key_Left ? KeyAction::PreviousPage : KeyAction::NextPage;
    default:
        return KeyAction::PassOn;
    }
}

} // namespace amberquill
