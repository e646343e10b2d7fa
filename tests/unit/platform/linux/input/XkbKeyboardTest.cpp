#include "platform/linux/input/XkbKeyboard.h"

#include <gtest/gtest.h>

using namespace amberquill::desktop;

TEST(XkbKeyboard, EveryLetterHasItsKey) {
    const XkbKeyboard keyboard;
    EXPECT_EQ(keyboard.americanLetter(24), 'Q');
    EXPECT_EQ(keyboard.americanLetter(25), 'W');
    EXPECT_EQ(keyboard.americanLetter(33), 'P');
    EXPECT_EQ(keyboard.americanLetter(38), 'A');
    EXPECT_EQ(keyboard.americanLetter(46), 'L');
    EXPECT_EQ(keyboard.americanLetter(52), 'Z');
    EXPECT_EQ(keyboard.americanLetter(58), 'M');
    int letters = 0;
    for (std::uint32_t code = 0; code < 256; ++code) {
        letters += keyboard.americanLetter(code) != 0 ? 1 : 0;
    }
    EXPECT_EQ(letters, 26);
}

TEST(XkbKeyboard, OtherKeysHaveNoLetter) {
    const XkbKeyboard keyboard;
    for (const std::uint32_t code : {0U, 23U, 34U, 37U, 47U, 51U, 59U, 9999U}) {
        EXPECT_EQ(keyboard.americanLetter(code), 0) << code;
    }
}
