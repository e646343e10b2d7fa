#pragma once

#include "platform/WindowSystem.h"

#include <QWindow>

namespace amberquill::desktop {

// A window system of which nothing is known but what Qt can do on all of them.
class PlainWindowSystem final : public WindowSystem {
public:
    [[nodiscard]] QScreen* screenUnderPointer() const override { return nullptr; }

    void present(QWindow& window, QScreen* screen) override {
        if (screen != nullptr) {
            window.setScreen(screen);
        }
        window.showFullScreen();
    }

    void withdraw(QWindow& window) override { window.hide(); }
    void beep() override {}
};

} // namespace amberquill::desktop
