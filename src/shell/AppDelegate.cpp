#include "shell/AppDelegate.h"

#include "data/IconCache.h"
#include "motion/Timeline.h"
#include "platform/ActivationTokens.h"
#include "platform/ApplicationOpener.h"
#include "platform/MainBundle.h"
#include "platform/MainQueue.h"
#include "platform/MotionPreference.h"
#include "platform/Preferences.h"
#include "platform/WindowSystem.h"
#include "views/TileRows.h"
#include "window/ApplicationIcon.h"
#include "window/SettingsItems.h"

#include <QApplication>
#include <QPointer>
#include <QScreen>
#include <QStandardPaths>
#include <QWidget>
#include <algorithm>
#include <cmath>
#include <utility>

namespace amberquill {

namespace {

// Seconds after the first frame by which the pages beside the first one are made and their icons decoded.
constexpr double settledAfter = 1.5;

// Control-Alt-Space toggles the launcher, whatever window has the focus.
constexpr KeyChord launcherChord{Qt::Key_Space, Qt::ControlModifier | Qt::AltModifier};
constexpr std::uint32_t hotKeyId = 1;

} // namespace

AppDelegate::AppDelegate(Services services)
    : services_(std::move(services))
    , model_({services_.queue, services_.files, services_.preferences, services_.applicationSupport,
              services_.scan, std::move(services_.startupData.names), std::move(services_.startupData.layout),
              services_.homes, services_.applyToFrameworks, services_.loginItem,
              services_.startupData.layoutIsLate})
    , dialogs_({model_, services_.files, QStandardPaths::writableLocation(QStandardPaths::DesktopLocation),
                [this] { return shownWindow(); }})
    , visibility_({services_.preferences, services_.queue, services_.windows, services_.statusItem})
    , updates_({services_.queue,
                services_.preferences,
                *services_.installer,
                *services_.bundle,
                services_.caches + QStringLiteral("/Amberquill/updates"),
                [this] { return isUserBusy(); },
                {[this] { return shownWindow(); },
                 [this](const QUrl& page, QWindow& from) { openPage(page, from); }},
                [] { QCoreApplication::quit(); }})
    , menu_({model_, dialogs_, [this] { controller_->hide(std::nullopt); }, [] { QCoreApplication::quit(); },
             [this](QMenu& menu) { updates_.checker().addItems(menu); },
             [this](QMenu& menu) { visibility_.addItems(menu, true); }})
    , names_(services_.queue, services_.files, services_.caches, services_.language)
    , icons_({model_, IconCache::shared(), services_.queue, services_.files}, services_.caches,
             services_.startupData.icons)
    , live_({model_, services_.queue, services_.watcher, services_.retryIcons})
    , memory_(model_, services_.queue, [this] { releaseMemory(); }) {
    names_.follow(model_);
    IconCache::shared().remember(std::exchange(services_.startupData.icons, {}));
}

void AppDelegate::applicationDidFinishLaunching() {
    mainMenu_ = makeMainMenu();
    connect(&model_, &LauncherModel::languageDidChange, this, [this] { mainMenu_ = makeMainMenu(); });
    controller_ = std::make_shared<LauncherWindowController>(LauncherWindowController::Services{
        model_, services_.queue, services_.windows, services_.tokens, services_.opener,
        services_.scrollDevices, services_.screens, startsHidden_ ? nullptr : services_.firstBackdrop});
    services_.firstBackdrop.reset();
    wireVisibility();
    controller_->setMenu(
        [this](QWindow& window, const std::optional<QPoint>& place) { menu_.popUp(window, place); });
    controller_->setKeyEquivalents(
        [this](const QKeyEvent& event) { return mainMenu_->performKeyEquivalent(event); });
    model_.setController(controller_);
    startUpdates();
    hotKey_.emplace(*services_.shortcut, launcherChord, hotKeyId, [self = QPointer(this)] {
        if (self != nullptr) {
            self->toggleByPress(PressRoute::HotKey, self->services_.shortcut->origin());
        }
    });
    connect(qGuiApp, &QGuiApplication::applicationStateChanged, this, &AppDelegate::applicationStateChanged);
    connect(qGuiApp, &QGuiApplication::focusWindowChanged, this,
            [this](const QWindow* focused) { hadFocus_ = hadFocus_ || focused != nullptr; });
    connect(qGuiApp, &QGuiApplication::aboutToQuit, this, &AppDelegate::applicationWillTerminate);
    connect(qGuiApp, &QGuiApplication::commitDataRequest, this, &AppDelegate::sessionSaves);
    connect(qGuiApp, &QGuiApplication::saveStateRequest, this, &AppDelegate::sessionSaves);
    focus_.emplace(
        services_.windows, services_.queue,
        FocusKeeper::Actions{.heir = [this] { return windowOfFocus(); }, .ended = [this] { giveFocusUp(); }});
    frameLog_ = std::make_unique<FrameLog>(controller_->window());
    if (startsHidden_) {
        // There is no frame to wait for.
        services_.queue.post([self = QPointer(this)] {
            if (self != nullptr) {
                self->finishStart();
            }
        });
        return;
    }
    connect(&controller_->window(), &QQuickWindow::frameSwapped, this, &AppDelegate::finishStart,
            Qt::ConnectionType(Qt::QueuedConnection | Qt::SingleShotConnection));
    bringUp();
}

std::unique_ptr<MainMenu> AppDelegate::makeMainMenu() {
    return std::make_unique<MainMenu>(MainMenu::Actions{
        .about = [this] { showAbout(); },
        .hide = [this] { hideLauncher(); },
        .quit = [] { QCoreApplication::quit(); },
        .edit = [this](EditCommand command) { controller_->window().edit(command); },
        .close = [this] { hideLauncher(); },
    });
}

void AppDelegate::wireVisibility() {
    visibility_.isLauncherShown = [this] { return controller_->isShown(); };
    visibility_.showLauncher = [this] { bringUp(); };
    visibility_.toggleLauncher = [this] { toggleLauncher(); };
    visibility_.addSettingsItems = [this](QMenu& menu) {
        amberquill::addSettingsItems(menu, model_, dialogs_);
    };
    visibility_.addUpdateItems = [this](QMenu& menu) { updates_.checker().addItems(menu); };
    visibility_.showAbout = [this] { showAbout(); };
    visibility_.quit = [] { QCoreApplication::quit(); };
    services_.windows.setListedInTaskBars(visibility_.showsInDock());
}

QWindow* AppDelegate::shownWindow() const {
    return controller_ && controller_->isShown() ? &controller_->window() : nullptr;
}

void AppDelegate::startUpdates() {
    updates_.checker().hideLauncher = [self = QPointer(this)] {
        if (self != nullptr) {
            self->hideLauncher();
        }
    };
    // Who does not want automatic checks has said so in the preferences.
    if (!services_.startupData.preferencesAreLate) {
        updates_.start();
    }
}

void AppDelegate::takeLatePreferences() {
    services_.startupData.preferencesAreLate = false;
    model_.takeLatePreferences();
    if (controller_) {
        visibility_.apply();
        updates_.start();
    }
}

// An update that is found by itself waits until the user has nothing in hand.
bool AppDelegate::isUserBusy() const {
    return model_.drag().has_value() || controller_->hasOtherWindow() ||
           QApplication::activePopupWidget() != nullptr;
}

void AppDelegate::openPage(const QUrl& page, QWindow& from) {
    services_.tokens.request(from, {}, [self = QPointer(this), page](const QString& token) {
        if (self != nullptr) {
            self->services_.opener.openPage(page, token, [self](bool started) {
                if (!started && self != nullptr) {
                    self->services_.windows.beep();
                }
            });
        }
    });
}

void AppDelegate::showAbout() {
    const QString flow = QStringLiteral("about");
    LauncherWindowController::auxiliaryFlows().insert(flow);
    controller_->hide(std::nullopt);
    dialogs_.showAbout(shownVersion(*services_.bundle),
                       [flow] { LauncherWindowController::auxiliaryFlows().remove(flow); });
}

bool AppDelegate::firstPageIsReady() {
    const QScreen* screen = QGuiApplication::primaryScreen();
    if (screen == nullptr || model_.items().empty()) {
        return false;
    }
    const double ratio = screen->devicePixelRatio();
    const GridMetrics metrics{screen->size(), model_.columns(), model_.rows()};
    const int edge = static_cast<int>(std::lround(TileLayout::of(metrics, ratio).icon.width() * ratio));
    return IconDiskCache::prepareFirstPage(model_, IconCache::shared(), edge);
}

// What nobody waits for is done once the launcher is on the screen.
void AppDelegate::finishStart() {
    live_.watch(services_.watchedFolders);
    services_.prepareOpening();
    visibility_.updateStatusItem();
    services_.motion.follow(
        [&motion = services_.motion] { Timeline::shared().setReduced(motion.isReduced()); });
    services_.queue.thenAfter(context_, settledAfter, [this] {
        const QIcon icon = applicationIcon();
        QGuiApplication::setWindowIcon(icon);
        controller_->window().setIcon(icon);
        IconCache::shared().refreshRemembered();
        icons_.start();
    });
}

void AppDelegate::rootAnswered() {
    if (controller_) {
        live_.watch(services_.watchedFolders);
    }
    live_.refresh();
}

void AppDelegate::releaseMemory() {
    if (controller_) {
        controller_->window().dropUnseen();
    }
    // Once it has been freed, which gives the icons free that only it held.
    services_.queue.post([self = QPointer(this)] {
        if (self != nullptr) {
            IconCache::shared().shrink();
            self->services_.trimHeap();
        }
    });
}

void AppDelegate::applicationStateChanged(Qt::ApplicationState state) {
    // A focus that the window manager has not given yet is not one that was lost.
    const bool wasActive = std::exchange(isActive_, state == Qt::ApplicationActive);
    // So is the end of one from before the launcher was hidden, told when it is up again.
    const bool isLost = std::exchange(hadFocus_, isActive_) && wasActive && !isActive_;
    mayReturn_ = isLost && focus_->expectsFocus();
    if (isLost && !mayReturn_) {
        controller_->hide(std::nullopt);
    } else if (!wasActive && isActive_ && !std::exchange(awaitsFocus_, false)) {
        // A focus that was asked for by a showing is no wish for another one: it may arrive when the launcher
        // has been hidden again.
        applicationDidBecomeActive();
    }
}

void AppDelegate::bringUp() {
    awaitsFocus_ = !isActive_;
    mayReturn_ = false;
    hadFocus_ = hadFocus_ && controller_->isShown();
    controller_->show();
}

// The focus that was expected back after its loss has not come.
void AppDelegate::giveFocusUp() {
    if (std::exchange(mayReturn_, false)) {
        controller_->hide(std::nullopt);
    }
}

QWindow* AppDelegate::windowOfFocus() const {
    if (const QWidget* dialog = QApplication::activeModalWidget()) {
        return dialog->windowHandle();
    }
    if (controller_->isShown()) {
        return &controller_->window();
    }
    // Such as the about panel, which nobody need answer.
    const QWindowList windows = QGuiApplication::topLevelWindows();
    const auto dialog = std::find_if(windows.begin(), windows.end(), [](const QWindow* window) {
        return window->isVisible() && window->type() == Qt::Dialog;
    });
    return dialog != windows.end() ? *dialog : nullptr;
}

void AppDelegate::applicationDidBecomeActive() {
    // A window manager may give the focus back to the launcher as it leaves: nobody wished to see it.
    const bool leaves = controller_->window().isVisible();
    if (!controller_->isShown() && !leaves && !controller_->hasOtherWindow()) {
        bringUp();
        hadFocus_ = true;
    }
}

void AppDelegate::showLauncher(const QString& token) {
    if (!token.isEmpty()) {
        services_.windows.setActivationToken(token);
    }
    startsHidden_ = false;
    if (controller_) {
        bringUp();
    }
}

void AppDelegate::hideLauncher() {
    startsHidden_ = true;
    if (controller_) {
        controller_->hide(std::nullopt);
    }
}

void AppDelegate::toggleLauncher(const PressOrigin& origin) {
    if (controller_ && controller_->isShown() && isActive_) {
        hideLauncher();
        return;
    }
    if (origin.time != 0) {
        services_.windows.setUserTime(origin.time);
    }
    showLauncher(origin.token);
}

void AppDelegate::toggleByPress(PressRoute route, const PressOrigin& origin) {
    if (presses_.isNewPress(route, services_.queue.now())) {
        toggleLauncher(origin);
    }
}

void AppDelegate::applicationWillTerminate() {
    model_.save();
    services_.runFlushes({[this] { model_.flushSaves(); }, [this] { services_.preferences.flush(); }});
}

// What the session manager does next may be to end the process. Whether the next session begins with the
// launcher is for its login item to say.
void AppDelegate::sessionSaves(QSessionManager& manager) {
    applicationWillTerminate();
    manager.setRestartHint(QSessionManager::RestartNever);
}

} // namespace amberquill
