#include "shell/FocusController.h"

#include "platform/GlobalShortcut.h"
#include "platform/WindowSystem.h"
#include "shell/ShellLog.h"
#include "window/LauncherWindowController.h"

#include <QApplication>
#include <QEvent>
#include <QWidget>
#include <QWindow>
#include <algorithm>

namespace amberquill {

FocusController::FocusController(WindowSystem& windows, MainQueue& queue)
    : windows_(windows)
    , queue_(queue) {}

void FocusController::launch(LauncherWindowController& launcher) {
    launcher_ = &launcher;
    connect(qGuiApp, &QGuiApplication::applicationStateChanged, this, [this](Qt::ApplicationState state) {
        raise(state == Qt::ApplicationActive ? FocusPolicy::Event::Activated
                                             : FocusPolicy::Event::Deactivated);
    });
    connect(qGuiApp, &QGuiApplication::focusWindowChanged, this, [this](const QWindow* focused) {
        if (focused != nullptr) {
            raise(FocusPolicy::Event::WindowFocused);
        }
    });
    qGuiApp->installEventFilter(this);
    raise(FocusPolicy::Event::Launched);
}

void FocusController::show(const QString& token) {
    if (!token.isEmpty()) {
        windows_.setActivationToken(token);
    }
    raise(FocusPolicy::Event::ShowRequested);
}

void FocusController::hide() {
    raise(FocusPolicy::Event::HideRequested);
}

void FocusController::toggle(const PressOrigin& origin) {
    const auto actions = decide(FocusPolicy::Event::ToggleRequested);
    if (!actions.contains(FocusPolicy::Action::Hide)) {
        if (origin.time) {
            windows_.setUserTime(*origin.time);
        }
        if (!origin.token.isEmpty()) {
            windows_.setActivationToken(origin.token);
        }
    }
    perform(actions);
}

bool FocusController::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::Hide && watched->isWindowType()) {
        const auto& window = static_cast<const QWindow&>(*watched);
        if (window.type() != Qt::Popup && window.type() != Qt::ToolTip) {
            raise(FocusPolicy::Event::WindowClosed);
        }
    }
    return QObject::eventFilter(watched, event);
}

QList<FocusPolicy::Action> FocusController::decide(FocusPolicy::Event event) {
    QList<FocusPolicy::Action> actions = policy_.handle(event, facts());
    qCDebug(shellLog).verbosity(QDebug::MinimumVerbosity) << "focus:" << event << actions;
    return actions;
}

void FocusController::perform(const QList<FocusPolicy::Action>& actions) {
    for (const FocusPolicy::Action action : actions) {
        switch (action) {
        case FocusPolicy::Action::Show:
            launcher_->show();
            break;
        case FocusPolicy::Action::Hide:
            launcher_->hide(std::nullopt);
            break;
        case FocusPolicy::Action::RequestFocus:
            candidate()->requestActivate();
            break;
        case FocusPolicy::Action::CheckLater:
            nextCheck_ =
                queue_.postAfter(FocusPolicy::checkInterval, [this] { raise(FocusPolicy::Event::CheckDue); });
            break;
        }
    }
}

FocusPolicy::Facts FocusController::facts() const {
    if (launcher_ == nullptr) {
        return {};
    }
    return {
        .isShown = launcher_->isShown(),
        .isOnScreen = launcher_->window().isVisible(),
        .hasOtherWindow = launcher_->hasOtherWindow(),
        .hasCandidate = candidate() != nullptr,
        .nobodyHasFocus = policy_.isChecking() && windows_.nobodyHasFocus(),
    };
}

QWindow* FocusController::candidate() const {
    if (const QWidget* dialog = QApplication::activeModalWidget()) {
        return dialog->windowHandle();
    }
    if (launcher_->isShown()) {
        return &launcher_->window();
    }
    // A dialog that is not modal, such as the about panel.
    const QWindowList windows = QGuiApplication::topLevelWindows();
    const auto dialog = std::find_if(windows.begin(), windows.end(), [](const QWindow* window) {
        return window->isVisible() && window->type() == Qt::Dialog;
    });
    return dialog != windows.end() ? *dialog : nullptr;
}

} // namespace amberquill
