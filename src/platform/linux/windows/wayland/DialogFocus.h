#pragma once

#include <QObject>
#include <QPointer>
#include <qpa/qwindowsysteminterface_p.h>

class QWindow;

namespace amberquill::desktop {

// Gives the keyboard focus to the open dialog. Some compositors leave the focus with a full-screen window
// even if the window's own dialog is above it, and Qt drops key events for a window that a dialog blocks.
// Constructed after the application object; main thread only.
class DialogFocus final : public QObject, public QWindowSystemEventHandler {
    Q_OBJECT

public:
    DialogFocus();
    ~DialogFocus() override;

    DialogFocus(const DialogFocus&) = delete;
    DialogFocus& operator=(const DialogFocus&) = delete;

    bool sendEvent(QWindowSystemInterfacePrivate::WindowSystemEvent* event) override;

private:
    void follow();

    QPointer<QWindow> given_; // the compositor gave the focus to this window
};

} // namespace amberquill::desktop
