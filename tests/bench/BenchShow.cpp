// Showing the hidden launcher: from show() to the first frame. Needs an X server, preferably with a window
// manager: $DISPLAY.
#include "data/IconCache.h"
#include "model/LauncherModel.h"
#include "motion/Timeline.h"
#include "platform/ActivationTokens.h"
#include "platform/ApplicationOpener.h"
#include "platform/ScrollDevices.h"
#include "platform/linux/capture/ScreenCaptures.h"
#include "platform/linux/queue/EventLoopQueue.h"
#include "platform/linux/windows/WindowSystems.h"
#include "support/MemoryFileSystem.h"
#include "support/MemoryPreferences.h"
#include "support/PlatformFakes.h"
#include "window/LauncherWindowController.h"

#include <QElapsedTimer>
#include <QGuiApplication>
#include <QQuickWindow>
#include <algorithm>
#include <cstdio>
#include <vector>

using namespace amberquill;

namespace {

constexpr int rounds = 40;
constexpr int applicationCount = 200;

std::vector<AppInfo> applications() {
    std::vector<AppInfo> apps;
    for (int i = 1; i <= applicationCount; ++i) {
        apps.push_back(
            {QStringLiteral("/Applications/%1.app").arg(i), QStringLiteral("Application %1").arg(i)});
    }
    return apps;
}

template<typename Condition>
void waitFor(Condition condition) {
    while (!condition()) {
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents, 50);
    }
}

} // namespace

int main(int argc, char** argv) {
    QQuickWindow::setGraphicsApi(QSGRendererInterface::Software);
    const QGuiApplication application(argc, argv);
    QGuiApplication::setQuitOnLastWindowClosed(false);
    EventLoopQueue queue;
    Timeline::shared().runOn(&queue);
    const FrameDriver driver(Timeline::shared());
    ColourIcons icons;
    IconCache::shared().serveFrom(&icons, &queue);
    MemoryFileSystem files;
    MemoryPreferences preferences;
    LauncherModel model(
        {queue, files, preferences, QStringLiteral("/data"), [] { return applications(); }, {}, {}});
    const auto windows = desktop::makeWindowSystem(queue);
    const auto screens = desktop::makeScreenCapture();
    NullActivationTokens tokens;
    FailingOpener opener;
    const NullScrollDevices devices;
    LauncherWindowController controller({model, queue, *windows, tokens, opener, devices, *screens});

    bool framed = false;
    QElapsedTimer sinceShow;
    std::vector<double> milliseconds;
    double taken = 0;
    QObject::connect(&controller.window(), &QQuickWindow::frameSwapped, [&] {
        if (!framed) {
            taken = static_cast<double>(sinceShow.nsecsElapsed()) / 1e6;
            framed = true;
        }
    });
    for (int round = 0; round <= rounds; ++round) {
        framed = false;
        sinceShow.start();
        controller.show();
        waitFor([&framed] { return framed; });
        if (round > 0) { // the first showing belongs to the start
            milliseconds.push_back(taken);
        }
        waitFor([] { return Timeline::shared().isIdle(); });
        controller.hide(std::nullopt);
        waitFor([&controller] { return !controller.window().isVisible(); });
    }
    std::sort(milliseconds.begin(), milliseconds.end());
    std::printf("shown again: median %.1f ms, best %.1f ms, worst %.1f ms\n", milliseconds[rounds / 2],
                milliseconds.front(), milliseconds.back());
    return 0;
}
