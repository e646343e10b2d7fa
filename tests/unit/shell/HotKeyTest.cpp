#include "shell/HotKey.h"

#include <gtest/gtest.h>
#include <map>

using namespace amberquill;

namespace {

constexpr KeyChord space{Qt::Key_Space, Qt::ControlModifier | Qt::AltModifier};
constexpr KeyChord letter{Qt::Key_A, Qt::ControlModifier};

class FakeGlobalShortcut final : public GlobalShortcut {
public:
    void add(std::uint32_t id, const KeyChord& chord) override { chords[id] = chord; }
    void remove(std::uint32_t id) override { chords.erase(id); }

    // Delivers registered chords only, as the system does.
    void press(const KeyChord& chord) {
        for (const auto& [id, registered] : std::map(chords)) {
            if (registered == chord) {
                deliver(id, {});
            }
        }
    }

    std::map<std::uint32_t, KeyChord> chords;
};

} // namespace

TEST(HotKey, EachPressRunsTheAction) {
    FakeGlobalShortcut service;
    int pressed = 0;
    const HotKey key(service, space, 1, [&] { ++pressed; });
    service.press(space);
    service.press(space);
    service.press(letter);
    EXPECT_EQ(pressed, 2);
}

TEST(HotKey, EachHotKeyRunsItsOwnAction) {
    FakeGlobalShortcut service;
    int first = 0;
    int second = 0;
    const HotKey one(service, space, 1, [&] { ++first; });
    const HotKey two(service, letter, 2, [&] { ++second; });
    service.press(letter);
    EXPECT_EQ(first, 0);
    EXPECT_EQ(second, 1);
    service.press(space);
    EXPECT_EQ(first, 1);
    EXPECT_EQ(second, 1);
}

TEST(HotKey, TheHandlerIsInstalledOnceAndKept) {
    FakeGlobalShortcut service;
    int pressed = 0;
    {
        const HotKey one(service, space, 1, [] {});
        EXPECT_TRUE(service.hasHandler());
    }
    EXPECT_TRUE(service.hasHandler());
    // An existing handler is left in place.
    service.setHandler([&](std::uint32_t) { pressed += 10; });
    const HotKey two(service, letter, 2, [&] { ++pressed; });
    service.press(letter);
    EXPECT_EQ(pressed, 10);
}

TEST(HotKey, ADestroyedHotKeyIsUnregistered) {
    FakeGlobalShortcut service;
    int pressed = 0;
    {
        const HotKey key(service, space, 1, [&] { ++pressed; });
        EXPECT_EQ(service.chords.size(), 1U);
    }
    EXPECT_TRUE(service.chords.empty());
    service.press(space);
    EXPECT_EQ(pressed, 0);
}

TEST(HotKey, ALaterHotKeyWithTheSameIdReplacesTheAction) {
    FakeGlobalShortcut service;
    int first = 0;
    int second = 0;
    {
        const HotKey one(service, space, 1, [&] { ++first; });
    }
    const HotKey two(service, space, 1, [&] { ++second; });
    service.press(space);
    EXPECT_EQ(first, 0);
    EXPECT_EQ(second, 1);
}

TEST(HotKey, AnActionMayDestroyItsOwnHotKey) {
    FakeGlobalShortcut service;
    std::unique_ptr<HotKey> key;
    int pressed = 0;
    key = std::make_unique<HotKey>(service, space, 1, [&] {
        key.reset();
        ++pressed;
    });
    service.press(space);
    service.press(space);
    EXPECT_EQ(pressed, 1);
}

TEST(PressDeduplicator, APressThatArrivesByTwoRoutesCountsOnce) {
    PressDeduplicator presses;
    EXPECT_TRUE(presses.isNewPress(PressRoute::HotKey, 1000));
    EXPECT_FALSE(presses.isNewPress(PressRoute::Bus, 1000.05));
}

TEST(PressDeduplicator, TwoFastPressesByOneRouteCountTwice) {
    PressDeduplicator presses;
    EXPECT_TRUE(presses.isNewPress(PressRoute::HotKey, 1000));
    EXPECT_TRUE(presses.isNewPress(PressRoute::HotKey, 1000.01));
}

TEST(PressDeduplicator, TwoFastPressesByBothRoutesCountTwiceInAnyOrder) {
    PressDeduplicator presses;
    EXPECT_TRUE(presses.isNewPress(PressRoute::Bus, 1000));
    EXPECT_FALSE(presses.isNewPress(PressRoute::HotKey, 1000.02));
    EXPECT_TRUE(presses.isNewPress(PressRoute::HotKey, 1000.15));
    EXPECT_FALSE(presses.isNewPress(PressRoute::Bus, 1000.17));
}

TEST(PressDeduplicator, ALateDeliveryIsANewPress) {
    PressDeduplicator presses;
    EXPECT_TRUE(presses.isNewPress(PressRoute::HotKey, 1000));
    EXPECT_TRUE(presses.isNewPress(PressRoute::Bus, 1000.01 + PressDeduplicator::longestDelay));
}
