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
#include "shell/ShellLog.h"
#include "views/TileRows.h"
#include "window/ApplicationIcon.h"
#include "window/SettingsItems.h"

#include <QApplication>
#include <QScreen>
#include <QStandardPaths>
#include <cmath>
#include <utility>

namespace amberquill {

Q_LOGGING_CATEGORY(shellLog, "amberquill.shell", QtCriticalMsg)

namespace {

Q_LOGGING_CATEGORY(frameLog, "amberquill.frames", QtCriticalMsg)

// Seconds after the first frame. By then the neighbouring pages exist and their icons are decoded.
constexpr double settledAfter = 1.5;

// Control-Alt-Space toggles the launcher, whatever window has the focus.
constexpr KeyChord launcherChord{Qt::Key_Space, Qt::ControlModifier | Qt::AltModifier};
constexpr std::uint32_t hotKeyId = 1;

// Logs each frame that reaches the screen, for benchmarks: the time on the queue's clock, whether all its
// icons were decoded, and the seconds since its beginning. The queue outlives the window.
void logFrames(QQuickWindow& window, const MainQueue& queue) {
    if (!frameLog().isDebugEnabled()) {
        return;
    }
    struct Frame {
        bool isComplete = false;
        double begun = 0;
    };
    const auto frame = std::make_shared<Frame>();
    QObject::connect(&window, &QQuickWindow::afterAnimating, &window, [frame, &queue] {
        *frame = {.isComplete = IconCache::shared().isIdle(), .begun = queue.now()};
    });
    QObject::connect(&window, &QQuickWindow::frameSwapped, &window, [frame, &queue] {
        const double end = queue.now();
        qCDebug(frameLog, "frame %.6f %s %.6f", end, frame->isComplete ? "complete" : "incomplete",
                end - frame->begun);
    });
}

} // namespace

AppDelegate::AppDelegate(Services services)
    : services_(std::move(services))
    , model_({
          .queue = services_.queue,
          .files = services_.files,
          .preferences = services_.preferences,
          .applicationSupport = services_.applicationSupport,
          .scan = services_.scan,
          .rememberedNames = std::move(services_.startupData.names),
          .layout = std::move(services_.startupData.layout),
          .homes = services_.homes,
          .applyToFrameworks = services_.applyToFrameworks,
          .loginItem = services_.loginItem,
          .layoutIsLate = services_.startupData.layoutIsLate,
      })
    , dialogs_({
          .model = model_,
          .files = services_.files,
          .startFolder = QStandardPaths::writableLocation(QStandardPaths::DesktopLocation),
          .above = [this] { return shownWindow(); },
      })
    , visibility_({
          .preferences = services_.preferences,
          .queue = services_.queue,
          .windows = services_.windows,
          .statusItem = services_.statusItem,
      })
    , updates_({
          .queue = services_.queue,
          .preferences = services_.preferences,
          .installer = *services_.installer,
          .bundle = *services_.bundle,
          .downloadFolder = services_.caches + QStringLiteral("/Amberquill/updates"),
          .isBusy = [this] { return isUserBusy(); },
          .dialogs = {.launcher = [this] { return shownWindow(); },
                      .openPage = [this](const QUrl& page, QWindow& from) { openPage(page, from); }},
          .quit = [this] { quit(); },
      })
    , menu_({
          .model = model_,
          .dialogs = dialogs_,
          .hideLauncher = [this] { hideLauncher(); },
          .quit = [this] { quit(); },
          .addUpdateItems = [this](QMenu& menu) { updates_.checker().addItems(menu); },
          .addPresenceItems = [this](QMenu& menu) { visibility_.addItems(menu, true); },
      })
    , focus_(services_.windows, services_.queue)
    , names_(services_.queue, services_.files, services_.caches, services_.language)
    , icons_(
          {.model = model_, .icons = IconCache::shared(), .queue = services_.queue, .files = services_.files},
          services_.caches, services_.startupData.icons)
    , live_({.model = model_,
             .queue = services_.queue,
             .watcher = services_.watcher,
             .retryIcons = services_.retryIcons})
    , memory_(model_, services_.queue, [this] { releaseMemory(); }) {
    names_.follow(model_);
    IconCache::shared().restore(std::exchange(services_.startupData.icons, {}));
}

void AppDelegate::applicationDidFinishLaunching() {
    mainMenu_ = makeMainMenu();
    connect(&model_, &LauncherModel::languageDidChange, this, [this] { mainMenu_ = makeMainMenu(); });
    const bool startsHidden = focus_.startsHidden();
    controller_ = std::make_shared<LauncherWindowController>(LauncherWindowController::Services{
        .model = model_,
        .queue = services_.queue,
        .windows = services_.windows,
        .tokens = services_.tokens,
        .opener = services_.opener,
        .scrollDevices = services_.scrollDevices,
        .screens = services_.screens,
        .firstBackdrop = startsHidden ? nullptr : services_.firstBackdrop,
    });
    services_.firstBackdrop.reset();
    connectVisibility();
    controller_->setMenu(
        [this](QWindow& window, const std::optional<QPoint>& place) { menu_.popUp(window, place); });
    controller_->setKeyEquivalents(
        [this](const QKeyEvent& event) { return mainMenu_->performKeyEquivalent(event); });
    model_.setController(controller_);
    startUpdates();
    hotKey_.emplace(*services_.shortcut, launcherChord, hotKeyId, context_.bind([this] {
        toggleByPress(PressRoute::HotKey, services_.shortcut->origin());
    }));
    connect(qGuiApp, &QGuiApplication::aboutToQuit, this, &AppDelegate::applicationWillTerminate);
    connect(qGuiApp, &QGuiApplication::commitDataRequest, this, &AppDelegate::saveForSession);
    connect(qGuiApp, &QGuiApplication::saveStateRequest, this, &AppDelegate::saveForSession);
    logFrames(controller_->window(), services_.queue);
    if (startsHidden) {
        // No frame will be drawn.
        services_.queue.then(context_, [this] { finishStart(); });
    } else {
        connect(&controller_->window(), &QQuickWindow::frameSwapped, this, &AppDelegate::finishStart,
                Qt::ConnectionType(Qt::QueuedConnection | Qt::SingleShotConnection));
    }
    focus_.launch(*controller_);
}

std::unique_ptr<MainMenu> AppDelegate::makeMainMenu() {
    return std::make_unique<MainMenu>(
        MainMenu::Actions{
            .about = [this] { showAbout(); },
            .hide = [this] { hideLauncher(); },
            .quit = [this] { quit(); },
            .edit = [this](EditCommand command) { controller_->window().edit(command); },
            .close = [this] { hideLauncher(); },
        },
        services_.keyboard);
}

void AppDelegate::connectVisibility() {
    visibility_.isLauncherShown = [this] { return controller_->isShown(); };
    visibility_.showLauncher = [this] { showLauncher(); };
    visibility_.toggleLauncher = [this] { toggleLauncher(); };
    visibility_.addSettingsItems = [this](QMenu& menu) {
        amberquill::addSettingsItems(menu, model_, dialogs_);
    };
    visibility_.addUpdateItems = [this](QMenu& menu) { updates_.checker().addItems(menu); };
    visibility_.showAbout = [this] { showAbout(); };
    visibility_.quit = [this] { quit(); };
    services_.windows.setListedInTaskBars(visibility_.showsInDock());
}

QWindow* AppDelegate::shownWindow() const {
    return controller_ && controller_->isShown() ? &controller_->window() : nullptr;
}

void AppDelegate::startUpdates() {
    updates_.checker().hideLauncher = context_.bind([this] { hideLauncher(); });
    // The preferences say whether automatic checks are wanted.
    if (!services_.startupData.preferencesAreLate) {
        updates_.start();
    }
}

void AppDelegate::takeLatePreferences() {
    qCDebug(shellLog, "the preferences came late");
    services_.startupData.preferencesAreLate = false;
    model_.takeLatePreferences();
    if (controller_) {
        visibility_.apply();
        updates_.start();
    }
}

// Updates found by an automatic check are not shown while this is true.
bool AppDelegate::isUserBusy() const {
    return model_.drag().has_value() || controller_->hasOtherWindow() ||
           QApplication::activePopupWidget() != nullptr;
}

void AppDelegate::openPage(const QUrl& page, QWindow& from) {
    services_.tokens.request(from, {}, context_.bind([this, page](const QString& token) {
        services_.opener.openPage(page, token, context_.bind([this, page](bool started) {
            if (!started) {
                qCDebug(shellLog) << "cannot open" << page;
                services_.windows.beep();
            }
        }));
    }));
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

// Work that the first frame does not need.
void AppDelegate::finishStart() {
    live_.watch(services_.watchedFolders);
    services_.finishStart();
    visibility_.updateStatusItem();
    services_.motion.follow(
        [&motion = services_.motion] { Timeline::shared().setReduced(motion.isReduced()); });
    services_.queue.thenAfter(context_, settledAfter, [this] {
        const QIcon icon = applicationIcon();
        QGuiApplication::setWindowIcon(icon);
        controller_->window().setIcon(icon);
        IconCache::shared().refreshRestored();
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
    // Posted, so that the window has released its icons by then.
    services_.queue.then(context_, [this] {
        IconCache::shared().shrink();
        services_.trimHeap();
        qCDebug(shellLog, "memory released");
    });
}

void AppDelegate::showLauncher(const QString& token) {
    focus_.show(token);
}

void AppDelegate::hideLauncher() {
    focus_.hide();
}

void AppDelegate::toggleLauncher(const PressOrigin& origin) {
    focus_.toggle(origin);
}

void AppDelegate::toggleByPress(PressRoute route, const PressOrigin& origin) {
    if (presses_.isNewPress(route, services_.queue.now())) {
        toggleLauncher(origin);
    } else {
        qCDebug(shellLog, "the same press of the keys by another route: ignored");
    }
}

void AppDelegate::quit() {
    if (controller_) {
        controller_->leave([] { QCoreApplication::quit(); });
    } else {
        QCoreApplication::quit();
    }
}

void AppDelegate::applicationWillTerminate() {
    model_.save();
    services_.runFlushes({[this] { model_.flushSaves(); }, [this] { services_.preferences.flush(); }});
}

// The session manager may end the process next. The login item decides whether the next session starts the
// launcher, so the session manager must not.
void AppDelegate::saveForSession(QSessionManager& manager) {
    applicationWillTerminate();
    manager.setRestartHint(QSessionManager::RestartNever);
}

} // namespace amberquill
