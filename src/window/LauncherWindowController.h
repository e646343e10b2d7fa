#pragma once

#include "model/LauncherController.h"
#include "model/LauncherModel.h"
#include "motion/Animated.h"
#include "platform/MainQueue.h"
#include "window/LauncherKeys.h"
#include "window/LauncherWindow.h"
#include "window/ScrollEvents.h"

#include <QObject>
#include <QPoint>
#include <QSet>
#include <QString>
#include <functional>
#include <memory>
#include <optional>

class QKeyEvent;

namespace amberquill {

class ActivationTokens;
class ApplicationOpener;
class Backdrop;
class ScreenCapture;
class WindowSystem;

// Shows and hides the launcher's window, and opens the application that the window was hidden for. Main
// thread only.
class LauncherWindowController final : public QObject, public LauncherController {
    Q_OBJECT

public:
    // All outlive the controller.
    struct Services {
        LauncherModel& model;
        MainQueue& queue;
        WindowSystem& windows;
        ActivationTokens& tokens;
        ApplicationOpener& opener;
        const ScrollDevices& scrollDevices;
        ScreenCapture& screens;
        // For the first showing, begun while the program starts. May be null.
        std::shared_ptr<const Backdrop> firstBackdrop = {};
    };

    explicit LauncherWindowController(const Services& services);
    ~LauncherWindowController() override;

    LauncherWindowController(const LauncherWindowController&) = delete;
    LauncherWindowController& operator=(const LauncherWindowController&) = delete;

    // True from the start of show() until the start of hide().
    [[nodiscard]] bool isShown() const { return isShown_; }

    // Shows the launcher on the screen under the pointer. If it is shown already, raises it.
    void show();

    // Fades the launcher out, takes it off the screen, and opens the application. After a show() in the
    // meantime the window stays and nothing is opened. A hidden launcher opens the application at once. The
    // window takes no input until it is shown again.
    void hide(const std::optional<QString>& thenOpen) override;

    // For the program's end: takes the launcher off the screen without a fade, then calls `then`. Until that
    // has returned, nothing shows the launcher.
    void leave(std::function<void()> then);

    // Shows the menu above the window: at a place in global points, or at the pointer.
    using PopUpMenu = std::function<void(QWindow& above, const std::optional<QPoint>& place)>;
    void setMenu(PopUpMenu popUp) { popUpMenu_ = std::move(popUp); }
    void showMenu() override;

    // Runs the main menu's entry with this key equivalent. False: there is none. Asked while the launcher is
    // shown.
    using KeyEquivalents = std::function<bool(const QKeyEvent& event)>;
    void setKeyEquivalents(KeyEquivalents perform) { keyEquivalents_ = std::move(perform); }

    void endEditing() override { window_.endEditing(); }

    // Whether another window of the program is visible and takes keys, or an auxiliary flow is open.
    [[nodiscard]] bool hasOtherWindow() const;

    // The names of the open flows with windows of their own. A flow inserts its name when it opens and
    // removes it when it ends.
    [[nodiscard]] static QSet<QString>& auxiliaryFlows();

    [[nodiscard]] LauncherWindow& window() { return window_; }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    // An application that is opened once the fade is over and its activation token has come.
    struct Opening {
        QString path;
        std::optional<QString> token;
        bool fadeIsOver = false;
    };

    // True: the key is consumed.
    bool handleKey(const QKeyEvent& event);
    bool perform(KeyAction action);
    void focusFieldFor(const QKeyEvent& event);
    void popUpMenu(const std::optional<QPoint>& place);
    void renewBackdrop(const QScreen* screen);
    [[nodiscard]] bool isJustWithdrawn() const;
    [[nodiscard]] bool canReuseBackdrop() const;
    void requestToken(const QString& path);
    void withdrawn();
    void openWhenReady();
    void open(const QString& path, const QString& token);

    Services services_;
    LauncherWindow window_;
    std::shared_ptr<const Backdrop> backdrop_; // of the latest showing
    ScrollEvents scroll_;
    Animated fade_; // the window's alpha
    PopUpMenu popUpMenu_;
    KeyEquivalents keyEquivalents_;
    bool isShown_ = false;
    bool isLeaving_ = false;  // the program is about to end
    double withdrawnAt_ = -1; // by the queue's clock; negative: never
    std::optional<Opening> opening_;
    DelayedWork fadeEnd_;
    Context showing_; // for the end of the latest showing; reset by the next one
    Context context_;
};

} // namespace amberquill
