#include "platform/linux/windows/wayland/DialogFocus.h"

#include <QGuiApplication>
#include <QWindow>
#include <private/qguiapplication_p.h>

namespace amberquill::desktop {
namespace {

using SystemEvents = QWindowSystemInterfacePrivate;

// The dialog that blocks the window, or the window itself.
QWindow* focusTarget(QWindow* window) {
    QWindow* dialog = nullptr;
    const bool isBlocked =
        window != nullptr && QGuiApplicationPrivate::instance()->isWindowBlocked(window, &dialog);
    return isBlocked && dialog != nullptr ? dialog : window;
}

} // namespace

DialogFocus::DialogFocus() {
    SystemEvents::installWindowSystemEventHandler(this);
}

DialogFocus::~DialogFocus() {
    SystemEvents::removeWindowSystemEventhandler(this);
}

bool DialogFocus::sendEvent(SystemEvents::WindowSystemEvent* event) {
    if (event->type == SystemEvents::ActivatedWindow) {
        auto& activation = static_cast<SystemEvents::ActivatedWindowEvent&>(*event);
        given_ = activation.activated;
        activation.activated = focusTarget(given_);
    } else if (event->type == SystemEvents::Key) {
        auto& key = static_cast<SystemEvents::KeyEvent&>(*event);
        key.window = focusTarget(key.window);
    }
    const bool taken = QWindowSystemEventHandler::sendEvent(event);
    if (event->type == SystemEvents::Expose) {
        // A dialog may have been opened or closed. Queued: that may still be under way.
        QMetaObject::invokeMethod(this, &DialogFocus::follow, Qt::QueuedConnection);
    }
    return taken;
}

void DialogFocus::follow() {
    QWindow* wanted = focusTarget(given_);
    if (wanted != QGuiApplication::focusWindow() && given_ != nullptr) {
        SystemEvents::ActivatedWindowEvent activation(wanted, Qt::OtherFocusReason);
        QWindowSystemEventHandler::sendEvent(&activation);
    }
}

} // namespace amberquill::desktop
