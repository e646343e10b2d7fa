#include "window/DialogPresentation.h"

#include <QDialog>
#include <QWindow>

namespace amberquill {

void presentDialog(QDialog& dialog, QWindow* launcher, DialogFocus focus) {
    const bool takesFocus = focus != DialogFocus::NotTaken;
    dialog.setAttribute(Qt::WA_DeleteOnClose);
    dialog.setAttribute(Qt::WA_ShowWithoutActivating, !takesFocus);
    dialog.setWindowModality(focus == DialogFocus::Modal ? Qt::ApplicationModal : Qt::NonModal);
    dialog.setWindowFlag(Qt::WindowStaysOnTopHint);
    dialog.winId(); // makes the window, which needs a parent before it is shown
    if (launcher != nullptr) {
        dialog.windowHandle()->setTransientParent(launcher);
    }
    dialog.show();
    if (takesFocus) {
        bringDialogToFront(dialog);
    } else {
        dialog.raise();
    }
}

void bringDialogToFront(QDialog& dialog) {
    dialog.raise();
    dialog.activateWindow();
}

} // namespace amberquill
