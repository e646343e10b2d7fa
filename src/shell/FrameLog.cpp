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
        &window, &QQuickWindow::afterAnimating, this, [this] { complete_ = IconCache::shared().isIdle(); },
        Qt::DirectConnection);
    connect(
        &window, &QQuickWindow::frameSwapped, this,
        [this] { qCDebug(frames, "frame %.6f %s", now(), complete_ ? "complete" : "incomplete"); },
        Qt::DirectConnection);
}

} // namespace amberquill
