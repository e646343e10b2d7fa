#pragma once

#include "platform/MainQueue.h"
#include "shell/FocusPolicy.h"

#include <QObject>
#include <QString>

class QWindow;

namespace amberquill {

class LauncherWindowController;
class WindowSystem;
struct PressOrigin;

// Shows and hides the launcher as FocusPolicy decides: on request, and as the program gets and loses the
// focus. Main thread only.
class FocusController final : public QObject {
    Q_OBJECT

public:
    // Both outlive this object.
    FocusController(WindowSystem& windows, MainQueue& queue);

    // Whether the latest request before launch() was to hide the launcher.
    [[nodiscard]] bool startsHidden() const { return policy_.startsHidden(); }

    // Shows the launcher unless it starts hidden. From here on requests take effect at once, and the focus is
    // followed. The launcher outlives this object.
    void launch(LauncherWindowController& launcher);

    // `token`, if any, is the activation token or startup id that came with the request.
    void show(const QString& token = {});
    void hide();
    // Hides the launcher if it is shown and the program is active, else shows it.
    void toggle(const PressOrigin& origin);

    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void raise(FocusPolicy::Event event) { perform(decide(event)); }
    QList<FocusPolicy::Action> decide(FocusPolicy::Event event);
    void perform(const QList<FocusPolicy::Action>& actions);
    [[nodiscard]] FocusPolicy::Facts facts() const;
    // The window of the program that should have the focus; null: none.
    [[nodiscard]] QWindow* candidate() const;

    WindowSystem& windows_;
    MainQueue& queue_;
    LauncherWindowController* launcher_ = nullptr; // until launch()
    FocusPolicy policy_;
    DelayedWork nextCheck_;
};

} // namespace amberquill
