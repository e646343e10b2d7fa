#include "shell/AppDelegate.h"

#include "data/IconCache.h"
#include "platform/MainQueue.h"
#include "views/TileLayout.h"

#include <QGuiApplication>
#include <QScreen>
#include <algorithm>
#include <cmath>

namespace amberquill {

AppDelegate::AppDelegate(const Services& services)
    : services_(services)
    , model_({services.queue, services.files, services.preferences, services.applicationSupport,
              services.scan, services.rememberedNames})
    , names_(services.queue, services.files, services.caches, services.language)
    , live_({model_, services.queue, services.watcher, services.retryIcons}) {
    names_.follow(model_);
}

void AppDelegate::applicationDidFinishLaunching() {
    prefetchFirstPage();
    controller_ = std::make_shared<LauncherWindowController>(LauncherWindowController::Services{
        model_, services_.queue, services_.windows, services_.tokens, services_.opener});
    model_.setController(controller_);
    connect(qGuiApp, &QGuiApplication::applicationStateChanged, this, &AppDelegate::applicationStateChanged);
    connect(qGuiApp, &QGuiApplication::aboutToQuit, this, &AppDelegate::applicationWillTerminate);
    connect(&controller_->window(), &QQuickWindow::frameSwapped, this, &AppDelegate::firstFrameShown,
            Qt::ConnectionType(Qt::QueuedConnection | Qt::SingleShotConnection));
    frameLog_ = std::make_unique<FrameLog>(controller_->window());
    controller_->show();
}

// The first page's icons are decoded while the views are being made.
void AppDelegate::prefetchFirstPage() {
    const QScreen* screen = QGuiApplication::primaryScreen();
    if (screen == nullptr) {
        return;
    }
    const double ratio = screen->devicePixelRatio();
    const GridMetrics metrics{screen->size(), model_.columns(), model_.rows()};
    const int edge = static_cast<int>(std::lround(TileLayout::of(metrics, ratio).icon.width() * ratio));
    const LaunchItems& items = model_.items();
    const auto count = std::min(items.size(), static_cast<std::size_t>(metrics.slotsPerPage()));
    for (std::size_t i = 0; i < count; ++i) {
        if (const QString* path = items[i].asApp()) {
            IconCache::shared().icon(*path, edge);
        }
    }
}

// What nobody waits for is done once the launcher is on the screen.
void AppDelegate::firstFrameShown() {
    live_.watch(services_.watchedFolders);
    services_.prepareOpening();
}

void AppDelegate::applicationStateChanged(Qt::ApplicationState state) {
    // A focus that the window manager has not given yet is not one that was lost.
    const bool isActive = state == Qt::ApplicationActive;
    if (std::exchange(wasActive_, isActive) && !isActive) {
        controller_->hide(std::nullopt);
    }
}

void AppDelegate::applicationWillTerminate() {
    model_.save();
    model_.flushSaves();
}

} // namespace amberquill
