#include "platform/linux/input/x11/KeyGrabs.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace amberquill;
using namespace amberquill::desktop;
using testing::ElementsAre;
using testing::UnorderedElementsAre;

namespace {

constexpr KeyChord chord{Qt::Key_Space, Qt::ControlModifier | Qt::AltModifier};

// Keys 8 to 15 with two layouts of two levels, like most keyboards.
KeyboardMapping usual() {
    KeyboardMapping mapping;
    mapping.firstKeyCode = 8;
    mapping.symbolsPerKey = 4;
    mapping.symbols = {
        0x61,   0x41,   0x61,   0x41,   // 8: a
        0x20,   0x20,   0x20,   0x20,   // 9: space
        0xffe9, 0xffe7, 0xffe9, 0xffe7, // 10: Alt, Meta
        0xff7f, 0,      0xff7f, 0,      // 11: Num Lock
        0xff14, 0,      0xff14, 0,      // 12: Scroll Lock
        0xffe3, 0,      0xffe3, 0,      // 13: Control
        0xffe5, 0,      0xffe5, 0,      // 14: Caps Lock
        0xffeb, 0,      0xffeb, 0,      // 15: Super
    };
    mapping.modifiers[1] = {14, 0};
    mapping.modifiers[2] = {13, 0};
    mapping.modifiers[3] = {10, 0};
    mapping.modifiers[4] = {11, 0};
    mapping.modifiers[6] = {15, 0};
    return mapping;
}

} // namespace

TEST(KeyGrabs, TakeTheChordWithEveryCombinationOfLocks) {
    const KeyGrabs grabs = grabsOf(chord, usual());
    EXPECT_THAT(grabs.keyCodes, ElementsAre(9));
    EXPECT_EQ(grabs.modifiers, XCB_MOD_MASK_CONTROL | XCB_MOD_MASK_1);
    EXPECT_THAT(grabs.locks, UnorderedElementsAre(0, XCB_MOD_MASK_LOCK, XCB_MOD_MASK_2,
                                                  XCB_MOD_MASK_LOCK | XCB_MOD_MASK_2));
}

TEST(KeyGrabs, FindTheLocksWhereTheKeyboardHasThem) {
    KeyboardMapping mapping = usual();
    mapping.modifiers[4] = {};
    mapping.modifiers[7] = {11};
    mapping.modifiers[5] = {12};
    const KeyGrabs grabs = grabsOf(chord, mapping);
    EXPECT_EQ(grabs.locks.size(), 8U);
    EXPECT_THAT(grabs.locks, testing::Contains(XCB_MOD_MASK_LOCK | XCB_MOD_MASK_5 | XCB_MOD_MASK_3));
    EXPECT_THAT(grabs.locks, testing::Not(testing::Contains(XCB_MOD_MASK_2)));
}

TEST(KeyGrabs, FindAltWhereTheKeyboardHasIt) {
    KeyboardMapping mapping = usual();
    mapping.modifiers[3] = {};
    mapping.modifiers[5] = {10};
    EXPECT_EQ(grabsOf(chord, mapping).modifiers, XCB_MOD_MASK_CONTROL | XCB_MOD_MASK_3);
    mapping.modifiers[5] = {};
    EXPECT_EQ(grabsOf(chord, mapping).modifiers, XCB_MOD_MASK_CONTROL | XCB_MOD_MASK_1)
        << "nowhere: the usual";
}

TEST(KeyGrabs, TakeEveryKeyOfTheSymbol) {
    KeyboardMapping mapping = usual();
    mapping.symbols[0] = 0x20;
    EXPECT_THAT(grabsOf(chord, mapping).keyCodes, ElementsAre(8, 9));
    mapping.symbols[0] = 0x61;
    mapping.symbols[2] = 0x20; // in the second layout
    EXPECT_THAT(grabsOf(chord, mapping).keyCodes, ElementsAre(8, 9));
}

TEST(KeyGrabs, AKeyWithTheSymbolOnItsShiftLevelIsNotTaken) {
    KeyboardMapping mapping = usual();
    mapping.symbols[1] = 0x20;
    EXPECT_THAT(grabsOf(chord, mapping).keyCodes, ElementsAre(9));
}

TEST(KeyGrabs, OtherChordsHaveTheirOwnModifiers) {
    const KeyGrabs grabs = grabsOf({Qt::Key_A, Qt::ShiftModifier | Qt::MetaModifier}, usual());
    EXPECT_THAT(grabs.keyCodes, ElementsAre(8));
    EXPECT_EQ(grabs.modifiers, XCB_MOD_MASK_SHIFT | XCB_MOD_MASK_4);
}

TEST(KeyGrabs, AKeyboardWithoutTheKeyHasNothingToGrab) {
    EXPECT_TRUE(grabsOf({Qt::Key_Z, Qt::NoModifier}, usual()).keyCodes.empty());
    EXPECT_TRUE(grabsOf(chord, {}).keyCodes.empty());
    KeyboardMapping broken = usual();
    broken.symbols.resize(5);
    broken.modifiers[4] = {255, 3};
    EXPECT_TRUE(grabsOf(chord, broken).keyCodes.empty());
}

TEST(KeyGrabs, RecogniseTheEventsOfTheChord) {
    const KeyGrabs grabs = grabsOf(chord, usual());
    const std::uint16_t state = XCB_MOD_MASK_CONTROL | XCB_MOD_MASK_1;
    EXPECT_TRUE(matches(grabs, 9, state));
    EXPECT_TRUE(matches(grabs, 9, state | XCB_MOD_MASK_LOCK | XCB_MOD_MASK_2));
    EXPECT_TRUE(matches(grabs, 9, state | 0x2000)) << "another layout";
    EXPECT_FALSE(matches(grabs, 8, state));
    EXPECT_FALSE(matches(grabs, 9, XCB_MOD_MASK_CONTROL));
    EXPECT_FALSE(matches(grabs, 9, state | XCB_MOD_MASK_SHIFT));
}
