#include "updates/dialogs/UpdateChecker.h"

#include "localization/L.h"
#include "window/LauncherWindowController.h"

#include <QMenu>
#include <gtest/gtest.h>

using namespace amberquill;
using namespace Qt::StringLiterals;

namespace {

class UpdateCheckerTest : public testing::Test {
protected:
    void SetUp() override {
        L::setLanguage(AppLanguage::English);
        LauncherWindowController::auxiliaryFlows().clear();
        keys_.shownVersion = u"1.2"_s;
        makeChecker(u"https://example.org/feed.xml"_s);
    }
    void TearDown() override {
        LauncherWindowController::auxiliaryFlows().clear();
        L::setLanguage(AppLanguage::System);
    }

    void makeChecker(const QString& feedAddress) {
        keys_.feedAddress = feedAddress.isEmpty() ? std::nullopt : std::optional(QUrl(feedAddress));
        checker_ = std::make_unique<UpdateChecker>(UpdateChecker::Services{
            .keys = keys_,
            .fetch =
                [this](const QUrl& address, std::function<void(const Fetched&)> done) {
                    events_ += u"fetch "_s + address.toString();
                    fetched_ = std::move(done);
                },
            .bringToFront = [this] { events_ += u"front"_s; },
            .alertUpToDate =
                [this](const QString& version, std::function<void()> closed) {
                    events_ += u"alert "_s + version;
                    closed_ = std::move(closed);
                }});
        checker_->setControls({.automaticallyChecks = [this] { return isAutomatic_; },
                               .setAutomaticallyChecks = [this](bool on) { isAutomatic_ = on; },
                               .checkForUpdates = [this] { events_ += u"updater"_s; }});
        checker_->hideLauncher = [this] {
            EXPECT_TRUE(isFlowOn());
            events_ += u"hide"_s;
        };
    }

    [[nodiscard]] static bool isFlowOn() {
        return LauncherWindowController::auxiliaryFlows() == QSet<QString>{u"updates"_s};
    }

    [[nodiscard]] std::unique_ptr<QMenu> menu() {
        auto made = std::make_unique<QMenu>();
        checker_->addItems(*made);
        return made;
    }

    BundleKeys keys_;
    QStringList events_;
    std::function<void(const Fetched&)> fetched_;
    std::function<void()> closed_;
    bool isAutomatic_ = true;
    std::unique_ptr<UpdateChecker> checker_;
};

const QStringList fetchEvents = {u"hide"_s, u"front"_s, u"fetch https://example.org/feed.xml"_s};

} // namespace

TEST_F(UpdateCheckerTest, TheMenuHasTwoEntriesWithoutShortcuts) {
    const auto made = menu();
    ASSERT_EQ(made->actions().size(), 2);
    EXPECT_EQ(made->actions().at(0)->text(), L::checkForUpdates());
    EXPECT_EQ(made->actions().at(1)->text(), L::checkAutomatically());
    for (const QAction* action : made->actions()) {
        EXPECT_TRUE(action->shortcut().isEmpty());
    }
    EXPECT_FALSE(made->actions().at(0)->isCheckable());
    made->actions().at(0)->trigger();
    EXPECT_EQ(events_, fetchEvents);
}

TEST_F(UpdateCheckerTest, TheSwitchShowsAndTogglesTheSetting) {
    EXPECT_TRUE(menu()->actions().at(1)->isChecked());
    menu()->actions().at(1)->trigger();
    EXPECT_FALSE(isAutomatic_);
    const auto made = menu();
    EXPECT_FALSE(made->actions().at(1)->isChecked());
    made->actions().at(1)->trigger();
    EXPECT_TRUE(isAutomatic_);
    isAutomatic_ = false; // by something else, while the menu is open
    made->actions().at(1)->trigger();
    EXPECT_TRUE(isAutomatic_);
}

TEST_F(UpdateCheckerTest, AReachableFeedIsCheckedByTheUpdater) {
    checker_->checkNow();
    EXPECT_EQ(events_, fetchEvents);
    EXPECT_TRUE(isFlowOn());
    fetched_(QByteArray("<rss/>"));
    EXPECT_EQ(events_, fetchEvents + QStringList{u"updater"_s});
    EXPECT_TRUE(isFlowOn()) << "until the updater ends the cycle";
    checker_->didFinishUpdateCycle(UpdateCheck::UserInitiated, std::nullopt);
    EXPECT_FALSE(isFlowOn());
}

TEST_F(UpdateCheckerTest, AnUnreachableOrEmptyFeedIsReportedAsUpToDate) {
    for (const Fetched& answer :
         {Fetched(QByteArray()), Fetched(FetchError::BadStatus), Fetched(FetchError::ConnectionFailed),
          Fetched(FetchError::TimedOut), Fetched(FetchError::TooManyRedirects),
          Fetched(FetchError::ForbiddenAddress), Fetched(FetchError::TooLarge)}) {
        events_.clear();
        checker_->checkNow();
        fetched_(answer);
        EXPECT_EQ(events_, fetchEvents + QStringList{u"alert 1.2"_s});
        EXPECT_TRUE(isFlowOn());
        closed_();
        EXPECT_FALSE(isFlowOn());
    }
}

TEST_F(UpdateCheckerTest, WithoutAFeedTheAlertIsShownAtOnce) {
    makeChecker({});
    checker_->checkNow();
    EXPECT_EQ(events_, (QStringList{u"hide"_s, u"front"_s, u"alert 1.2"_s}));
    EXPECT_TRUE(isFlowOn());
    closed_();
    EXPECT_FALSE(isFlowOn());
}

TEST_F(UpdateCheckerTest, WithoutALauncherNothingIsHidden) {
    checker_->hideLauncher = nullptr;
    checker_->checkNow();
    checker_->standardUserDriverWillHandleShowingUpdate(true, {}, UpdateCheck::Scheduled);
    EXPECT_FALSE(events_.contains(u"hide"_s));
    EXPECT_TRUE(isFlowOn());
}

TEST_F(UpdateCheckerTest, ShowingAnUpdateHidesTheLauncher) {
    checker_->standardUserDriverWillHandleShowingUpdate(true, {}, UpdateCheck::Scheduled);
    EXPECT_EQ(events_, QStringList{u"hide"_s});
    EXPECT_TRUE(isFlowOn());
    checker_->standardUserDriverWillFinishUpdateSession();
    EXPECT_FALSE(isFlowOn());
    checker_->standardUserDriverWillFinishUpdateSession();
    EXPECT_FALSE(isFlowOn()) << "a second call is harmless";
}

TEST_F(UpdateCheckerTest, AnUpdateThatIsNotShownDoesNothing) {
    checker_->standardUserDriverWillHandleShowingUpdate(false, {}, UpdateCheck::Scheduled);
    EXPECT_TRUE(events_.isEmpty());
    EXPECT_FALSE(isFlowOn());
}

TEST_F(UpdateCheckerTest, TheEndOfACycleEndsTheFlowWithAnyResult) {
    for (const auto& error : {std::optional<UpdateError>(), std::optional(UpdateError::WrongSignature)}) {
        for (const UpdateCheck check : {UpdateCheck::UserInitiated, UpdateCheck::Scheduled}) {
            checker_->standardUserDriverWillHandleShowingUpdate(true, {}, check);
            checker_->didFinishUpdateCycle(check, error);
            EXPECT_FALSE(isFlowOn());
        }
    }
}
