#pragma once

#include "platform/WindowSystem.h"
#include "platform/linux/wayland/EventQueue.h"
#include "platform/linux/wayland/Globals.h"
#include "platform/linux/windows/wayland/LastFrame.h"
#include "platform/linux/windows/wayland/blur/BlurBehind.h"

#include <QString>
#include <memory>

struct wl_display;

namespace amberquill::desktop {

class DialogFocus;

// A full-screen toplevel by xdg-shell. The compositor decides which screen the window covers, which windows
// are above it, and whether task bars list it.
class WaylandWindowSystem final : public WindowSystem {
public:
    // Constructed after the application object, on its connection. The queue outlives this object.
    WaylandWindowSystem(wl_display* display, MainQueue& queue);
    ~WaylandWindowSystem() override;

    WaylandWindowSystem(const WaylandWindowSystem&) = delete;
    WaylandWindowSystem& operator=(const WaylandWindowSystem&) = delete;

    [[nodiscard]] QScreen* screenUnderPointer() const override { return nullptr; }
    [[nodiscard]] bool blendsWindows() const override;
    [[nodiscard]] bool blursBehindWindows() const override;
    [[nodiscard]] bool tellsPlaces() const override { return false; }
    void setActivationToken(const QString& token) override;
    void present(QWindow& window, QScreen* screen) override;
    void withdraw(QWindow& window, std::function<void()> then) override;
    // Silent: the compositors of Debian 12 offer no protocol for a bell.
    void beep() override {}

private:
    void follow() const;

    QString token_;
    // Mutable: const questions first handle the pending events.
    mutable EventQueue events_;
    Globals globals_;
    mutable BlurBehind blur_;
    std::unique_ptr<DialogFocus> dialogFocus_;
    LastFrame lastFrame_;
};

} // namespace amberquill::desktop
