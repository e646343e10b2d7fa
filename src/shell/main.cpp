#include "data/AppScanner.h"
#include "data/IconCache.h"
#include "localization/FrameworkLanguage.h"
#include "localization/L.h"
#include "motion/Timeline.h"
#include "platform/common/AsyncValue.h"
#include "platform/common/RootReaders.h"
#include "platform/common/Thread.h"
#include "platform/linux/activation/Activation.h"
#include "platform/linux/applications/bundles/BundlePropertyList.h"
#include "platform/linux/applications/bundles/PropertyListMainBundle.h"
#include "platform/linux/applications/entries/DesktopEntryApplications.h"
#include "platform/linux/applications/icons/LinuxApplicationIcons.h"
#include "platform/linux/applications/icons/lookup/IconThemeName.h"
#include "platform/linux/applications/icons/workers/IconWorkerPool.h"
#include "platform/linux/applications/icons/workers/WorkerProgram.h"
#include "platform/linux/applications/launching/LinuxApplicationOpener.h"
#include "platform/linux/capture/ScreenCaptures.h"
#include "platform/linux/dbus/AsyncBusConnector.h"
#include "platform/linux/dbus/BusAddress.h"
#include "platform/linux/environment/BaseFolders.h"
#include "platform/linux/environment/QtSystemLanguages.h"
#include "platform/linux/files/AtomicWriter.h"
#include "platform/linux/files/InotifyFolderWatcher.h"
#include "platform/linux/files/JsonPreferences.h"
#include "platform/linux/files/PosixFileSystem.h"
#include "platform/linux/graphics/HardwareGpu.h"
#include "platform/linux/input/InputDevices.h"
#include "platform/linux/input/XkbKeyboard.h"
#include "platform/linux/installation/AppImageInstaller.h"
#include "platform/linux/queue/EventLoopQueue.h"
#include "platform/linux/session/AutostartLoginItem.h"
#include "platform/linux/session/ProcessSetup.h"
#include "platform/linux/session/SingleInstance.h"
#include "platform/linux/session/TerminationSignals.h"
#include "platform/linux/settings/LinuxMotionPreference.h"
#include "platform/linux/tray/LinuxTrayHosts.h"
#include "platform/linux/windows/WindowSystems.h"
#include "platform/linux/windows/wayland/SeatlessCompositor.h"
#include "shell/AppDelegate.h"
#include "shell/LazyApplicationOpener.h"
#include "shell/ShellLog.h"
#include "shell/StartupReading.h"
#include "shell/TrayStatusItem.h"
#include "window/Backdrops.h"

#include <QApplication>
#include <QDBusConnection>
#include <QDeadlineTimer>
#include <QFileInfo>
#include <QLocale>
#include <QQuickWindow>
#include <algorithm>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <optional>
#include <span>
#include <string_view>
#include <unistd.h>

using namespace amberquill;

namespace {

// For looking at the motion: everything that takes time takes this many times as long.
double slowdown() {
    const double wanted = qEnvironmentVariable("AMBERQUILL_SLOWDOWN").toDouble();
    return wanted >= 1 && wanted <= 100 ? wanted : 1;
}

// Seconds after the first frame. By then all icons are decoded, and memory used by the start can be released.
constexpr double settledAfter = 4;

// Seconds after which background work begins even without a first frame: the window may be invisible.
constexpr double longestHold = 1.0;

// How long the program's end waits for unsaved data to be written, and then for other background work. A
// mount that does not answer would block either forever.
constexpr std::chrono::milliseconds longestFlush{600};
constexpr std::chrono::milliseconds longestFinish{200};

// How long the start waits for files. The window then shows what has been read.
constexpr std::chrono::milliseconds longestReading{300};

// Removes temporary files of killed processes beside these files and beside the targets of links.
void removeLeftovers(const FileSystem& files, const QStringList& paths) {
    for (const QString& path : paths) {
        for (const QString& place : {path, files.resolvingSymbolicLinks(path)}) {
            desktop::removeLeftoverFiles(QFileInfo(place).path().toUtf8());
        }
    }
}

bool has(std::span<char*> arguments, std::string_view wanted) {
    return std::find(arguments.begin(), arguments.end(), wanted) != arguments.end();
}

// --verbose: all debug lines except one for each frame. On stderr even where Qt would write to the journal.
void logEverything() {
    qputenv("QT_FORCE_STDERR_LOGGING", "1");
    QLoggingCategory::setFilterRules(QStringLiteral("amberquill.*=true\namberquill.frames=false"));
}

void carryOut(const desktop::ApplicationRequest& request, AppDelegate& delegate) {
    using Kind = desktop::ApplicationRequest::Kind;
    const QString token = desktop::tokenFor(request, QGuiApplication::platformName());
    switch (request.kind) {
    case Kind::Show:
        delegate.showLauncher(token);
        break;
    case Kind::Hide:
        delegate.hideLauncher();
        break;
    case Kind::Toggle:
        delegate.toggleByPress(PressRoute::Bus, {.token = token});
        break;
    }
}

} // namespace

int main(int argc, char* argv[]) {
    const std::span arguments(argv, static_cast<std::size_t>(argc));
    // The updater asks a new program for its version too, before it replaces the old one.
    if (has(arguments, "--version")) {
        return std::puts("Amberquill " AMBERQUILL_VERSION) < 0 ? EXIT_FAILURE : EXIT_SUCCESS;
    }
    // First, because the rest of the start changes the environment, and applications are started with this
    // one.
    const auto start = desktop::InheritedState::capture();
    const desktop::Environment environment = start.environment.lookup();
    if (has(arguments, "--verbose")) {
        logEverything();
    }
    desktop::doNotLaunchSessionBus(environment);
    desktop::avoidInputMethodWithoutSeat(environment);
    desktop::limitMallocArenas();
    // If our parent ignored SIGCHLD, the kernel would discard our children's exit statuses and might reuse
    // their process ids.
    static_cast<void>(std::signal(SIGCHLD, SIG_DFL));

    // Whether the program runs already is found out while this one starts. If so, that one gets the request,
    // and this process ends at once: it has shown and written nothing.
    const desktop::StartupRequest startup =
        desktop::startupRequest(environment, QList<QByteArray>(argv + std::min(argc, 1), argv + argc));
    const QByteArray busAddress = desktop::sessionBusAddress(environment).value_or(QByteArray());
    desktop::NameClaim claim(busAddress, startup, {}, [] { ::_exit(0); });

    const Locations locations = desktop::locationsFromEnvironment(environment);
    const QString language = QLocale::system().name();
    desktop::PosixFileSystem files;
    const desktop::PropertyListBundles bundles;
    const desktop::EntrySettings entrySettings = desktop::entrySettingsFromEnvironment(environment);
    RootReaders readers;
    const desktop::DesktopEntryApplications registered(entrySettings, &readers);
    const AppScanner::Services scanServices{
        .files = files,
        .bundles = bundles,
        .registered = registered,
        .home = locations.home,
        .ownBundle = locations.ownBundle,
        .readers = &readers,
    };

    const QString program = desktop::runningProgram();
    desktop::IconWorkerPool iconWorkers({.program = desktop::installedWorkerProgram(program, environment)});

    // Qt finds the fonts' configuration already read.
    static_cast<void>(startThread(desktop::readFontConfiguration));
    const QDeadlineTimer readingEnds(longestReading);
    const QString preferencesPath = locations.configuration + QStringLiteral("/Amberquill/preferences.json");
    AsyncValue<desktop::JsonPreferences::Content> preferencesReading;
    preferencesReading.start([&] { return desktop::JsonPreferences::read(files, preferencesPath); });
    StartupReading reading({
        .files = files,
        .applicationSupport = locations.applicationSupport,
        .caches = locations.caches,
        .language = language,
        .scan = [&] { return AppScanner::scan(scanServices); },
        .prepareDecoding = [&] { iconWorkers.prepare(); },
    });

    if (!desktop::hasHardwareGpu()) {
        QQuickWindow::setGraphicsApi(QSGRendererInterface::Software);
    }
    QGuiApplication::setApplicationName(QStringLiteral("Amberquill"));
    QGuiApplication::setApplicationVersion(QStringLiteral(AMBERQUILL_VERSION));
    QGuiApplication::setDesktopFileName(QStringLiteral("org.amberquill.Amberquill"));
    QGuiApplication::setQuitOnLastWindowClosed(false);
    const QApplication application(argc, argv);

    auto storedPreferences = preferencesReading.takeBy(readingEnds);
    const bool preferencesAreLate = !storedPreferences;
    desktop::JsonPreferences preferences(files, preferencesPath, std::move(storedPreferences));
    const desktop::QtSystemLanguages languages;
    L::setSystemLanguages(&languages);
    L::loadLanguage(preferences);
    FrameworkLanguage frameworks(preferences, languages);
    frameworks.apply(L::language());

    // Declared before the queue, whose destructor waits for background work of the installer.
    const auto installer =
        std::make_shared<desktop::AppImageInstaller>(start.environment.forChild({}), program);
    EventLoopQueue queue(slowdown());
    queue.runOneAtATime();
    const auto windows = desktop::makeWindowSystem(queue);
    const auto screens = desktop::makeScreenCapture();
    auto backdrop = makeBackdrop(*screens, *windows, windows->screenUnderPointer(),
                                 LauncherModel::storedBackground(preferences), windows->blendsWindows());

    preferences.writeOn(queue);
    Timeline& timeline = Timeline::shared();
    timeline.runOn(&queue);
    const FrameDriver driver(timeline);

    desktop::LinuxApplicationIcons icons(
        {
            .baseFolders = desktop::iconBaseFolders(locations.home, entrySettings.dataFolders),
            .theme = desktop::iconThemeName(),
            .cacheFolder = locations.caches + QStringLiteral("/Amberquill"),
            .version = AMBERQUILL_VERSION,
            .locale = entrySettings.locale,
        },
        iconWorkers);
    IconCache::shared().serveFrom(&icons, &queue);

    const auto scrollDevices = desktop::makeScrollDevices();
    const desktop::XkbKeyboard keyboard;
    const auto tokens = desktop::makeActivationTokens(queue);
    const auto notifications = desktop::makeStartupNotifications();
    // If the bus does not answer, applications are started without it: asking it would block.
    std::function<bool()> hasBus = [] { return false; };
    // Qt's own connection does not reconnect when the bus has restarted; this one replaces it then.
    std::optional<QDBusConnection> nextBus;
    const desktop::CurrentBus sessionBus = [&nextBus] {
        return nextBus ? *nextBus : QDBusConnection::sessionBus();
    };
    LazyApplicationOpener opener([&]() -> std::unique_ptr<ApplicationOpener> {
        return std::make_unique<desktop::LinuxApplicationOpener>(
            start, [&] { return hasBus() ? sessionBus() : QDBusConnection(QStringLiteral("none")); },
            *notifications, queue);
    });
    desktop::InotifyFolderWatcher watcher(queue, &readers);
    desktop::LinuxMotionPreference motion(environment, queue, sessionBus);
    windows->setActivationToken(desktop::takeStartToken(start.environment, QGuiApplication::platformName()));

    StartupData startupData = reading.takeBy(readingEnds);
    startupData.preferencesAreLate = preferencesAreLate;
    const bool layoutIsLate = startupData.layoutIsLate; // startupData is moved from below

    desktop::AsyncBusConnector shortcutsBus(busAddress, QStringLiteral("shortcuts"), queue);
    desktop::LinuxTrayHosts trayHosts(sessionBus);
    TrayStatusItem statusItem(trayHosts, queue);
    const desktop::AutostartLoginItem::Settings autostart{
        .folders = desktop::autostartFolders(environment),
        .program = program,
        .currentDesktops = entrySettings.currentDesktops,
    };
    const QStringList writtenFiles = {
        locations.applicationSupport + QStringLiteral("/Amberquill/layout.json"),
        locations.applicationSupport + QStringLiteral("/Amberquill/layout-history/copy.json"),
        preferencesPath, locations.caches + QStringLiteral("/Amberquill/names"),
        autostart.folders.first() + QStringLiteral("/org.amberquill.Amberquill.desktop")};
    auto shortcut = desktop::makeGlobalShortcut(
        queue, [&](desktop::AsyncBusConnector::Connected then) { shortcutsBus.connect(std::move(then)); });
    GlobalShortcut& shortcuts = *shortcut;
    const Context running;
    const auto finishStart = [&] {
        queue.release();
        opener.prepare();
        queue.runInBackground([paths = writtenFiles, &files] { removeLeftovers(files, paths); }, [] {});
        queue.thenAfter(running, settledAfter, [&] {
            desktop::trimHeap();
            // Ends icon workers that were started early but not needed.
            queue.runInBackground([&] { icons.rest(); }, [] {}, Lane::Icons);
        });
    };
    AppDelegate delegate({
        .queue = queue,
        .files = files,
        .preferences = preferences,
        .windows = *windows,
        .tokens = *tokens,
        .opener = opener,
        .watcher = watcher,
        .statusItem = statusItem,
        .scrollDevices = *scrollDevices,
        .keyboard = keyboard,
        .screens = *screens,
        .firstBackdrop = std::move(backdrop),
        .motion = motion,
        .scan = [&reading] { return reading.scan(); },
        .finishStart = finishStart,
        .retryIcons =
            [&icons] {
                icons.forget();
                IconCache::shared().retryMissing();
            },
        .startupData = std::move(startupData),
        .applicationSupport = locations.applicationSupport,
        .caches = locations.caches,
        .language = language,
        .watchedFolders = AppScanner::searchRoots(locations.home) + registered.watchedFolders(),
        .homes = {locations.home, desktop::homeFolderOfUser},
        .applyToFrameworks = [&frameworks](AppLanguage chosen) { frameworks.apply(chosen); },
        .loginItem = std::make_shared<desktop::AutostartLoginItem>(files, autostart),
        .shortcut = std::move(shortcut),
        .bundle = std::make_shared<desktop::PropertyListMainBundle>(
            desktop::mainBundlePaths(program, locations.ownBundle)),
        .installer = installer,
        .runFlushes =
            [&queue](std::vector<std::function<void()>> flushes) {
                queue.runWithin(longestFlush, std::move(flushes));
            },
        .trimHeap = desktop::trimHeap,
    });

    readers.setAnswered(queue.answer(running, [&delegate] { delegate.rootAnswered(); }));
    if (layoutIsLate) {
        reading.whenLayoutIsThere(queue, running, [&delegate](StoredLayout stored) {
            delegate.model().takeLateLayout(std::move(stored));
        });
    }
    if (preferencesAreLate) {
        preferencesReading.whenThere(queue, running, [&](desktop::JsonPreferences::Content content) {
            preferences.takeLate(std::move(content));
            delegate.takeLatePreferences();
        });
    }
    // Without a compositor the panel's colour can be read only while the launcher does not cover it.
    QObject::connect(&delegate.model(), &LauncherModel::presentedChanged, &statusItem,
                     &TrayStatusItem::updateToneSoon);
    // Icons that failed for lack of a worker process are requested again when the launcher is shown or
    // hidden.
    QObject::connect(&delegate.model(), &LauncherModel::presentedChanged, &delegate.model(), [&icons] {
        if (icons.takeUnavailable()) {
            IconCache::shared().retryMissing();
        }
    });

    const desktop::TerminationSignals signals([&delegate] { delegate.quit(); });
    if (delegate.firstPageIsReady()) {
        queue.hold();
        queue.thenAfter(running, longestHold, [&queue] { queue.release(); });
    }
    if (startup.request.kind == desktop::ApplicationRequest::Kind::Hide) {
        delegate.hideLauncher();
    }

    desktop::AsyncBusConnector nextBusConnector(busAddress, QStringLiteral("next session bus"), queue);
    const auto useNextBus = [&](const QDBusConnection& bus) {
        if (bus.isConnected()) {
            nextBus = bus;
            trayHosts.busCameBack();
            motion.busCameBack();
        }
    };
    const desktop::SingleInstance instance(
        claim, busAddress, queue,
        [&](const desktop::ApplicationRequest& request) { carryOut(request, delegate); },
        [&] {
            shortcuts.serviceCameBack();
            nextBusConnector.connect(useNextBus);
        });
    hasBus = [&instance] { return instance.hasBus(); };
    if (!instance.hasBus()) {
        qCDebug(shellLog, "no session bus answers");
        // Before the views exist: creating them has Qt's accessibility connect to the session bus.
        desktop::disableSessionBus();
    }
    delegate.applicationDidFinishLaunching();
    const int status = QApplication::exec();

    iconWorkers.shutDown(); // threads that wait for an icon return
    if (!queue.finish(longestFinish) || preferencesReading.isUnderWay() || reading.isUnderWay() ||
        !readers.isIdle()) {
        // Threads still use objects of this function: none may be destroyed.
        ::_exit(status);
    }
    return status;
}
