#pragma once

#include <QList>
#include <QObject>

namespace amberquill {

// Decides when a lost focus hides the launcher, when an activation shows it, and when the focus is requested
// again. A state machine without windows, queue or clock: events go in, actions come out. FocusController
// supplies the events and carries out the actions.
class FocusPolicy {
    Q_GADGET

public:
    enum class Event {
        Launched,      // the program has started; only now can the launcher be shown
        ShowRequested, // by the user
        HideRequested,
        ToggleRequested,
        Activated, // the program has the focus in one of its windows
        Deactivated,
        WindowFocused, // one of the program's windows has got the focus
        WindowClosed,  // one of the program's windows, except menus and tool tips
        CheckDue,      // as asked for by Action::CheckLater
    };
    Q_ENUM(Event)

    enum class Action {
        Show, // or bring to the front, with the focus
        Hide,
        RequestFocus, // for the window that should have it
        CheckLater,   // raise CheckDue after checkInterval
    };
    Q_ENUM(Action)

    // The windows at the time of the event.
    struct Facts {
        bool isShown = false;        // the launcher; false from the beginning of its fade-out on
        bool isOnScreen = false;     // the launcher's window; true until the end of the fade-out
        bool hasOtherWindow = false; // the program has a dialog open
        bool hasCandidate = false;   // a window of the program should have the focus
        bool nobodyHasFocus = false; // no window of any program has it; needed only while isChecking()
    };

    static constexpr double checkInterval = 0.1; // seconds
    static constexpr int mostChecks = 20;

    [[nodiscard]] QList<Action> handle(Event event, const Facts& facts);

    // Whether a request before Event::Launched keeps the launcher hidden.
    [[nodiscard]] bool startsHidden() const { return startsHidden_; }

    // When several windows of a program close together, some window managers give the focus to one that is
    // already gone: nobody has the focus. So after a window has closed the policy checks for two seconds and
    // requests the focus while nobody has it.
    [[nodiscard]] bool isChecking() const { return checksLeft_ > 0; }

private:
    QList<Action> show(const Facts& facts);
    QList<Action> applicationDidBecomeActive(const Facts& facts);
    QList<Action> applicationDidResignActive(const Facts& facts);
    QList<Action> check(const Facts& facts);

    bool hasLaunched_ = false;
    bool startsHidden_ = false;
    bool isActive_ = false;
    bool hadFocus_ = false;           // since the launcher was last shown on request
    bool awaitsActivation_ = false;   // the latest show requested the focus; no activation since
    bool hidesUnlessFocused_ = false; // the focus was lost with a closed window and may still return
    int checksLeft_ = 0;
};

} // namespace amberquill
