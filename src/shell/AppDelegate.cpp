#include "shell/AppDelegate.h"

#include "platform/MainQueue.h"

#include <QGuiApplication>

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

// What nobody waits for is done once the launcher is on the screen.
void AppDelegate::firstFrameShown() {
    live_.watch(services_.watchedFolders);
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
