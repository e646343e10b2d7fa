#pragma once

#include "platform/MainQueue.h"

#include <QObject>
#include <functional>

class QWindow;

namespace amberquill {

class WindowSystem;

// Where several windows of one program close at a time, some window managers give the focus to one of them
// that is gone by then, and so to nobody: the keyboard would be dead with the launcher on the screen. After a
// window of ours has closed this asks for the focus again, for a second or two, unless somebody has it.
class FocusKeeper final : public QObject {
    Q_OBJECT

public:
    struct Actions {
        std::function<QWindow*()> heir; // the window that should have the focus now; null: none
        std::function<void()> ended;    // the focus is back, or not to be expected any more
    };

    // What it uses outlives it.
    FocusKeeper(WindowSystem& windows, MainQueue& queue, Actions actions);

    // Whether the focus that the application has lost is expected back.
    [[nodiscard]] bool expectsFocus() const;

    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void lookLater();
    void look();

    WindowSystem& windows_;
    MainQueue& queue_;
    Actions actions_;
    DelayedWork nextLook_;
    int looksLeft_ = 0; // 0: no window of ours has just closed
};

} // namespace amberquill
