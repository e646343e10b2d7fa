#pragma once

#include "platform/WindowSystem.h"
#include "platform/linux/windows/x11/Atoms.h"
#include "platform/linux/windows/x11/FocusFilter.h"

#include <QObject>
#include <QPointer>
#include <QWindow>
#include <optional>

namespace amberquill::desktop {

// The launcher's window by the Extended Window Manager Hints; also works without a window manager.
// Constructed after the application object, on its X connection.
class X11WindowSystem final : public QObject, public WindowSystem {
    Q_OBJECT

public:
    explicit X11WindowSystem(xcb_connection_t* connection);

    [[nodiscard]] QScreen* screenUnderPointer() const override;
    [[nodiscard]] bool blendsWindows() const override;
    [[nodiscard]] bool blursBehindWindows() const override;
    void setActivationToken(const QString& startupId) override;
    void setUserTime(UserTime time) override { userTime_ = time; }
    void setListedInTaskBars(bool listed) override;
    void present(QWindow& window, QScreen* screen) override;
    void withdraw(QWindow& window, std::function<void()> then) override;
    [[nodiscard]] bool nobodyHasFocus() const override;
    void beep() override;

    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void watch(QScreen* screen) const;
    void keepOnLivingScreen();
    void describe(QWindow& window);
    void place(QWindow& window, QScreen& screen);
    void move(QWindow& window, QScreen& screen);
    void reportPosition(QWindow& window) const;
    void noteUserTime();
    void giveFocusBack();

    [[nodiscard]] bool hasWindowManager() const;
    [[nodiscard]] std::optional<xcb_window_t> focusOwner() const;
    void setFocus(xcb_window_t owner);
    void askForState(xcb_window_t window, bool wanted, AtomName first, AtomName second);

    xcb_connection_t* connection_;
    xcb_window_t root_;
    Atoms atoms_;
    FocusFilter focusFilter_;
    QPointer<QWindow> window_;                 // the shown window
    std::optional<xcb_window_t> earlierFocus_; // gets the focus back; none: a window manager does that
    QString startupId_;
    std::optional<UserTime> userTime_; // of the X server, in milliseconds; none: now
    bool listedInTaskBars_ = false;
};

} // namespace amberquill::desktop
