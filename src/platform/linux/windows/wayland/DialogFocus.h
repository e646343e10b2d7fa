#pragma once

#include <QObject>
#include <QPointer>
#include <qpa/qwindowsysteminterface_p.h>

class QWindow;

namespace amberquill::desktop {

// Gives the focus and the keys to the dialog that the user is to answer. Some compositors leave them with a
// full-screen window though a dialog of its own stands above it, and Qt drops what comes for a window that a
// dialog blocks. Made after the application object; main thread only.
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

    QPointer<QWindow> given_; // what the compositor gave the focus to
};

} // namespace amberquill::desktop
