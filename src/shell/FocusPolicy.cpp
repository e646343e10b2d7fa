#include "shell/FocusPolicy.h"

#include <utility>

namespace amberquill {

QList<FocusPolicy::Action> FocusPolicy::handle(Event event, const Facts& facts) {
    switch (event) {
    case Event::Launched:
        hasLaunched_ = true;
        return startsHidden_ ? QList<Action>() : show(facts);
    case Event::ShowRequested:
        startsHidden_ = false;
        return hasLaunched_ ? show(facts) : QList<Action>();
    case Event::HideRequested:
        startsHidden_ = true;
        return hasLaunched_ ? QList{Action::Hide} : QList<Action>();
    case Event::ToggleRequested:
        return handle(facts.isShown && isActive_ ? Event::HideRequested : Event::ShowRequested, facts);
    case Event::Activated:
        return applicationDidBecomeActive(facts);
    case Event::Deactivated:
        return applicationDidResignActive(facts);
    case Event::WindowFocused:
        hadFocus_ = true;
        break;
    case Event::WindowClosed:
        return std::exchange(checksLeft_, mostChecks) == 0 ? QList{Action::CheckLater} : QList<Action>();
    case Event::CheckDue:
        return check(facts);
    }
    return {};
}

QList<FocusPolicy::Action> FocusPolicy::show(const Facts& facts) {
    awaitsActivation_ = !isActive_;
    hidesUnlessFocused_ = false;
    // The end of a focus from before the launcher was hidden may be reported only now. It hides nothing.
    hadFocus_ = hadFocus_ && facts.isShown;
    return {Action::Show};
}

QList<FocusPolicy::Action> FocusPolicy::applicationDidBecomeActive(const Facts& facts) {
    const bool wasActive = std::exchange(isActive_, true);
    hadFocus_ = true;
    hidesUnlessFocused_ = false;
    if (wasActive) {
        return {};
    }
    // The focus that a show requested may arrive after the launcher has been hidden again.
    const bool wasRequested = std::exchange(awaitsActivation_, false);
    // A window manager may return the focus to the launcher's window during its fade-out.
    if (wasRequested || facts.isShown || facts.isOnScreen || facts.hasOtherWindow) {
        return {};
    }
    return {Action::Show};
}

QList<FocusPolicy::Action> FocusPolicy::applicationDidResignActive(const Facts& facts) {
    // A focus that the window manager has not given yet cannot be lost.
    const bool wasActive = std::exchange(isActive_, false);
    const bool isLost = wasActive && hadFocus_;
    hidesUnlessFocused_ = isLost && isChecking() && facts.hasCandidate && facts.nobodyHasFocus;
    return isLost && !hidesUnlessFocused_ ? QList{Action::Hide} : QList<Action>();
}

QList<FocusPolicy::Action> FocusPolicy::check(const Facts& facts) {
    --checksLeft_;
    if (isChecking() && facts.hasCandidate && facts.nobodyHasFocus) {
        return {Action::RequestFocus, Action::CheckLater};
    }
    checksLeft_ = 0;
    return std::exchange(hidesUnlessFocused_, false) ? QList{Action::Hide} : QList<Action>();
}

} // namespace amberquill
