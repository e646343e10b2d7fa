#pragma once

#include "platform/MainQueue.h"

#include <QLibraryInfo>
#include <QObject>
#include <QVersionNumber>
#include <functional>

class QWindow;

namespace amberquill::desktop {

// Waits until a window can be hidden safely. When the compositor has shown a frame it answers, and Qt frees
// the answer's callback on a thread of its own. Hiding the window frees a callback without an answer on the
// main thread. Qt 6.4 does so without a lock, and the program aborts when both free the same callback. Qt 6.8
// has the lock; earlier versions are taken for not having it. Main thread only.
class LastFrame final : public QObject {
public:
    // The queue outlives this object. `qt` is the version of Qt that runs.
    explicit LastFrame(MainQueue& queue, const QVersionNumber& qt = QLibraryInfo::version());

    // Calls `then` once the latest frame has been answered, or after a tenth of a second without an answer:
    // compositors answer no frames of windows that cannot be seen. Until then the window draws no other
    // frame. Calls it at once for a hidden window, and where Qt has the lock.
    void await(QWindow& window, std::function<void()> then);

    // Ends the wait without calling `then`. The window draws again.
    void cancel();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void end();

    MainQueue& queue_;
    bool isNeeded_;
    QWindow* window_ = nullptr; // null: no wait
    std::function<void()> then_;
    Context wait_;
};

} // namespace amberquill::desktop
