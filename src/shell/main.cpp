#include "data/AppScanner.h"
#include "data/IconCache.h"
#include "localization/FrameworkLanguage.h"
#include "localization/L.h"
#include "motion/Timeline.h"
#include "platform/common/AsyncValue.h"
#include "platform/common/RootReaders.h"
#include "platform/common/Thread.h"
#include "platform/linux/activation/Activation.h"
#include "platform/linux/activation/StartToken.h"
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
#include "platform/linux/environment/BaseFolders.h"
#include "platform/linux/environment/EnvironmentLocations.h"
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
#include "platform/linux/session/Fonts.h"
#include "platform/linux/session/Heap.h"
#include "platform/linux/session/SessionBus.h"
#include "platform/linux/session/SingleInstance.h"
#include "platform/linux/session/TerminationSignals.h"
#include "platform/linux/settings/LinuxMotionPreference.h"
#include "platform/linux/tray/LinuxTrayHosts.h"
#include "platform/linux/windows/WindowSystems.h"
#include "platform/linux/windows/wayland/SeatlessCompositor.h"
#include "shell/AppDelegate.h"
#include "shell/LazyApplicationOpener.h"
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
#include <string_view>
#include <unistd.h>

using namespace amberquill;
using namespace std::string_view_literals;

namespace {

// For whoever wants to look at the motion: everything that takes time takes so many times as long.
double slowdown() {
    const double wanted = qEnvironmentVariable("AMBERQUILL_SLOWDOWN").toDouble();
    return wanted >= 1 && wanted <= 100 ? wanted : 1;
}

// Seconds after the first frame by which what a start needed for a moment can be given back: the pages beside
// the first one are made and all icons decoded.
constexpr double settledAfter = 4;

// Seconds after which the rest of a start waits no longer for a first frame: a window need not be seen.
constexpr double longestHold = 1.0;

// How long the end waits for what is still to be written, and then for other background work: a mount that
// does not answer keeps either waiting for good.
constexpr std::chrono::milliseconds longestFlush{600};
constexpr std::chrono::milliseconds longestFinish{200};

// How long a start waits for what it reads. The window comes with what is known by then.
constexpr std::chrono::milliseconds longestReading{300};

// What an earlier run left for the first picture.
struct Caches {
    QHash<QString, QString> names;
    std::vector<StoredIcon> icons;
};

// What is read while Qt starts. A first scan is among it where nothing is remembered that could be shown
// before.
struct Reading {
    AsyncValue<desktop::JsonPreferences::Content> preferences;
    AsyncValue<StoredLayout> layout;
    AsyncValue<Caches> caches;
    AsyncValue<ScanResult> firstScan;

    StartupData takeBy(QDeadlineTimer deadline) {
        StartupData data;
        auto read = layout.takeBy(deadline);
        data.layoutIsLate = !read;
        if (read) {
            data.layout = std::move(*read);
        }
        if (auto cached = caches.takeBy(deadline)) {
            data.names = std::move(cached->names);
            data.icons = std::move(cached->icons);
        }
        firstScan.waitUntil(deadline);
        return data;
    }

    [[nodiscard]] bool isUnderWay() const {
        return preferences.isUnderWay() || layout.isUnderWay() || caches.isUnderWay() ||
               firstScan.isUnderWay();
    }
};

// What saves of earlier processes left beside these files, or what they are links to, when they were killed.
void removeLeftovers(const FileSystem& files, const QStringList& paths) {
    for (const QString& path : paths) {
        for (const QString& place : {path, files.resolvingSymbolicLinks(path)}) {
            desktop::removeLeftoverFiles(QFileInfo(place).path().toUtf8());
        }
    }
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
        delegate.toggleByPress(PressRoute::Bus, {token, 0});
        break;
    }
}

} // namespace

int main(int argc, char* argv[]) {
    // Asked by what is about to put this program in an older one's place, too.
    if (std::any_of(argv, argv + argc, [](const char* text) { return text == "--version"sv; })) {
        return std::puts("Amberquill " AMBERQUILL_VERSION) < 0 ? EXIT_FAILURE : EXIT_SUCCESS;
    }
    // First of all, before anything changes the environment that applications are started with.
    const auto start = desktop::InheritedState::capture();
    const desktop::Environment environment = start.environment.lookup();
    desktop::doNotLaunchSessionBus(environment);
    desktop::avoidInputMethodWithoutSeat(environment);
    desktop::limitMallocArenas();
    // Where the one who started us ignores it, the system forgets how our child processes end, and another
    // process may have such a one's number.
    static_cast<void>(std::signal(SIGCHLD, SIG_DFL));

    // Whether the program runs already is asked while it starts. If so, that one shows itself, and this
    // process ends at once: nothing in it has been on the screen or written to a file.
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
    const AppScanner::Services scanServices{files,   bundles, registered, locations.home, locations.ownBundle,
                                            &readers};

    const QString program = desktop::runningProgram();
    desktop::IconWorkerPool iconWorkers({.program = desktop::installedWorkerProgram(program, environment)});

    // Without it Qt reads them itself.
    static_cast<void>(startThread(desktop::readFontConfiguration));
    const QDeadlineTimer readingEnds(longestReading);
    const QString preferencesPath = locations.configuration + QStringLiteral("/Amberquill/preferences.json");
    Reading reading;
    reading.preferences.start([&] { return desktop::JsonPreferences::read(files, preferencesPath); });
    reading.layout.start([&] { return LayoutStore::read(files, locations.applicationSupport); });
    reading.caches.start([&] {
        Caches caches{NameDiskCache::load(files, locations.caches, language), {}};
        if (caches.names.isEmpty()) {
            reading.firstScan.start([&] { return AppScanner::scan(scanServices); });
        }
        caches.icons = IconDiskCache::load(files, locations.caches);
        if (caches.icons.empty()) {
            // The first page will have to be decoded before it can be shown.
            iconWorkers.prepare();
        }
        return caches;
    });

    if (!desktop::hasHardwareGpu()) {
        QQuickWindow::setGraphicsApi(QSGRendererInterface::Software);
    }
    QGuiApplication::setApplicationName(QStringLiteral("Amberquill"));
    QGuiApplication::setApplicationVersion(QStringLiteral(AMBERQUILL_VERSION));
    QGuiApplication::setDesktopFileName(QStringLiteral("org.amberquill.Amberquill"));
    QGuiApplication::setQuitOnLastWindowClosed(false);
    const QApplication application(argc, argv);

    auto storedPreferences = reading.preferences.takeBy(readingEnds);
    const bool preferencesAreLate = !storedPreferences;
    desktop::JsonPreferences preferences(files, preferencesPath, std::move(storedPreferences));
    const desktop::QtSystemLanguages languages;
    L::setSystemLanguages(&languages);
    L::loadLanguage(preferences);
    FrameworkLanguage frameworks(preferences, languages);
    frameworks.apply(L::language());

    const auto windows = desktop::makeWindowSystem();
    const auto screens = desktop::makeScreenCapture();
    auto backdrop = makeBackdrop(*screens, *windows, windows->screenUnderPointer(),
                                 LauncherModel::storedBackground(preferences), windows->blendsWindows());

    // Before the queue, which at its own end waits for what is done in the background.
    const auto installer =
        std::make_shared<desktop::AppImageInstaller>(start.environment.forChild({}), program);
    EventLoopQueue queue(slowdown());
    queue.runOneAtATime();
    preferences.writeOn(queue);
    Timeline& timeline = Timeline::shared();
    timeline.runOn(&queue);
    const FrameDriver driver(timeline);

    desktop::LinuxApplicationIcons icons(
        {desktop::iconBaseFolders(locations.home, entrySettings.dataFolders), desktop::iconThemeName(),
         locations.caches + QStringLiteral("/Amberquill"), AMBERQUILL_VERSION, entrySettings.locale},
        iconWorkers);
    IconCache::shared().serveFrom(&icons, &queue);

    const auto scrollDevices = desktop::makeScrollDevices();
    const desktop::XkbKeyboard keyboard;
    const auto tokens = desktop::makeActivationTokens(queue);
    const auto notifications = desktop::makeStartupNotifications();
    // A bus that does not answer is not asked to start applications either: that would wait for it.
    std::function<bool()> hasBus = [] { return false; };
    // Qt's own connection stays dead once its bus has gone. One of ours is there for the next bus.
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
    const bool layoutIsLate = startupData.layoutIsLate; // the rest is moved from
    const auto scan = [&scanServices, &first = reading.firstScan] {
        auto scanned = first.take();
        return scanned ? std::move(*scanned) : AppScanner::scan(scanServices);
    };
    desktop::AsyncBusConnector shortcutsBus(busAddress, QStringLiteral("shortcuts"), queue);
    desktop::LinuxTrayHosts trayHosts(sessionBus);
    TrayStatusItem statusItem(trayHosts, queue);
    const desktop::AutostartLoginItem::Settings autostart{desktop::autostartFolders(environment), program,
                                                          entrySettings.currentDesktops};
    const QStringList writtenFiles = {
        locations.applicationSupport + QStringLiteral("/Amberquill/layout.json"),
        locations.applicationSupport + QStringLiteral("/Amberquill/layout-history/copy.json"),
        preferencesPath, locations.caches + QStringLiteral("/Amberquill/names"),
        autostart.folders.first() + QStringLiteral("/org.amberquill.Amberquill.desktop")};
    auto shortcut = desktop::makeGlobalShortcut(
        queue, [&](desktop::AsyncBusConnector::Connected then) { shortcutsBus.connect(std::move(then)); });
    GlobalShortcut& shortcuts = *shortcut;
    const Context running;
    AppDelegate delegate({queue,
                          files,
                          preferences,
                          *windows,
                          *tokens,
                          opener,
                          watcher,
                          statusItem,
                          *scrollDevices,
                          keyboard,
                          *screens,
                          std::move(backdrop),
                          motion,
                          scan,
                          [&] {
                              queue.release();
                              opener.prepare();
                              queue.runInBackground(
                                  [paths = writtenFiles, &files] { removeLeftovers(files, paths); }, [] {});
                              queue.thenAfter(running, settledAfter, [&] {
                                  desktop::trimHeap();
                                  // Processes that were started early, where no icon was asked for.
                                  queue.runInBackground([&] { icons.rest(); }, [] {}, Lane::Icons);
                              });
                          },
                          [&icons] {
                              icons.forget();
                              IconCache::shared().retryMissing();
                          },
                          std::move(startupData),
                          locations.applicationSupport,
                          locations.caches,
                          language,
                          AppScanner::searchRoots(locations.home) + registered.watchedFolders(),
                          {locations.home, desktop::homeFolderOfUser},
                          [&frameworks](AppLanguage chosen) { frameworks.apply(chosen); },
                          std::make_shared<desktop::AutostartLoginItem>(files, autostart),
                          std::move(shortcut),
                          std::make_shared<desktop::PropertyListMainBundle>(
                              desktop::mainBundlePaths(program, locations.ownBundle)),
                          installer,
                          [&queue](std::vector<std::function<void()>> flushes) {
                              queue.runWithin(longestFlush, std::move(flushes));
                          },
                          desktop::trimHeap});
    readers.setAnswered(queue.answer(running, [&delegate] { delegate.rootAnswered(); }));
    if (layoutIsLate) {
        reading.layout.whenThere(queue, running, [&delegate](StoredLayout stored) {
            delegate.model().takeLateLayout(std::move(stored));
        });
    }
    if (preferencesAreLate) {
        reading.preferences.whenThere(queue, running, [&](desktop::JsonPreferences::Content content) {
            preferences.takeLate(std::move(content));
            delegate.takeLatePreferences();
        });
    }
    // Without a compositor a panel beneath the launcher is not seen.
    QObject::connect(&delegate.model(), &LauncherModel::presentedChanged, &statusItem,
                     &TrayStatusItem::updateToneSoon);
    // Icons that no process could be had for are asked for again when the launcher is hidden, and when it is
    // shown.
    QObject::connect(&delegate.model(), &LauncherModel::presentedChanged, &delegate.model(), [&icons] {
        if (icons.takeUnavailable()) {
            IconCache::shared().retryMissing();
        }
    });
    const desktop::TerminationSignals signals([] { QCoreApplication::quit(); });
    if (delegate.firstPageIsReady()) {
        queue.hold();
        queue.thenAfter(running, longestHold, [&queue] { queue.release(); });
    }
    if (startup.request.kind == desktop::ApplicationRequest::Kind::Hide) {
        delegate.hideLauncher();
    }
    desktop::AsyncBusConnector nextBusConnector(busAddress, QStringLiteral("next session bus"), queue);
    const auto takeUp = [&](const QDBusConnection& bus) {
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
            nextBusConnector.connect(takeUp);
        });
    hasBus = [&instance] { return instance.hasBus(); };
    if (!instance.hasBus()) {
        // Before the views are made: making them connects the accessibility of Qt to it.
        desktop::leaveSessionBusAlone();
    }
    delegate.applicationDidFinishLaunching();
    const int status = QApplication::exec();
    iconWorkers.shutDown(); // whoever waits for an icon waits no longer
    if (!queue.finish(longestFinish) || reading.isUnderWay() || !readers.isIdle()) {
        // It uses objects of this function, and would keep them from going.
        ::_exit(status);
    }
    return status;
}
