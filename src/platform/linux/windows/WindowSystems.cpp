#include "platform/linux/windows/WindowSystems.h"

#include "platform/linux/windows/wayland/WaylandWindowSystem.h"
#include "platform/linux/windows/x11/X11WindowSystem.h"

#include <QGuiApplication>
#include <QWindow>
#include <qpa/qplatformnativeinterface.h>

namespace amberquill::desktop {

Q_LOGGING_CATEGORY(windowsLog, "amberquill.windows", QtCriticalMsg)

using namespace Qt::StringLiterals;

namespace {

// An unknown window system: only what Qt does on every one.
class PlainWindowSystem final : public WindowSystem {
public:
    [[nodiscard]] QScreen* screenUnderPointer() const override { return nullptr; }

    void present(QWindow& window, QScreen* screen) override {
        if (screen != nullptr) {
            window.setScreen(screen);
        }
        window.showFullScreen();
    }

    void withdraw(QWindow& window, std::function<void()> then) override {
        window.hide();
        then();
    }

    void beep() override {}
};

} // namespace

std::unique_ptr<WindowSystem> makeWindowSystem(MainQueue& queue) {
    if (const auto* x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>()) {
        qCDebug(windowsLog) << "X11";
        return std::make_unique<X11WindowSystem>(x11->connection());
    }
    if (QGuiApplication::platformName().startsWith(u"wayland"_s)) {
        qCDebug(windowsLog) << "Wayland";
        return std::make_unique<WaylandWindowSystem>(
            static_cast<wl_display*>(
                QGuiApplication::platformNativeInterface()->nativeResourceForIntegration("wl_display")),
            queue);
    }
    qCDebug(windowsLog) << "unknown window system" << QGuiApplication::platformName();
    return std::make_unique<PlainWindowSystem>();
}

} // namespace amberquill::desktop
