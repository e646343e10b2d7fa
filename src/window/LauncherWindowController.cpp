#include "window/LauncherWindowController.h"

#include "motion/Animation.h"
#include "motion/Animations.h"
#include "platform/ActivationTokens.h"
#include "platform/ApplicationOpener.h"
#include "platform/WindowSystem.h"
#include "window/Backdrops.h"

#include <QApplication>
#include <QKeyEvent>
#include <QLoggingCategory>
#include <QScreen>
#include <QWheelEvent>
#include <QWidget>
#include <algorithm>

namespace amberquill {

namespace {

Q_LOGGING_CATEGORY(windowLog, "amberquill.window", QtCriticalMsg)

// Seconds after the window has gone until other programs and the compositor have redrawn the desktop.
constexpr double desktopRedrawn = 0.3;

void closeMenus() {
    while (QWidget* menu = QApplication::activePopupWidget()) {
        if (!menu->close()) {
            return;
        }
    }
}

} // namespace

LauncherWindowController::LauncherWindowController(const Services& services)
    : services_(services)
    , window_(services.model, services.queue, services.windows.blendsWindows())
    , scroll_(services.queue, services.scrollDevices,
              [&model = services.model](const ScrollEvent& event) { model.handleScroll(event); }) {
    fade_.setIsFade(true);
    fade_.setTarget(0);
    window_.setAlpha(0);
    connect(&fade_, &Animated::valueChanged, this, [this] { window_.setAlpha(fade_.value()); });
    window_.installEventFilter(this);
}

LauncherWindowController::~LauncherWindowController() = default;

void LauncherWindowController::show() {
    if (isLeaving_) {
        return;
    }
    QScreen* screen = services_.windows.screenUnderPointer();
    renewBackdrop(screen);
    if (screen == nullptr) {
        screen = QGuiApplication::primaryScreen();
    }
    if (screen != nullptr && !window_.isVisible()) {
        // A visible window is moved by present(), which compares the screens.
        window_.setScreen(screen);
        window_.setGeometry(screen->geometry());
    }
    const bool wasShown = std::exchange(isShown_, true);
    if (!wasShown) {
        showing_.reset();
        if (opening_) {
            qCDebug(windowLog) << "shown again before it was opened:" << opening_->path;
            opening_.reset();
        }
        services_.model.willShow();
        fade_.jumpTo(0);
    }
    window_.setTakesInput(true);
    services_.windows.present(window_, screen);
    services_.queue.then(context_, [this] { services_.model.focusSearch(); });
    if (wasShown) {
        return;
    }
    withAnimation(motion::windowFadeIn, [this] { fade_.setTarget(1); });
    withAnimation(motion::show, [this] { services_.model.setPresented(true); });
}

// Called before the window covers the screen. A window that is still fading out keeps its backdrop.
void LauncherWindowController::renewBackdrop(const QScreen* screen) {
    const bool goesElsewhere = screen != nullptr && screen != window_.screen();
    if (!goesElsewhere && window_.isVisible()) {
        return;
    }
    if (!goesElsewhere && isJustWithdrawn() && canReuseBackdrop()) {
        qCDebug(windowLog, "the earlier backdrop is shown again");
        window_.setBackdrop(backdrop_);
        return;
    }
    backdrop_ = std::exchange(services_.firstBackdrop, {});
    if (!backdrop_) {
        backdrop_ = makeBackdrop(services_.screens, services_.windows, screen, services_.model.background(),
                                 window_.requestedFormat().hasAlpha());
    }
    window_.setBackdrop(backdrop_);
}

// False also if the window system has begun or ceased to blur since.
bool LauncherWindowController::canReuseBackdrop() const {
    return backdrop_ && backdrop_->isTranslucent() ==
                            (window_.requestedFormat().hasAlpha() && services_.windows.blursBehindWindows());
}

// Whether other windows may not have been redrawn yet, or a compositor may still be fading the window out.
bool LauncherWindowController::isJustWithdrawn() const {
    return withdrawnAt_ >= 0 && services_.queue.now() - withdrawnAt_ < desktopRedrawn;
}

void LauncherWindowController::hide(const std::optional<QString>& thenOpen) {
    if (!isShown_) {
        if (thenOpen) {
            open(*thenOpen, {});
        }
        return;
    }
    isShown_ = false;
    scroll_.forget();
    if (thenOpen) {
        // While the window still has the focus: programs in the background get no token.
        requestToken(*thenOpen);
    }
    services_.model.willHide();
    window_.endEditing();
    window_.setTakesInput(false);
    closeMenus();
    withAnimation(motion::hide, [this] { services_.model.setPresented(false); });
    withAnimation(motion::windowFadeOut, [this] { fade_.setTarget(0); });
    fadeEnd_ = services_.queue.postAfter(motion::windowFadeOut.seconds, showing_.bind([this] {
        services_.windows.withdraw(window_, showing_.bind([this] { withdrawn(); }));
    }));
}

void LauncherWindowController::leave(std::function<void()> then) {
    isLeaving_ = true;
    hide(std::nullopt);
    fadeEnd_.cancel();
    services_.windows.withdraw(window_, context_.bind([this, then = std::move(then)] {
        then();
        isLeaving_ = false; // a dialog may have refused the end
    }));
}

void LauncherWindowController::showMenu() {
    popUpMenu(std::nullopt);
}

void LauncherWindowController::popUpMenu(const std::optional<QPoint>& place) {
    if (popUpMenu_) {
        popUpMenu_(window_, place);
    }
}

bool LauncherWindowController::hasOtherWindow() const {
    if (!auxiliaryFlows().isEmpty()) {
        return true;
    }
    const QWindowList windows = QGuiApplication::topLevelWindows();
    return std::any_of(windows.begin(), windows.end(), [this](const QWindow* window) {
        // Menus and tool tips do not count: they close by themselves.
        const bool isTransient = window->type() == Qt::Popup || window->type() == Qt::ToolTip;
        return window != &window_ && window->isVisible() && !isTransient &&
               !window->flags().testFlag(Qt::WindowDoesNotAcceptFocus);
    });
}

QSet<QString>& LauncherWindowController::auxiliaryFlows() {
    static QSet<QString> open;
    return open;
}

void LauncherWindowController::requestToken(const QString& path) {
    opening_ = Opening{path, std::nullopt, false};
    services_.tokens.request(window_, path, showing_.bind([this](const QString& token) {
        if (opening_) {
            opening_->token = token;
            openWhenReady();
        }
    }));
}

void LauncherWindowController::withdrawn() {
    withdrawnAt_ = services_.queue.now();
    window_.forgetBackdrop();
    services_.queue.thenAfter(showing_, desktopRedrawn, [this] {
        backdrop_.reset();
        qCDebug(windowLog, "the earlier backdrop is dropped");
    });
    if (opening_) {
        opening_->fadeIsOver = true;
        openWhenReady();
    }
}

void LauncherWindowController::openWhenReady() {
    if (opening_->fadeIsOver && opening_->token) {
        const Opening ready = *std::exchange(opening_, std::nullopt);
        open(ready.path, *ready.token);
    }
}

void LauncherWindowController::open(const QString& path, const QString& token) {
    services_.opener.open(path, token, context_.bind([this, path](bool started) {
        if (!started) {
            qCDebug(windowLog) << "could not open" << path;
            services_.windows.beep();
        }
    }));
}

bool LauncherWindowController::eventFilter(QObject* watched, QEvent* event) {
    if (watched == &window_ && event->type() == QEvent::Hide) {
        // Also if the window system hid it: the pointer's release will not come.
        services_.model.willHide();
    }
    if (watched == &window_ && event->type() == QEvent::Close) {
        // Hidden instead of closed. The event stays accepted: quitting the program closes its windows first.
        hide(std::nullopt);
        return true;
    }
    if (watched != &window_) {
        return QObject::eventFilter(watched, event);
    }
    const bool isKey = event->type() == QEvent::KeyPress || event->type() == QEvent::KeyRelease;
    if (!isShown_) {
        return isKey || QObject::eventFilter(watched, event);
    }
    if (QWidget* menu = isKey ? QApplication::activePopupWidget() : nullptr) {
        // The window system has not directed the keys to the menu yet.
        QCoreApplication::sendEvent(menu, event);
        return true;
    }
    if (event->type() == QEvent::KeyPress) {
        const bool consumed = handleKey(*static_cast<QKeyEvent*>(event));
        event->setAccepted(consumed);
        return consumed;
    }
    if (event->type() == QEvent::Wheel) {
        scroll_.handle(*static_cast<QWheelEvent*>(event));
        return true;
    }
    return QObject::eventFilter(watched, event);
}

bool LauncherWindowController::handleKey(const QKeyEvent& event) {
    const LauncherModel& model = services_.model;
    const KeyState state{
        .folderIsOpen = model.folderIsOpen(),
        .hasSearchText = !model.searchText().isEmpty(),
        .isSearching = model.isSearching(),
        .isDragging = model.drag().has_value(),
        .isComposing = window_.isComposing(),
    };
    if (perform(keyAction(event.key(), event.modifiers(), state))) {
        return true;
    }
    if (keyEquivalents_ && keyEquivalents_(event)) {
        return true;
    }
    focusFieldFor(event);
    return false;
}

// False: the key is to be passed on.
bool LauncherWindowController::perform(KeyAction action) {
    LauncherModel& model = services_.model;
    switch (action) {
    case KeyAction::PassOn:
        return false;
    case KeyAction::Ignore:
        break;
    case KeyAction::LaunchFirstResult:
        model.launchFirstResult();
        break;
    case KeyAction::EndEditing:
        endEditing();
        break;
    case KeyAction::CloseFolder:
        model.closeFolder();
        break;
    case KeyAction::ClearSearch:
        model.setSearchText({});
        break;
    case KeyAction::Hide:
        hide(std::nullopt);
        break;
    case KeyAction::PreviousPage:
        model.turnToPage(model.page() - 1);
        break;
    case KeyAction::NextPage:
        model.turnToPage(model.page() + 1);
        break;
    case KeyAction::ShowMenu:
        popUpMenu(window_.menuPlace());
        break;
    }
    return true;
}

// Typing while no field has the focus searches: the search field takes the focus before the key is delivered.
void LauncherWindowController::focusFieldFor(const QKeyEvent& event) {
    if (!window_.isEditing() && isTyping(event.text(), event.modifiers())) {
        services_.model.focusSearch();
    }
}

} // namespace amberquill
