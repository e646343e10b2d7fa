#include "shell/FocusKeeper.h"

#include "platform/MainQueue.h"
#include "platform/WindowSystem.h"

#include <QEvent>
#include <QGuiApplication>
#include <QWindow>
#include <utility>

namespace amberquill {

namespace {

constexpr double pause = 0.1; // seconds between two looks
constexpr int mostLooks = 20;

} // namespace

FocusKeeper::FocusKeeper(WindowSystem& windows, MainQueue& queue, Actions actions)
    : windows_(windows)
    , queue_(queue)
    , actions_(std::move(actions)) {
    qGuiApp->installEventFilter(this);
}

bool FocusKeeper::expectsFocus() const {
    return looksLeft_ > 0 && windows_.nobodyHasFocus() && actions_.heir() != nullptr;
}

bool FocusKeeper::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::Hide && watched->isWindowType()) {
        const auto& window = static_cast<const QWindow&>(*watched);
        if (window.type() != Qt::Popup && window.type() != Qt::ToolTip) {
            if (std::exchange(looksLeft_, mostLooks) == 0) {
                lookLater();
            }
        }
    }
    return QObject::eventFilter(watched, event);
}

void FocusKeeper::lookLater() {
    nextLook_ = queue_.postAfter(pause, [this] { look(); });
}

void FocusKeeper::look() {
    --looksLeft_;
    QWindow* const heir = actions_.heir();
    if (looksLeft_ > 0 && heir != nullptr && windows_.nobodyHasFocus()) {
        heir->requestActivate();
        lookLater();
        return;
    }
    looksLeft_ = 0;
    actions_.ended();
}

} // namespace amberquill
