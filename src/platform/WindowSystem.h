#pragma once

#include "platform/UserTime.h"

#include <QString>
#include <functional>

class QScreen;
class QWindow;

namespace amberquill {

// The window system's services for the launcher's window that Qt does not offer. Main thread only.
class WindowSystem {
public:
    WindowSystem() = default;
    WindowSystem(const WindowSystem&) = delete;
    WindowSystem& operator=(const WindowSystem&) = delete;
    virtual ~WindowSystem() = default;

    // The screen under the pointer; null leaves the choice to the window system.
    [[nodiscard]] virtual QScreen* screenUnderPointer() const = 0;

    // Whether translucent windows are blended with the windows behind them, now. If not, they have black
    // behind.
    [[nodiscard]] virtual bool blendsWindows() const { return true; }

    // Whether the window system blurs the content behind a translucent window, now. Only if windows are
    // blended.
    [[nodiscard]] virtual bool blursBehindWindows() const { return false; }

    // Whether a program can find out where on the screen its own windows are.
    [[nodiscard]] virtual bool tellsPlaces() const { return true; }

    // The activation token (or startup notification id) of the user's action that shows the launcher: it lets
    // the next present() take the focus. Empty: the action had none.
    virtual void setActivationToken(const QString&) {}

    // When the user asked to see the launcher, for the next present(). Without it, that is now.
    virtual void setUserTime(UserTime) {}

    // Whether the window, while it is shown, appears in task bars and window switchers. False at first.
    // Window systems without such a setting ignore it.
    virtual void setListedInTaskBars(bool) {}

    // Shows the window over the whole screen, panels included, above other windows, on every virtual desktop,
    // and outside task bars and window switchers unless it is to be listed there; then brings it to the front
    // with the input focus. Moves a window that is shown already to that screen and brings it to the front
    // again. If the screen goes away later, the window moves to one that exists.
    virtual void present(QWindow& window, QScreen* screen) = 0;

    // Hides the window; the window that had the focus before gets it back. Calls `then` when the window is
    // hidden: before it returns, or soon. A present() before that keeps the window, and `then` is not called.
    virtual void withdraw(QWindow& window, std::function<void()> then) = 0;

    // Whether no window has the input focus now, because the window manager found none to give it to. False
    // if this cannot be found out.
    [[nodiscard]] virtual bool nobodyHasFocus() const { return false; }

    // The system's alert sound.
    virtual void beep() = 0;
};

} // namespace amberquill
