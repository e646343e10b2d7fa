#include "data/AppScanner.h"
#include "data/IconCache.h"
#include "localization/L.h"
#include "motion/FrameDriver.h"
#include "motion/Timeline.h"
#include "platform/EventLoopQueue.h"
#include "platform/linux/activation/Activation.h"
#include "platform/linux/activation/StartToken.h"
#include "platform/linux/applications/bundles/PropertyListBundles.h"
#include "platform/linux/applications/entries/DesktopEntryApplications.h"
#include "platform/linux/applications/icons/IconThemeName.h"
#include "platform/linux/applications/icons/LinuxApplicationIcons.h"
#include "platform/linux/applications/launching/LinuxApplicationOpener.h"
#include "platform/linux/files/EnvironmentLocations.h"
#include "platform/linux/files/InotifyFolderWatcher.h"
#include "platform/linux/files/JsonPreferences.h"
#include "platform/linux/files/PosixFileSystem.h"
#include "platform/linux/files/QtSystemLanguages.h"
#include "platform/linux/gpu/HardwareGpu.h"
#include "platform/linux/process/Heap.h"
#include "platform/linux/process/SessionBus.h"
#include "platform/linux/process/TerminationSignals.h"
#include "platform/linux/wayland/SeatlessCompositor.h"
#include "platform/linux/windows/WindowSystems.h"
#include "shell/AppDelegate.h"
#include "shell/DeferredOpener.h"
#include "views/BackgroundLayer.h"

#include <QDBusConnection>
#include <QGuiApplication>
#include <QLocale>
#include <QQuickWindow>
#include <QScreen>
#include <future>
#include <optional>

using namespace amberquill;

namespace {

// What is read from the disk before there is a window, on a thread of its own while Qt starts on the main
// one.
struct Preparations {
    std::future<QHash<QString, QString>> names;
    std::future<std::vector<AppInfo>> firstScan;
};

} // namespace

namespace {

// Seconds after the first frame by which the pages beside the first one are made and their icons decoded.
constexpr double settledAfter = 1.5;

} // namespace

int main(int argc, char* argv[]) {
    // First of all, before anything changes the environment that applications are started with.
    const auto start = desktop::StartState::capture();
    const desktop::Environment environment = start.environment.lookup();
    desktop::doNotLaunchSessionBus(environment);
    desktop::avoidInputMethodWithoutSeat(environment);
    desktop::shareHeap();

    const Locations locations = desktop::locationsFromEnvironment(environment);
    const QString language = QLocale::system().name();
    desktop::PosixFileSystem files;
    const desktop::PropertyListBundles bundles;
    const desktop::EntrySettings entrySettings = desktop::entrySettingsFromEnvironment(environment);
    const desktop::DesktopEntryApplications registered(entrySettings);
    const AppScanner::Services scanServices{files, bundles, registered, locations.home, locations.ownBundle};

    // The first scan runs while Qt starts; the model's first question takes its answer.
    auto names =
        std::async(std::launch::async, [&] { return NamesKeeper::load(files, locations.caches, language); });
    auto firstScan = std::make_shared<std::future<std::vector<AppInfo>>>(
        std::async(std::launch::async, [&] { return AppScanner::scan(scanServices); }));
    const auto scan = [&scanServices, firstScan] {
        return firstScan->valid() ? firstScan->get() : AppScanner::scan(scanServices);
    };

    if (!desktop::hasHardwareGpu()) {
        QQuickWindow::setGraphicsApi(QSGRendererInterface::Software);
    }
    QGuiApplication::setApplicationName(QStringLiteral("Amberquill"));
    QGuiApplication::setDesktopFileName(QStringLiteral("org.amberquill.Amberquill"));
    QGuiApplication::setQuitOnLastWindowClosed(false);
    const QGuiApplication application(argc, argv);

    desktop::JsonPreferences preferences(files, locations.configuration +
                                                    QStringLiteral("/Amberquill/preferences.json"));
    const desktop::QtSystemLanguages languages;
    L::setSystemLanguages(&languages);
    L::loadLanguage(preferences);

    if (const QScreen* screen = QGuiApplication::primaryScreen()) {
        BackgroundLayer::prepare(LauncherModel::storedBackground(preferences),
                                 screen->size() * screen->devicePixelRatio(), screen->devicePixelRatio());
    }

    EventLoopQueue queue;
    EventLoopQueue::runOneAtATime();
    Timeline& timeline = Timeline::shared();
    timeline.runOn(&queue);
    const FrameDriver driver(timeline);

    desktop::LinuxApplicationIcons icons(
        {desktop::iconBaseFolders(locations.home, entrySettings.dataFolders), desktop::iconThemeName(),
         locations.caches + QStringLiteral("/Amberquill/decoding"), entrySettings.locale});
    IconCache::shared().serveFrom(&icons, &queue);

    const auto windows = desktop::makeWindowSystem();
    const auto tokens = desktop::makeActivationTokens(queue);
    const auto notifications = desktop::makeStartupNotifications();
    DeferredOpener opener([&]() -> std::unique_ptr<ApplicationOpener> {
        return std::make_unique<desktop::LinuxApplicationOpener>(start, QDBusConnection::sessionBus(),
                                                                 *notifications, queue);
    });
    desktop::InotifyFolderWatcher watcher(queue);
    windows->setActivationToken(desktop::takeStartToken(start.environment, QGuiApplication::platformName()));

    AppDelegate delegate({queue, files, preferences, *windows, *tokens, opener, watcher, scan,
                          [&opener, &queue] {
                              EventLoopQueue::runAsCoresAllow();
                              opener.prepare();
                              queue.postAfter(settledAfter, desktop::trimHeap);
                          },
                          [&icons] {
                              icons.forget();
                              IconCache::shared().retryMissing();
                          },
                          names.get(), locations.applicationSupport, locations.caches, language,
                          AppScanner::searchRoots(locations.home) + registered.watchedFolders()});
    const desktop::TerminationSignals signals([] { QCoreApplication::quit(); });
    delegate.applicationDidFinishLaunching();
    return QGuiApplication::exec();
}
