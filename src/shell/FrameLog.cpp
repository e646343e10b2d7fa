#include "shell/FrameLog.h"

#include "data/IconCache.h"

#include <QLoggingCategory>
#include <QQuickWindow>
#include <chrono>

namespace amberquill {

namespace {

Q_LOGGING_CATEGORY(frames, "amberquill.frames", QtCriticalMsg)

double now() {
    return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count();
}

} // namespace

FrameLog::FrameLog(QQuickWindow& window, QObject* parent)
    : QObject(parent) {
    if (!frames().isDebugEnabled()) {
        return;
    }
    connect(
        &window, &QQuickWindow::afterAnimating, this,
        [this] {
            complete_ = IconCache::shared().isIdle();
            begun_ = now();
        },
        Qt::DirectConnection);
    connect(
        &window, &QQuickWindow::frameSwapped, this,
        [this] {
            const double end = now();
            qCDebug(frames, "frame %.6f %s %.6f", end, complete_ ? "complete" : "incomplete", end - begun_);
        },
        Qt::DirectConnection);
}

} // namespace amberquill
