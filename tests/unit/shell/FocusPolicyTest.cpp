#include "shell/FocusPolicy.h"

#include <gtest/gtest.h>

using namespace amberquill;

namespace {

using Event = FocusPolicy::Event;
using Action = FocusPolicy::Action;
using Facts = FocusPolicy::Facts;
using Actions = QList<Action>;

constexpr Facts hidden;
constexpr Facts shown{.isShown = true, .isOnScreen = true, .hasCandidate = true};
constexpr Facts fadingOut{.isOnScreen = true};
constexpr Facts hiddenWithDialog{.hasOtherWindow = true, .hasCandidate = true};
constexpr Facts shownWithoutAnyFocus{
    .isShown = true, .isOnScreen = true, .hasCandidate = true, .nobodyHasFocus = true};
constexpr Facts hiddenWithoutAnyFocus{.nobodyHasFocus = true};

const Actions nothing;
const Actions show{Action::Show};
const Actions hide{Action::Hide};
const Actions checkLater{Action::CheckLater};
const Actions requestFocus{Action::RequestFocus, Action::CheckLater};

struct Step {
    Event event;
    Facts facts;
    Actions expected;
};

struct Row {
    const char* name;
    QList<Step> steps;
};

// Each row begins with a new policy.
const QList<Row> rows = {
    {"TheStartShowsTheLauncher", {{Event::Launched, hidden, show}}},
    {"AHideRequestDuringTheStartKeepsTheLauncherHidden",
     {{Event::HideRequested, hidden, nothing},
      {Event::Launched, hidden, nothing},
      {Event::ShowRequested, hidden, show}}},
    {"TheLastRequestDuringTheStartCounts",
     {{Event::ShowRequested, hidden, nothing},
      {Event::HideRequested, hidden, nothing},
      {Event::ToggleRequested, hidden, nothing},
      {Event::Launched, hidden, show}}},
    {"ALostFocusHides",
     {{Event::Launched, hidden, show},
      {Event::Activated, shown, nothing},
      {Event::Deactivated, shown, hide}}},
    {"AFocusThatWasRefusedIsNotLost",
     {{Event::Launched, hidden, show},
      {Event::Deactivated, shown, nothing},
      {Event::Deactivated, shown, nothing}}},
    {"AProgramThatWasNotActiveLosesNoFocus",
     {{Event::Launched, hidden, show},
      {Event::WindowFocused, shown, nothing},
      {Event::Deactivated, shown, nothing}}},
    {"AFocusIsLostOnce",
     {{Event::Launched, hidden, show},
      {Event::Activated, shown, nothing},
      {Event::Deactivated, shown, hide},
      {Event::Deactivated, fadingOut, nothing}}},
    {"AToggleShowsWhatIsHidden",
     {{Event::HideRequested, hidden, nothing},
      {Event::Launched, hidden, nothing},
      {Event::ToggleRequested, hidden, show}}},
    {"AToggleBringsAnInactiveLauncherToTheFront",
     {{Event::Launched, hidden, show}, {Event::ToggleRequested, shown, show}}},
    {"AToggleHidesAnActiveLauncher",
     {{Event::Launched, hidden, show},
      {Event::Activated, shown, nothing},
      {Event::ToggleRequested, shown, hide}}},
    {"AToggleShowsWhatFadesOut",
     {{Event::Launched, hidden, show},
      {Event::Activated, shown, nothing},
      {Event::ToggleRequested, shown, hide},
      {Event::ToggleRequested, fadingOut, show}}},
    {"AnActivationShowsAHiddenLauncher",
     {{Event::Launched, hidden, show},
      {Event::Activated, shown, nothing},
      {Event::Deactivated, shown, hide},
      {Event::Activated, hidden, show},
      {Event::Deactivated, shown, hide}}},
    {"AnActivationInADialogShowsNothing",
     {{Event::Launched, hidden, show},
      {Event::Activated, shown, nothing},
      {Event::Deactivated, shown, hide},
      {Event::Activated, hiddenWithDialog, nothing}}},
    {"AnActivationLeavesAShownLauncherAlone",
     {{Event::Launched, hidden, show},
      {Event::Activated, shown, nothing},
      {Event::WindowClosed, shownWithoutAnyFocus, checkLater},
      {Event::Deactivated, shownWithoutAnyFocus, nothing},
      {Event::Activated, {.isShown = true}, nothing}}},
    {"AShowOfAnActiveProgramAwaitsNoActivation",
     {{Event::Launched, hidden, show},
      {Event::Activated, shown, nothing},
      {Event::ShowRequested, shown, show},
      {Event::Deactivated, shown, hide},
      {Event::Activated, hidden, show}}},
    {"AnActiveProgramThatIsActivatedAgainShowsNothing",
     {{Event::Launched, hidden, show},
      {Event::Activated, shown, nothing},
      {Event::HideRequested, shown, hide},
      {Event::Activated, hidden, nothing}}},
    {"ARequestedFocusThatArrivesAfterTheHideShowsNothing",
     {{Event::Launched, hidden, show},
      {Event::HideRequested, shown, hide},
      {Event::Activated, hidden, nothing},
      {Event::Deactivated, hidden, hide},
      {Event::ShowRequested, hidden, show},
      {Event::HideRequested, shown, hide},
      {Event::Activated, hidden, nothing},
      {Event::Deactivated, hidden, hide},
      {Event::Activated, hidden, show}}},
    {"TheEndOfAFocusFromBeforeTheHideHidesNothing",
     {{Event::Launched, hidden, show},
      {Event::Activated, shown, nothing},
      {Event::HideRequested, shown, hide},
      {Event::ShowRequested, hidden, show},
      {Event::Deactivated, shown, nothing},
      {Event::Activated, shown, nothing},
      {Event::Deactivated, shown, hide}}},
    {"AFocusThatAWindowGotSinceTheShowCanBeLost",
     {{Event::Launched, hidden, show},
      {Event::Activated, shown, nothing},
      {Event::HideRequested, shown, hide},
      {Event::ShowRequested, hidden, show},
      {Event::WindowFocused, shown, nothing},
      {Event::Deactivated, shown, hide}}},
    {"ALauncherBroughtToTheFrontKeepsItsFocus",
     {{Event::Launched, hidden, show},
      {Event::Activated, shown, nothing},
      {Event::ShowRequested, shown, show},
      {Event::Deactivated, shown, hide}}},
    {"AFocusThatNobodyHasAfterADialogHasClosedIsRequested",
     {{Event::Launched, hidden, show},
      {Event::Activated, shown, nothing},
      {Event::WindowClosed, shownWithoutAnyFocus, checkLater},
      {Event::CheckDue, shownWithoutAnyFocus, requestFocus},
      {Event::CheckDue, shownWithoutAnyFocus, requestFocus},
      {Event::CheckDue, shown, nothing}}},
    {"AFocusThatAnotherProgramHasIsNotRequested",
     {{Event::Launched, hidden, show},
      {Event::WindowClosed, shown, checkLater},
      {Event::CheckDue, shown, nothing}}},
    {"WithoutACandidateNoFocusIsRequested",
     {{Event::Launched, hidden, show},
      {Event::HideRequested, shown, hide},
      {Event::WindowClosed, hiddenWithoutAnyFocus, checkLater},
      {Event::CheckDue, hiddenWithoutAnyFocus, nothing}}},
    {"AfterTheLastCheckTheNextClosedWindowStartsAnew",
     {{Event::Launched, hidden, show},
      {Event::WindowClosed, shown, checkLater},
      {Event::CheckDue, shown, nothing},
      {Event::WindowClosed, shown, checkLater}}},
    {"ALauncherThatLostItsFocusWithADialogHidesWhenAnotherProgramGetsIt",
     {{Event::Launched, hidden, show},
      {Event::Activated, shown, nothing},
      {Event::WindowClosed, shownWithoutAnyFocus, checkLater},
      {Event::Deactivated, shownWithoutAnyFocus, nothing},
      {Event::CheckDue, shownWithoutAnyFocus, requestFocus},
      {Event::CheckDue, shown, hide},
      {Event::WindowClosed, hidden, checkLater},
      {Event::CheckDue, hidden, nothing}}},
    {"ALauncherThatNeverHadTheFocusIsNotHiddenByTheChecks",
     {{Event::Launched, hidden, show},
      {Event::WindowClosed, shownWithoutAnyFocus, checkLater},
      {Event::Deactivated, shownWithoutAnyFocus, nothing},
      {Event::CheckDue, shown, nothing}}},
    {"ALauncherThatLostItsFocusWithADialogStaysWhenTheFocusReturns",
     {{Event::Launched, hidden, show},
      {Event::Activated, shown, nothing},
      {Event::WindowClosed, shownWithoutAnyFocus, checkLater},
      {Event::Deactivated, shownWithoutAnyFocus, nothing},
      {Event::Activated, shown, nothing},
      {Event::CheckDue, shown, nothing}}},
    {"ALauncherThatLostItsFocusWithADialogStaysWhenItIsShownAgain",
     {{Event::Launched, hidden, show},
      {Event::Activated, shown, nothing},
      {Event::WindowClosed, shownWithoutAnyFocus, checkLater},
      {Event::Deactivated, shownWithoutAnyFocus, nothing},
      {Event::ShowRequested, shown, show},
      {Event::CheckDue, shown, nothing}}},
    {"AFocusThatAnotherProgramTookAsADialogClosedHidesAtOnce",
     {{Event::Launched, hidden, show},
      {Event::Activated, shown, nothing},
      {Event::WindowClosed, shown, checkLater},
      {Event::Deactivated, shown, hide}}},
    {"WithoutACandidateALostFocusHidesAtOnce",
     {{Event::Launched, hidden, show},
      {Event::Activated, shown, nothing},
      {Event::WindowClosed, shown, checkLater},
      {Event::Deactivated, hiddenWithoutAnyFocus, hide}}},
    {"WithoutAClosedWindowALostFocusHidesAtOnce",
     {{Event::Launched, hidden, show},
      {Event::Activated, shown, nothing},
      {Event::Deactivated, shownWithoutAnyFocus, hide}}},
    {"ALauncherShownAsAnotherWindowClosesStaysUp",
     {{Event::Launched, hidden, show},
      {Event::Activated, shown, nothing},
      {Event::HideRequested, shown, hide},
      {Event::Deactivated, hidden, hide},
      {Event::WindowClosed, hidden, checkLater},
      {Event::ShowRequested, hidden, show},
      {Event::CheckDue, shown, nothing}}},
    {"AFocusThatReturnsDuringTheFadeOutShowsNothing",
     {{Event::Launched, hidden, show},
      {Event::Activated, shown, nothing},
      {Event::Deactivated, shown, hide},
      {Event::Activated, fadingOut, nothing},
      {Event::Deactivated, fadingOut, hide},
      {Event::Activated, hidden, show}}},
};

class FocusPolicyTable : public testing::TestWithParam<Row> {};

} // namespace

TEST_P(FocusPolicyTable, EachEventHasItsActions) {
    FocusPolicy policy;
    for (int i = 0; i < GetParam().steps.size(); ++i) {
        const Step& step = GetParam().steps[i];
        EXPECT_EQ(policy.handle(step.event, step.facts), step.expected) << "step " << i;
    }
}

INSTANTIATE_TEST_SUITE_P(Rows, FocusPolicyTable, testing::ValuesIn(rows),
                         [](const auto& row) { return std::string(row.param.name); });

TEST(FocusPolicy, TheFocusIsRequestedForTwoSeconds) {
    FocusPolicy policy;
    Actions actions = policy.handle(Event::WindowClosed, shownWithoutAnyFocus);
    int checks = 0;
    while (actions.contains(Action::CheckLater)) {
        actions = policy.handle(Event::CheckDue, shownWithoutAnyFocus);
        ++checks;
    }
    EXPECT_EQ(checks, FocusPolicy::mostChecks);
    EXPECT_DOUBLE_EQ(checks * FocusPolicy::checkInterval, 2);
    EXPECT_FALSE(policy.isChecking());
}

TEST(FocusPolicy, AWindowThatClosesDuringTheChecksProlongsThem) {
    FocusPolicy policy;
    EXPECT_EQ(policy.handle(Event::WindowClosed, shownWithoutAnyFocus), checkLater);
    EXPECT_EQ(policy.handle(Event::CheckDue, shownWithoutAnyFocus), requestFocus);
    EXPECT_EQ(policy.handle(Event::WindowClosed, shownWithoutAnyFocus), nothing) << "a check is due already";
    for (int check = 1; check < FocusPolicy::mostChecks; ++check) {
        EXPECT_EQ(policy.handle(Event::CheckDue, shownWithoutAnyFocus), requestFocus) << check;
    }
    EXPECT_EQ(policy.handle(Event::CheckDue, shownWithoutAnyFocus), nothing);
}

TEST(FocusPolicy, ALauncherWhoseFocusNeverReturnsHidesAfterTheLastCheck) {
    FocusPolicy policy;
    EXPECT_EQ(policy.handle(Event::Launched, hidden), show);
    EXPECT_EQ(policy.handle(Event::Activated, shown), nothing);
    EXPECT_EQ(policy.handle(Event::WindowClosed, shownWithoutAnyFocus), checkLater);
    EXPECT_EQ(policy.handle(Event::Deactivated, shownWithoutAnyFocus), nothing);
    for (int check = 1; check < FocusPolicy::mostChecks; ++check) {
        EXPECT_EQ(policy.handle(Event::CheckDue, shownWithoutAnyFocus), requestFocus) << check;
    }
    EXPECT_EQ(policy.handle(Event::CheckDue, shownWithoutAnyFocus), hide);
}
