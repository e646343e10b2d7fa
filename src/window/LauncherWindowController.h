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

// Shows and hides the launcher's window, and opens the application that hiding was asked for. Main thread
// only.
class LauncherWindowController final : public QObject, public LauncherController {
    Q_OBJECT

public:
    // All of it outlives the controller.
    struct Services {
        LauncherModel& model;
        MainQueue& queue;
        WindowSystem& windows;
        ActivationTokens& tokens;
        ApplicationOpener& opener;
        const ScrollDevices& scrollDevices;
        ScreenCapture& screens;
        // For the first showing, begun while the program starts; null: there is none.
        std::shared_ptr<const Backdrop> firstBackdrop = {};
    };

    explicit LauncherWindowController(const Services& services);
    ~LauncherWindowController() override;

    LauncherWindowController(const LauncherWindowController&) = delete;
    LauncherWindowController& operator=(const LauncherWindowController&) = delete;

    // True from the start of show() until the start of hide().
    [[nodiscard]] bool isShown() const { return isShown_; }

    // Brings the launcher up on the screen under the pointer; when it is up, brings it to the front again.
    void show();

    // Fades the launcher out and takes it off screen, then opens the application. A show() in the meantime
    // wins: the window stays and nothing is opened. While hidden, opens at once. The window takes no input
    // from here on until it is shown again.
    void hide(const std::optional<QString>& thenOpen) override;

    // What shows the menu above the window: at a place in global points, or at the pointer.
    using PopUpMenu = std::function<void(QWindow& above, const std::optional<QPoint>& place)>;
    void setMenu(PopUpMenu popUp) { popUpMenu_ = std::move(popUp); }
    void showMenu() override;

    // What answers the main menu's key equivalents while the launcher is up: whether the key was one.
    using KeyEquivalents = std::function<bool(const QKeyEvent& event)>;
    void setKeyEquivalents(KeyEquivalents perform) { keyEquivalents_ = std::move(perform); }

    void endEditing() override { window_.endEditing(); }

    // Whether the user works with another window of the program: one that is visible and takes keys, or one
    // of the auxiliary flows.
    [[nodiscard]] bool hasOtherWindow() const;

    // The names of the flows with windows of their own that are open now; who opens one enters it here and
    // takes it out again.
    [[nodiscard]] static QSet<QString>& auxiliaryFlows();

    [[nodiscard]] LauncherWindow& window() { return window_; }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    // An application that is opened once the fade is over and the token for it is there.
    struct Opening {
        QString path;
        std::optional<QString> token;
        bool fadeIsOver = false;
    };

    // Whether the key goes no further.
    bool handleKey(const QKeyEvent& event);
    bool performInstead(KeyAction action);
    void focusFieldFor(const QKeyEvent& event);
    void popUpMenu(const std::optional<QPoint>& place);
    void renewBackdrop(const QScreen* screen);
    [[nodiscard]] bool isJustWithdrawn() const;
    [[nodiscard]] bool earlierBackdropServes() const;
    void requestToken(const QString& path);
    void fadeEnded();
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
    double withdrawnAt_ = -1; // on the queue's clock; negative: not yet
    std::optional<Opening> opening_;
    Context showing_; // for the end of the latest showing; reset by the next one
    Context context_;
};

} // namespace amberquill
