#pragma once

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

    // Puts the window on screen: covering the whole of its screen, panels included, above other windows, on
    // every desktop, out of task bars and window cycles; then brings it to the front with the input focus. On
    // a window that is up already: brings it to the front again.
    virtual void present(QWindow& window, QScreen* screen) = 0;

    // Takes the window off screen; the window that had the focus before gets it back.
    virtual void withdraw(QWindow& window) = 0;

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
