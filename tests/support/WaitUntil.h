#pragma once

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QTimer>
#include <chrono>
#include <functional>
#include <thread>

namespace amberquill {

// Runs the event loop until the condition holds. Without an application object, only polls the condition.
// False: the condition does not hold within ten seconds.
inline bool waitUntil(const std::function<bool()>& condition) {
    constexpr qint64 longestMilliseconds = 10'000;
    constexpr std::chrono::milliseconds pause{2};
    QElapsedTimer elapsed;
    elapsed.start();
    if (QCoreApplication::instance() == nullptr) {
        while (!condition()) {
            if (elapsed.elapsed() > longestMilliseconds) {
                return false;
            }
            std::this_thread::sleep_for(pause);
        }
        return true;
    }
    QTimer wake; // for conditions that become true without an event
    wake.start(pause);
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
