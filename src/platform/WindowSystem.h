#pragma once

#include <QString>
#include <cstdint>

class QScreen;
class QWindow;

namespace amberquill {

// What a desktop's window system does for the launcher's window beyond what Qt does itself. Main thread only.
class WindowSystem {
public:
    WindowSystem() = default;
    WindowSystem(const WindowSystem&) = delete;
    WindowSystem& operator=(const WindowSystem&) = delete;
    virtual ~WindowSystem() = default;

    // The screen under the pointer; null leaves the choice to the window system.
    [[nodiscard]] virtual QScreen* screenUnderPointer() const = 0;

    // Whether what lies behind a translucent window shows through it, now. Where it does not, it is black.
    [[nodiscard]] virtual bool blendsWindows() const { return true; }

    // Whether what lies behind a translucent window is blurred once it is presented, now. Only where windows
    // blend.
    [[nodiscard]] virtual bool blursBehindWindows() const { return false; }

    // Whether a program knows where on the screen its own windows are.
    [[nodiscard]] virtual bool tellsPlaces() const { return true; }

    // What came along with the user's wish to see the launcher and lets the next present() take the focus: an
    // activation token (Wayland), a startup notification id (X11). Empty: nothing came along.
    virtual void setActivationToken(const QString&) {}

    // When the user asked to see the launcher, on the X server's clock in milliseconds, for the next
    // present(). Without it, that is now.
    virtual void setUserTime(std::uint32_t) {}

    // Whether the window, while it is up, appears in task bars and window cycles. False at first. Window
    // systems without such a wish ignore it.
    virtual void setListedInTaskBars(bool) {}

    // Puts the window on screen: covering the whole of its screen, panels included, above other windows, on
    // every desktop, out of task bars and window cycles unless it is to be listed there; then brings it to
    // the front with the input focus. On a window that is up already: moves it to that screen and brings it
    // to the front again. The window keeps to a living screen from then on, whatever happens to this one.
    virtual void present(QWindow& window, QScreen* screen) = 0;

    // Takes the window off screen; the window that had the focus before gets it back.
    virtual void withdraw(QWindow& window) = 0;

    // Whether the input focus lies with no program's window, now: where a window manager found nobody to give
    // it to. False where that cannot be known.
    [[nodiscard]] virtual bool nobodyHasFocus() const { return false; }

    // The system's alert sound.
    virtual void beep() = 0;
};

class NullWindowSystem final : public WindowSystem {
public:
    [[nodiscard]] QScreen* screenUnderPointer() const override { return nullptr; }
    void present(QWindow&, QScreen*) override {}
    void withdraw(QWindow&) override {}
    void beep() override {}
};

} // namespace amberquill
