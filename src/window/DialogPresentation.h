#pragma once

class QDialog;
class QWindow;

namespace amberquill {

enum class DialogAttention {
    Demanded, // it is answered before any other window of the program
    Given,    // it has the focus at first
    Awaited,  // it stands there until somebody turns to it
};

// Shows a dialog above all other windows; above the launcher too, where that is on the screen (null: it is
// not). The dialog deletes itself when it is closed and outlives the launcher's window.
void presentDialog(QDialog& dialog, QWindow* launcher, DialogAttention attention);

// Above the others again, and with the focus.
void bringDialogToFront(QDialog& dialog);

} // namespace amberquill
