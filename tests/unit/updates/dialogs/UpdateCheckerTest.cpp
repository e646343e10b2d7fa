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
        checker_ = std::make_unique<UpdateChecker>(
            UpdateChecker::Services{keys_,
                                    [this](const QUrl& address, std::function<void(const Fetched&)> done) {
                                        events_ += u"fetch "_s + address.toString();
                                        fetched_ = std::move(done);
                                    },
                                    [this] { events_ += u"front"_s; },
                                    [this](const QString& version, std::function<void()> closed) {
                                        events_ += u"alert "_s + version;
                                        closed_ = std::move(closed);
                                    }});
        checker_->setControls({[this] { return isAutomatic_; }, [this](bool on) { isAutomatic_ = on; },
                               [this] { events_ += u"updater"_s; }});
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

const QStringList asked = {u"hide"_s, u"front"_s, u"fetch https://example.org/feed.xml"_s};

} // namespace

TEST_F(UpdateCheckerTest, ItHasTwoEntriesInOrderWithoutKeys) {
    const auto made = menu();
    ASSERT_EQ(made->actions().size(), 2);
    EXPECT_EQ(made->actions().at(0)->text(), L::checkForUpdates());
    EXPECT_EQ(made->actions().at(1)->text(), L::checkAutomatically());
    for (const QAction* action : made->actions()) {
        EXPECT_TRUE(action->shortcut().isEmpty());
    }
    EXPECT_FALSE(made->actions().at(0)->isCheckable());
    made->actions().at(0)->trigger();
    EXPECT_EQ(events_, asked);
}

TEST_F(UpdateCheckerTest, TheSwitchShowsAndTurnsWhatIsKept) {
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

TEST_F(UpdateCheckerTest, AFeedThatIsThereIsHandedToTheUpdater) {
    checker_->checkNow();
    EXPECT_EQ(events_, asked);
    EXPECT_TRUE(isFlowOn());
    fetched_(QByteArray("<rss/>"));
    EXPECT_EQ(events_, asked + QStringList{u"updater"_s});
    EXPECT_TRUE(isFlowOn()) << "until the updater says that it is over";
    checker_->didFinishUpdateCycle(UpdateCheck::UserInitiated, std::nullopt);
    EXPECT_FALSE(isFlowOn());
}

TEST_F(UpdateCheckerTest, AnythingElseIsReportedAsUpToDate) {
    for (const Fetched& answer :
         {Fetched(QByteArray()), Fetched(FetchError::BadStatus), Fetched(FetchError::ConnectionFailed),
          Fetched(FetchError::TimedOut), Fetched(FetchError::TooManyRedirects),
          Fetched(FetchError::ForbiddenAddress), Fetched(FetchError::TooLarge)}) {
        events_.clear();
        checker_->checkNow();
        fetched_(answer);
        EXPECT_EQ(events_, asked + QStringList{u"alert 1.2"_s});
        EXPECT_TRUE(isFlowOn());
        closed_();
        EXPECT_FALSE(isFlowOn());
    }
}

TEST_F(UpdateCheckerTest, WithoutAFeedTheAlertComesAtOnce) {
    makeChecker({});
    checker_->checkNow();
    EXPECT_EQ(events_, (QStringList{u"hide"_s, u"front"_s, u"alert 1.2"_s}));
    EXPECT_TRUE(isFlowOn());
    closed_();
    EXPECT_FALSE(isFlowOn());
}

TEST_F(UpdateCheckerTest, WithoutALauncherThereIsNothingToHide) {
    checker_->hideLauncher = nullptr;
    checker_->checkNow();
    checker_->standardUserDriverWillHandleShowingUpdate(true, {}, UpdateCheck::Scheduled);
    EXPECT_FALSE(events_.contains(u"hide"_s));
    EXPECT_TRUE(isFlowOn());
}

TEST_F(UpdateCheckerTest, AnUpdateThatIsAboutToBeShownHidesTheLauncher) {
    checker_->standardUserDriverWillHandleShowingUpdate(true, {}, UpdateCheck::Scheduled);
    EXPECT_EQ(events_, QStringList{u"hide"_s});
    EXPECT_TRUE(isFlowOn());
    checker_->standardUserDriverWillFinishUpdateSession();
    EXPECT_FALSE(isFlowOn());
    checker_->standardUserDriverWillFinishUpdateSession();
    EXPECT_FALSE(isFlowOn()) << "once more does no harm";
}

TEST_F(UpdateCheckerTest, OneThatIsNotShownChangesNothing) {
    checker_->standardUserDriverWillHandleShowingUpdate(false, {}, UpdateCheck::Scheduled);
    EXPECT_TRUE(events_.isEmpty());
    EXPECT_FALSE(isFlowOn());
}

TEST_F(UpdateCheckerTest, TheEndOfACycleEndsTheFlowWhateverCameOfIt) {
    for (const auto& error : {std::optional<UpdateError>(), std::optional(UpdateError::WrongSignature)}) {
        for (const UpdateCheck check : {UpdateCheck::UserInitiated, UpdateCheck::Scheduled}) {
            checker_->standardUserDriverWillHandleShowingUpdate(true, {}, check);
            checker_->didFinishUpdateCycle(check, error);
            EXPECT_FALSE(isFlowOn());
        }
    }
}
