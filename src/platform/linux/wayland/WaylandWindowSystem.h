// platform/linux/wayland/: the launcher's window under Wayland compositors, through the protocols they offer.
#pragma once

#include "platform/WindowSystem.h"

#include <QString>
#include <memory>

namespace amberquill::desktop {

class DialogFocus;

// A full-screen toplevel by xdg-shell. Which screen it covers, what lies above it and whether task bars list
// it are the compositor's to decide.
class WaylandWindowSystem final : public WindowSystem {
public:
    WaylandWindowSystem();
    ~WaylandWindowSystem() override;

    WaylandWindowSystem(const WaylandWindowSystem&) = delete;
    WaylandWindowSystem& operator=(const WaylandWindowSystem&) = delete;

    [[nodiscard]] QScreen* screenUnderPointer() const override { return nullptr; }
    void setActivationToken(const QString& token) override;
    void present(QWindow& window, QScreen* screen) override;
    void withdraw(QWindow& window) override;
    // Silent: no protocol that Debian 12's compositors speak rings a bell.
    void beep() override {}

private:
    QString token_;
    std::unique_ptr<DialogFocus> dialogFocus_;
};

} // namespace amberquill::desktop
