#include "window/DialogPresentation.h"

#include <QDialog>
#include <QWindow>

namespace amberquill {

void presentDialog(QDialog& dialog, QWindow* launcher, DialogAttention attention) {
    const bool waits = attention == DialogAttention::Awaited;
    dialog.setAttribute(Qt::WA_DeleteOnClose);
    dialog.setAttribute(Qt::WA_ShowWithoutActivating, waits);
    dialog.setWindowModality(attention == DialogAttention::Demanded ? Qt::ApplicationModal : Qt::NonModal);
    dialog.setWindowFlag(Qt::WindowStaysOnTopHint);
    dialog.winId(); // makes the window, whose parent can be told now
    if (launcher != nullptr) {
        dialog.windowHandle()->setTransientParent(launcher);
    }
    dialog.show();
    if (waits) {
        dialog.raise();
    } else {
        bringDialogToFront(dialog);
    }
}

void bringDialogToFront(QDialog& dialog) {
    dialog.raise();
    dialog.activateWindow();
}

} // namespace amberquill
