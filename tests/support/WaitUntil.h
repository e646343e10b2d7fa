#pragma once

#include <QElapsedTimer>
#include <QEventLoop>
#include <QTimer>
#include <functional>

namespace amberquill {

// Runs the event loop until the condition holds. False: it does not within ten seconds.
inline bool waitUntil(const std::function<bool()>& condition) {
    constexpr qint64 longestMilliseconds = 10'000;
    QElapsedTimer elapsed;
    elapsed.start();
    QTimer wake; // for conditions that no event of ours announces
    wake.start(2);
    QEventLoop loop;
    while (!condition()) {
        if (elapsed.elapsed() > longestMilliseconds) {
            return false;
        }
        loop.processEvents(QEventLoop::WaitForMoreEvents);
    }
    return true;
}

} // namespace amberquill
