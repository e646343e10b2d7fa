#include "window/ScrollEvents.h"

#include "support/ManualQueue.h"

#include <QPointingDevice>
#include <QWheelEvent>
#include <gtest/gtest.h>
#include <ostream>
#include <vector>

namespace amberquill {

static bool operator==(const ScrollEvent& a, const ScrollEvent& b) {
    return a.delta == b.delta && a.precise == b.precise && a.phase == b.phase && a.momentum == b.momentum;
}

static void PrintTo(const ScrollEvent& event, std::ostream* out) {
    *out << (event.precise ? "fingers " : "wheel ") << event.delta.x() << ',' << event.delta.y() << " phase "
         << static_cast<int>(event.phase) << (event.momentum ? " momentum" : "");
}

} // namespace amberquill

using namespace amberquill;
using namespace Qt::StringLiterals;

namespace {

using Phase = ScrollEvent::Phase;
using Kind = ScrollDevice::Kind;
using Events = std::vector<ScrollEvent>;

ScrollEvent notch(double x, double y) {
    return {{x, y}, false, Phase::None, false};
}

ScrollEvent fingers(Phase phase, double x = 0, double y = 0) {
    return {{x, y}, true, phase, false};
}

// Every device is the same one.
class OneDevice final : public ScrollDevices {
public:
    [[nodiscard]] ScrollDevice device(qint64 systemId) const override {
        asked.push_back(systemId);
        return answer;
    }

    ScrollDevice answer;
    mutable std::vector<qint64> asked;
};

class ScrollEventsTest : public testing::Test {
protected:
    void send(const QPoint& pixels, const QPoint& angle, Qt::ScrollPhase phase = Qt::NoScrollPhase,
              bool inverted = false) {
        const QWheelEvent event({10, 10}, {10, 10}, pixels, angle, Qt::NoButton, Qt::NoModifier, phase,
                                inverted, Qt::MouseEventNotSynthesized, source_);
        scroll_.handle(event);
    }

    // The events since the last call.
    Events taken() { return std::exchange(events_, {}); }

    ManualQueue queue_;
    OneDevice devices_;
    QPointingDevice first_{u"first"_s,
                           11,
                           QInputDevice::DeviceType::Mouse,
                           QPointingDevice::PointerType::Generic,
                           QInputDevice::Capability::Scroll,
                           1,
                           3};
    QPointingDevice second_{u"second"_s,
                            12,
                            QInputDevice::DeviceType::TouchPad,
                            QPointingDevice::PointerType::Finger,
                            QInputDevice::Capability::Scroll,
                            1,
                            3};
    const QPointingDevice* source_ = &first_;
    Events events_;
    ScrollEvents scroll_{queue_, devices_, [this](const ScrollEvent& event) { events_.push_back(event); }};
};

// Events as Qt sends them for a touchpad on X11: eight of the driver's units are a point.
class OnX11Touchpad : public ScrollEventsTest {
protected:
    void SetUp() override { devices_.answer = {Kind::Touchpad, 15}; }

    void swipe(int x, int y) { send({x, y}, {x, y}); }
};

} // namespace

TEST_F(ScrollEventsTest, ANotchOfAWheelIsOneAndDownAndRightAreNegative) {
    send({}, {0, -120});
    send({}, {240, 0});
    EXPECT_EQ(taken(), Events({notch(0, -1), notch(2, 0)}));
}

TEST_F(ScrollEventsTest, FractionsOfAWheelAddUp) {
    for (int i = 0; i < 7; ++i) {
        send({}, {0, -15});
        queue_.advance(0.01);
    }
    EXPECT_EQ(taken(), Events());
    send({}, {0, -15});
    EXPECT_EQ(taken(), Events({notch(0, -1)}));
}

TEST_F(ScrollEventsTest, APauseOfTheWheelDropsAFraction) {
    send({}, {0, -90});
    queue_.advance(WheelNotches::pause + 0.01);
    send({}, {0, -90});
    EXPECT_EQ(taken(), Events());
}

TEST_F(ScrollEventsTest, AWheelWhoseDriverSendsPixelsIsAWheel) {
    devices_.answer = {Kind::Wheel, 15};
    send({0, -120}, {0, -120});
    EXPECT_EQ(taken(), Events({notch(0, -1)}));
}

TEST_F(ScrollEventsTest, AWheelThatQtReportsAsATouchpadIsAWheel) {
    source_ = &second_; // the only device under Wayland
    send({}, {0, -120});
    EXPECT_EQ(taken(), Events({notch(0, -1)}));
}

TEST_F(ScrollEventsTest, AnEventWithoutMovementIsIgnored) {
    send({}, {});
    devices_.answer = {Kind::Touchpad, 15};
    source_ = &second_;
    send({}, {});
    send({}, {}, Qt::ScrollUpdate);
    EXPECT_EQ(taken(), Events());
    EXPECT_EQ(queue_.waiting(), 0U);
}

TEST_F(ScrollEventsTest, AWaylandTouchpadsSwipeIsInPixelsAndEndsWithItsPhase) {
    send({}, {}, Qt::ScrollBegin);
    send({-13, 4}, {-156, 48}, Qt::ScrollUpdate);
    queue_.advance(2); // resting fingers send nothing
    send({-1, 0}, {-10, 5}, Qt::ScrollUpdate);
    send({0, 0}, {-5, 5}, Qt::ScrollUpdate); // the rest comes with a later event
    send({}, {}, Qt::ScrollEnd);
    EXPECT_EQ(taken(),
              Events({fingers(Phase::Began), fingers(Phase::Changed, -13, 4), fingers(Phase::Changed, -1, 0),
                      fingers(Phase::Changed, 0, 0), fingers(Phase::Ended)}));
    EXPECT_EQ(queue_.waiting(), 0U);
}

TEST_F(ScrollEventsTest, MovementInABeginOrEndEventCounts) {
    send({-7, 0}, {-84, 0}, Qt::ScrollBegin);
    send({-5, 0}, {-60, 0}, Qt::ScrollEnd);
    EXPECT_EQ(taken(), Events({fingers(Phase::Began), fingers(Phase::Changed, -7, 0),
                               fingers(Phase::Changed, -5, 0), fingers(Phase::Ended)}));
}

TEST_F(ScrollEventsTest, ASwipeWithPhasesButNoPixelsIsMeasuredByItsAngle) {
    send({}, {}, Qt::ScrollBegin);
    send({}, {-240, 0}, Qt::ScrollUpdate);
    EXPECT_EQ(taken(), Events({fingers(Phase::Began), fingers(Phase::Changed, -20, 0)}));
}

TEST_F(ScrollEventsTest, ASwipeFromAnotherWindowBeginsWithItsFirstMovement) {
    send({-13, 0}, {-156, 0}, Qt::ScrollUpdate);
    EXPECT_EQ(taken(), Events({fingers(Phase::Began), fingers(Phase::Changed, -13, 0)}));
}

TEST_F(ScrollEventsTest, TheEndOfASwipeOverAnotherWindowIsIgnored) {
    send({}, {}, Qt::ScrollEnd);
    EXPECT_EQ(taken(), Events());
}

TEST_F(ScrollEventsTest, MomentumIsMarkedAsSuch) {
    send({-13, 4}, {-156, 48}, Qt::ScrollMomentum);
    ASSERT_EQ(events_.size(), 1U);
    EXPECT_TRUE(events_.front().precise);
    EXPECT_TRUE(events_.front().momentum);
}

TEST_F(ScrollEventsTest, PixelsWithoutAPhaseAreASwipeThatAPauseEnds) {
    send({0, -5}, {0, -60}); // a pointing stick under Wayland
    send({0, -5}, {0, -60});
    EXPECT_EQ(taken(), Events({fingers(Phase::Began), fingers(Phase::Changed, 0, -5),
                               fingers(Phase::Changed, 0, -5)}));
    queue_.advance(ScrollEvents::pause);
    EXPECT_EQ(taken(), Events({fingers(Phase::Ended)}));
}

TEST_F(ScrollEventsTest, TheSystemsSignIsKeptWhetherScrollingIsNaturalOrNot) {
    // Fingers that move left. With natural scrolling the system inverts the sign and reports that.
    send({-91, 0}, {-1092, 0}, Qt::ScrollBegin, true);
    send({}, {}, Qt::ScrollEnd, true);
    send({91, 0}, {1092, 0}, Qt::ScrollBegin, false);
    EXPECT_EQ(taken(), Events({fingers(Phase::Began), fingers(Phase::Changed, -91, 0), fingers(Phase::Ended),
                               fingers(Phase::Began), fingers(Phase::Changed, 91, 0)}));
    // Fingers and a wheel that move towards the user, with and without natural scrolling.
    send({}, {0, 120}, Qt::NoScrollPhase, true);
    send({}, {0, -120}, Qt::NoScrollPhase, false);
    EXPECT_EQ(taken(), Events({notch(0, 1), notch(0, -1)}));
    devices_.answer = {Kind::Touchpad, 15};
    source_ = &second_;
    send({0, 8}, {0, 8});
    send({0, -8}, {0, -8});
    EXPECT_EQ(taken(),
              Events({fingers(Phase::Began), fingers(Phase::Changed, 0, 1), fingers(Phase::Changed, 0, -1)}));
}

TEST_F(OnX11Touchpad, ANotchIsAsManyPointsAsTheDeviceReports) {
    swipe(-8, 16);
    devices_.answer.pointsPerNotch = 30;
    source_ = &second_;
    swipe(-8, 16);
    EXPECT_EQ(taken(), Events({fingers(Phase::Began), fingers(Phase::Changed, -1, 2),
                               fingers(Phase::Changed, -2, 4)}));
}

TEST_F(OnX11Touchpad, AnglesWithoutPixelsAreASwipeToo) {
    send({}, {0, -60});
    EXPECT_EQ(taken(), Events({fingers(Phase::Began), fingers(Phase::Changed, 0, -7.5)}));
}

TEST_F(OnX11Touchpad, OnlyAPauseEndsASwipe) {
    swipe(-80, 0);
    for (int i = 0; i < 20; ++i) {
        queue_.advance(ScrollEvents::pause - 0.001);
        swipe(-80, 0);
    }
    EXPECT_EQ(events_.size(), 22U);
    EXPECT_EQ(events_.back(), fingers(Phase::Changed, -10, 0));
    taken();
    queue_.advance(ScrollEvents::pause - 0.001);
    EXPECT_EQ(taken(), Events());
    queue_.advance(0.002);
    EXPECT_EQ(taken(), Events({fingers(Phase::Ended)}));
    queue_.advance(10);
    EXPECT_EQ(taken(), Events()) << "once";
    swipe(-80, 0);
    EXPECT_EQ(taken(), Events({fingers(Phase::Began), fingers(Phase::Changed, -10, 0)}));
}

TEST_F(OnX11Touchpad, PhasesCountIfTheyAreSent) {
    send({}, {}, Qt::ScrollBegin);
    send({-80, 0}, {-80, 0}, Qt::ScrollUpdate);
    queue_.advance(1);
    EXPECT_EQ(taken(), Events({fingers(Phase::Began), fingers(Phase::Changed, -10, 0)}));
    send({}, {}, Qt::ScrollEnd);
    EXPECT_EQ(taken(), Events({fingers(Phase::Ended)}));
}

TEST_F(OnX11Touchpad, ForgettingSendsNoEnd) {
    swipe(-80, 0);
    scroll_.forget();
    taken();
    queue_.advance(10);
    EXPECT_EQ(taken(), Events());
    swipe(-80, 0);
    EXPECT_EQ(taken(), Events({fingers(Phase::Began), fingers(Phase::Changed, -10, 0)}));
}

TEST_F(OnX11Touchpad, NothingComesAfterItsEnd) {
    auto events = std::make_unique<Events>();
    auto scroll = std::make_unique<ScrollEvents>(
        queue_, devices_, [&events](const ScrollEvent& event) { events->push_back(event); });
    scroll->handle(QWheelEvent({1, 1}, {1, 1}, {-80, 0}, {-80, 0}, Qt::NoButton, Qt::NoModifier,
                               Qt::NoScrollPhase, false));
    EXPECT_EQ(events->size(), 2U);
    scroll.reset();
    queue_.advance(10);
    EXPECT_EQ(events->size(), 2U);
}

TEST_F(OnX11Touchpad, TheDeviceIsLookedUpAtTheBeginningOfAMovement) {
    swipe(-8, 0);
    swipe(-8, 0);
    EXPECT_EQ(devices_.asked, std::vector<qint64>({11}));
    source_ = &second_;
    swipe(-8, 0);
    EXPECT_EQ(devices_.asked, std::vector<qint64>({11, 12}));
    queue_.advance(ScrollEvents::pause + 0.01);
    swipe(-8, 0);
    EXPECT_EQ(devices_.asked, std::vector<qint64>({11, 12, 12}))
        << "another device may have its number by now";
}

namespace {

// The sum of the notches when a wheel turns by `part` of a notch `times` times, ten milliseconds apart.
QPointF turned(WheelNotches& notches, const QPointF& part, int times, double& now) {
    QPointF sum;
    for (int i = 0; i < times; ++i) {
        now += 0.01;
        sum += notches.add(part, now).value_or(QPointF());
    }
    return sum;
}

} // namespace

TEST(WheelNotches, AWholeNotchComesAtOnce) {
    WheelNotches notches;
    EXPECT_EQ(notches.add({0, -1}, 1), QPointF(0, -1));
    EXPECT_EQ(notches.add({2, 0}, 1), QPointF(2, 0));
}

TEST(WheelNotches, FractionsAddUpAndNoneIsLost) {
    WheelNotches notches;
    double now = 1;
    EXPECT_EQ(turned(notches, {0, -0.125}, 7, now), QPointF());
    EXPECT_EQ(turned(notches, {0, -0.125}, 1, now), QPointF(0, -1));
    EXPECT_EQ(turned(notches, {0, -0.125}, 792, now), QPointF(0, -99));
    EXPECT_EQ(turned(notches, {0, -0.25}, 3, now), QPointF());
    EXPECT_EQ(turned(notches, {0, -0.25}, 1, now), QPointF(0, -1));
}

TEST(WheelNotches, ALargeTurnKeepsItsFraction) {
    WheelNotches notches;
    EXPECT_EQ(notches.add({0, 1.5}, 1), QPointF(0, 1));
    EXPECT_EQ(notches.add({0, 0.25}, 1.1), std::nullopt);
    EXPECT_EQ(notches.add({0, 0.25}, 1.2), QPointF(0, 1));
}

TEST(WheelNotches, TruncatedFractionsStillCompleteTheirNotch) {
    WheelNotches notches;
    double now = 1;
    EXPECT_EQ(turned(notches, {0, 7 / 120.0}, 15, now), QPointF());
    EXPECT_EQ(turned(notches, {0, 7 / 120.0}, 1, now), QPointF(0, 1)) << "sixteen of 7.5 make 120";
}

TEST(WheelNotches, ALentPartIsTakenOffTheNextNotch) {
    WheelNotches notches;
    double now = 1;
    EXPECT_EQ(turned(notches, {0, 1 / 120.0}, 12'000, now), QPointF(0, 100));
}

TEST(WheelNotches, TheAxesAddUpSeparately) {
    WheelNotches notches;
    EXPECT_EQ(notches.add({0.5, -0.5}, 1), std::nullopt);
    EXPECT_EQ(notches.add({0.5, 0}, 1), QPointF(1, 0));
    EXPECT_EQ(notches.add({0, -0.5}, 1), QPointF(0, -1));
}

TEST(WheelNotches, AChangeOfDirectionDropsTheFraction) {
    WheelNotches notches;
    EXPECT_EQ(notches.add({0, -0.75}, 1), std::nullopt);
    EXPECT_EQ(notches.add({0, 0.5}, 1), std::nullopt);
    EXPECT_EQ(notches.add({0, 0.5}, 1), QPointF(0, 1)) << "not held up by the way back";
    EXPECT_EQ(notches.add({0, -0.75}, 1), std::nullopt);
}

TEST(WheelNotches, APauseDropsTheFraction) {
    WheelNotches notches;
    EXPECT_EQ(notches.add({0, -0.75}, 1), std::nullopt);
    EXPECT_EQ(notches.add({0, -0.75}, 1.501), std::nullopt);
    EXPECT_EQ(notches.add({0, -0.25}, 2.0), QPointF(0, -1)) << "half a second is none yet";
}

TEST(WheelNotches, ForgettingDropsTheFraction) {
    WheelNotches notches;
    notches.add({0, -0.75}, 1);
    notches.forget();
    EXPECT_EQ(notches.add({0, -0.75}, 1), std::nullopt);
}
