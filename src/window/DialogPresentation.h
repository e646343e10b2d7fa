#pragma once

class QDialog;
class QWindow;

namespace amberquill {

enum class DialogFocus {
    Modal,    // takes the focus, and the program's other windows take no input until it is closed
    Taken,    // takes the focus when it is shown
    NotTaken, // is shown without taking the focus
};

// Shows a dialog above all other windows, also above the launcher's (null: it is not on the screen). The
// dialog deletes itself when it is closed; closing the launcher's window does not close it.
void presentDialog(QDialog& dialog, QWindow* launcher, DialogFocus focus);

// Raises the dialog above the other windows and gives it the focus.
void bringDialogToFront(QDialog& dialog);

} // namespace amberquill
