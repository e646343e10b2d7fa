#include "platform/linux/input/portal/PortalShortcuts.h"

#include "MockShortcutsPortal.h"
#include "support/ManualQueue.h"
#include "support/PrivateBus.h"
#include "support/WaitUntil.h"

#include <QDBusPendingCallWatcher>
#include <gtest/gtest.h>

using namespace amberquill;
using namespace amberquill::desktop;
using namespace Qt::StringLiterals;

namespace {

constexpr KeyChord portalChord{Qt::Key_Space, Qt::ControlModifier | Qt::AltModifier};
const QString name = u"toggle-1"_s;

class PortalShortcutsTest : public testing::Test {
protected:
    void SetUp() override {
        shortcuts_.setHandler([this](std::uint32_t id) {
            presses_ += id;
            tokens_ += shortcuts_.origin().token;
        });
    }

    // Waits for that many calls of the portal and compares them.
    void expectCalls(const QStringList& calls) {
        EXPECT_TRUE(waitUntil([&] { return portal_.calls.size() >= calls.size(); }));
        EXPECT_EQ(portal_.calls, calls);
    }

    // Waits until the portal has answered all calls of that many sessions.
    void expectAsked(int sessions) {
        QStringList calls;
        for (int i = 0; i < sessions; ++i) {
            calls += asked_;
        }
        expectCalls(calls);
        settle();
    }

    // Waits until both sides have handled each other's messages and the answers to them.
    void settle() {
        for (int i = 0; i < 3; ++i) {
            askTheBus(portalBus_);
            askTheBus(shortcutsBus_);
        }
    }

    static void askTheBus(QDBusConnection& connection) {
        const QDBusPendingCallWatcher watcher(connection.asyncCall(QDBusMessage::createMethodCall(
            u"org.freedesktop.DBus"_s, u"/org/freedesktop/DBus"_s, u"org.freedesktop.DBus"_s, u"GetId"_s)));
        bool done = false;
        QObject::connect(&watcher, &QDBusPendingCallWatcher::finished, &watcher, [&done] { done = true; });
        EXPECT_TRUE(waitUntil([&] { return done; }));
    }

    // Expects that the portal's chord works in a new session without a question to the user.
    void expectNotAskedToBind() {
        addAndAsk();
        expectCalls({u"CreateSession"_s, u"ListShortcuts"_s});
        press(portal_.sessions[0], name);
        EXPECT_TRUE(waitUntil([this] { return presses_.size() == 1; }));
        EXPECT_EQ(portal_.calls.size(), 2);
    }

    void addAndAsk() {
        shortcuts_.add(1, portalChord);
        queue_.advance(PortalShortcuts::requestDelay);
    }

    void press(const QString& session, const QString& shortcut, const QString& token = {}) {
        portal_.press(session, shortcut, token);
    }

    const QStringList asked_ = {u"CreateSession"_s, u"ListShortcuts"_s, u"BindShortcuts"_s};

    PrivateBus bus_;
    QDBusConnection portalBus_ = bus_.connect();
    QDBusConnection shortcutsBus_ = bus_.connect();
    QObject object_;
    MockShortcutsPortal& portal_ = *new MockShortcutsPortal(object_, portalBus_);
    ManualQueue queue_;
    int connections_ = 0;
    std::function<void(const QDBusConnection&)> waiting_; // for a slow connection
    bool connectsLater_ = false;
    PortalShortcuts shortcuts_{queue_, [this](std::function<void(const QDBusConnection&)> then) {
                                   ++connections_;
                                   if (connectsLater_) {
                                       waiting_ = std::move(then);
                                   } else {
                                       then(shortcutsBus_);
                                   }
                               }};
    QList<std::uint32_t> presses_;
    QStringList tokens_;
};

} // namespace

TEST_F(PortalShortcutsTest, StartingReturnsBeforeThePortalIsCalled) {
    portal_.start();
    shortcuts_.add(1, portalChord);
    queue_.advance(PortalShortcuts::requestDelay - 0.01);
    EXPECT_EQ(connections_, 0);
    queue_.advance(0.01);
    EXPECT_EQ(connections_, 1);
}

TEST_F(PortalShortcutsTest, ASlowConnectionIsMadeOnceAndUsedForAllShortcutsAddedMeanwhile) {
    portal_.start();
    connectsLater_ = true;
    addAndAsk();
    shortcuts_.add(2, portalChord);
    queue_.advance(PortalShortcuts::requestDelay);
    EXPECT_EQ(connections_, 1);
    EXPECT_EQ(portal_.sessions.size(), 0);
    waiting_(shortcutsBus_);
    expectAsked(1);
    ASSERT_EQ(portal_.bound.size(), 1);
    EXPECT_EQ(portal_.bound[0].size(), 2);
}

TEST_F(PortalShortcutsTest, ThePortalIsNotCalledForShortcutsRemovedMeanwhile) {
    portal_.start();
    connectsLater_ = true;
    addAndAsk();
    shortcuts_.remove(1);
    waiting_(shortcutsBus_);
    settle();
    EXPECT_EQ(portal_.calls, QStringList());
}

TEST_F(PortalShortcutsTest, TheChordIsBoundAndItsPressesAreDelivered) {
    const auto& registry = *new MockRegistry(object_);
    portal_.start();
    addAndAsk();
    expectCalls(asked_);
    EXPECT_EQ(registry.programs, QStringList{u"org.amberquill.Amberquill"_s});
    ASSERT_EQ(portal_.bound.size(), 1);
    ASSERT_EQ(portal_.bound[0].size(), 1);
    EXPECT_EQ(portal_.bound[0][0].id, name);
    EXPECT_EQ(portal_.bound[0][0].properties.value(u"preferred_trigger"_s).toString(), u"CTRL+ALT+space"_s);
    EXPECT_FALSE(portal_.bound[0][0].properties.value(u"description"_s).toString().isEmpty());
    press(portal_.sessions[0], name, u"token"_s);
    EXPECT_TRUE(waitUntil([this] { return presses_ == QList<std::uint32_t>{1}; }));
    EXPECT_EQ(tokens_, QStringList{u"token"_s});
}

TEST_F(PortalShortcutsTest, PressesOfOtherSessionsAreIgnored) {
    portal_.start();
    addAndAsk();
    expectCalls(asked_);
    press(u"/org/freedesktop/portal/desktop/session/1_99/other"_s, name);
    press(portal_.sessions[0], u"other"_s);
    press(portal_.sessions[0], name);
    EXPECT_TRUE(waitUntil([this] { return !presses_.isEmpty(); }));
    EXPECT_EQ(presses_.size(), 1);
}

TEST_F(PortalShortcutsTest, AnOldPortalWithoutARegistryWorks) {
    portal_.start();
    addAndAsk();
    expectCalls(asked_);
    press(portal_.sessions[0], name);
    EXPECT_TRUE(waitUntil([this] { return presses_.size() == 1; }));
}

TEST_F(PortalShortcutsTest, AShortcutThatThePortalRemembersIsNotBoundAgain) {
    portal_.remembers = true;
    portal_.start();
    expectNotAskedToBind();
}

TEST_F(PortalShortcutsTest, AShortcutBoundWithItsSessionIsNotBoundAgain) {
    portal_.takesShortcutsWithSession = true;
    portal_.start();
    expectNotAskedToBind();
}

TEST_F(PortalShortcutsTest, TheSessionsNameIsAlwaysTheSame) {
    portal_.start();
    addAndAsk();
    expectAsked(1);
    portal_.closeSession(portal_.sessions[0]);
    settle();
    queue_.advance(PortalShortcuts::retryDelay);
    expectAsked(2);
    EXPECT_EQ(portal_.sessions[0], portal_.sessions[1]);
}

TEST_F(PortalShortcutsTest, ARefusalIsFinal) {
    portal_.bindCode = 1;
    portal_.start();
    addAndAsk();
    expectCalls(asked_);
    settle();
    queue_.advance(1000);
    settle();
    EXPECT_EQ(portal_.calls, asked_);
    EXPECT_TRUE(presses_.isEmpty());
}

TEST_F(PortalShortcutsTest, AnEmptyGrantIsARefusal) {
    portal_.grantsAny = false;
    portal_.start();
    addAndAsk();
    expectCalls(asked_);
    settle();
    queue_.advance(1000);
    settle();
    EXPECT_EQ(portal_.calls, asked_);
}

TEST_F(PortalShortcutsTest, AClosedSessionIsReplacedAFewTimes) {
    portal_.start();
    addAndAsk();
    for (int session = 1; session <= PortalShortcuts::maximumRetries + 1; ++session) {
        expectAsked(session);
        portal_.closeSession(portal_.sessions.back());
        settle();
        queue_.advance(PortalShortcuts::retryDelay);
    }
    settle();
    queue_.advance(1000);
    settle();
    EXPECT_EQ(portal_.sessions.size(), PortalShortcuts::maximumRetries + 1);
}

TEST_F(PortalShortcutsTest, LongSessionsAreReplacedWithoutALimit) {
    portal_.start();
    addAndAsk();
    for (int session = 1; session <= PortalShortcuts::maximumRetries + 3; ++session) {
        expectAsked(session);
        queue_.advance(PortalShortcuts::stableSeconds);
        portal_.closeSession(portal_.sessions.back());
        settle();
        queue_.advance(PortalShortcuts::retryDelay);
    }
    expectAsked(PortalShortcuts::maximumRetries + 4);
}

TEST_F(PortalShortcutsTest, ARestartedPortalIsAskedAgain) {
    portal_.start();
    addAndAsk();
    expectAsked(1);
    portal_.stop();
    settle();
    portal_.start();
    settle();
    queue_.runPosted();
    expectAsked(2);
    press(portal_.sessions[1], name, u"new"_s);
    EXPECT_TRUE(waitUntil([this] { return !presses_.isEmpty(); }));
    EXPECT_EQ(tokens_, QStringList{u"new"_s});
}

TEST_F(PortalShortcutsTest, APortalThatStartsLateIsAskedThen) {
    addAndAsk();
    settle();
    portal_.start();
    settle();
    queue_.runPosted();
    expectAsked(1);
}

TEST_F(PortalShortcutsTest, AfterABusRestartThePortalIsAskedAgain) {
    portal_.start();
    addAndAsk();
    expectAsked(1);
    PrivateBus next;
    const QDBusConnection portalBus = next.connect();
    QObject object;
    auto& portal = *new MockShortcutsPortal(object, portalBus);
    portal.start();
    shortcutsBus_ = noBus();
    bus_.stop();
    EXPECT_TRUE(waitUntil([this] { return queue_.timers() > 0; }));
    queue_.advance(PortalShortcuts::retryDelay);
    EXPECT_EQ(connections_, 2) << "not back yet";
    shortcutsBus_ = next.connect();
    queue_.advance(PortalShortcuts::retryDelay);
    EXPECT_TRUE(waitUntil([&] { return portal.calls.size() >= asked_.size(); }));
    EXPECT_EQ(portal.calls, asked_);
    portal.press(portal.sessions[0], name, {});
    EXPECT_TRUE(waitUntil([this] { return presses_.size() == 1; }));
}

TEST_F(PortalShortcutsTest, AReportedBusRestartIsFollowedAtOnceEvenAfterVeryLong) {
    portal_.start();
    addAndAsk();
    expectAsked(1);
    shortcutsBus_ = noBus();
    bus_.stop();
    EXPECT_TRUE(waitUntil([this] { return queue_.timers() > 0; }));
    queue_.advance(3600);
    EXPECT_EQ(queue_.timers(), 0U) << "still being looked for";
    bus_.startAgain();
    portalBus_ = bus_.connect();
    shortcutsBus_ = bus_.connect();
    QObject object;
    auto& portal = *new MockShortcutsPortal(object, portalBus_);
    portal.start();
    shortcuts_.serviceCameBack();
    queue_.advance(0);
    EXPECT_TRUE(waitUntil([&] { return portal.calls.size() >= asked_.size(); }));
    EXPECT_EQ(portal.calls, asked_);
}

TEST_F(PortalShortcutsTest, ABoundShortcutIsNotBoundASecondTime) {
    portal_.start();
    addAndAsk();
    expectAsked(1);
    shortcuts_.serviceCameBack();
    queue_.advance(0);
    settle();
    EXPECT_EQ(portal_.calls, asked_);
}

TEST_F(PortalShortcutsTest, MalformedAnswersOfThePortalAreIgnored) {
    for (const QVariant& handle : {QVariant(u"no path"_s), QVariant(u"/a//b"_s), QVariant(7),
                                   QVariant(QStringList{u"/a"_s, u"/b"_s})}) {
        portal_.handleToSay = handle;
        portal_.start();
        PortalShortcuts shortcuts(queue_, [this](const auto& then) { then(shortcutsBus_); });
        shortcuts.add(1, portalChord);
        queue_.advance(PortalShortcuts::requestDelay);
        expectCalls({u"CreateSession"_s});
        settle();
        EXPECT_EQ(portal_.calls.size(), 1);
        portal_.calls.clear();
        portal_.stop();
    }
    portal_.handleToSay.reset();
    portal_.listToSay = QVariant(u"no list"_s);
    portal_.start();
    addAndAsk();
    expectAsked(1);
}

TEST_F(PortalShortcutsTest, WithoutThePortalNothingIsCalled) {
    addAndAsk();
    settle();
    EXPECT_EQ(connections_, 1);
    EXPECT_TRUE(presses_.isEmpty());
}

TEST_F(PortalShortcutsTest, WithoutABusThereIsNoPortal) {
    PortalShortcuts shortcuts(queue_, [](const auto& then) { then(noBus()); });
    shortcuts.add(1, portalChord);
    queue_.advance(PortalShortcuts::requestDelay);
    shortcuts.remove(1);
    EXPECT_EQ(queue_.timers(), 0U);
}

TEST_F(PortalShortcutsTest, PressesOfARemovedShortcutAreNotDelivered) {
    portal_.start();
    addAndAsk();
    expectCalls(asked_);
    settle();
    shortcuts_.remove(1);
    press(portal_.sessions[0], name);
    settle();
    EXPECT_TRUE(presses_.isEmpty());
}
