#include "shell/LatinKeys.h"

#include <QKeyEvent>
#include <gtest/gtest.h>

using namespace amberquill;

namespace {

constexpr quint32 placeOfW = 25;

int keyFor(int key, quint32 place) {
    return combinationKey(
        QKeyEvent(QEvent::KeyPress, key, Qt::ControlModifier, place, 0, 0, QString(), false, 1));
}

} // namespace

TEST(LatinKeys, ALetterOfAnotherScriptStandsForTheLatinOneInItsPlace) {
    EXPECT_EQ(keyFor(0x426, placeOfW), Qt::Key_W) << "Cyrillic";
    EXPECT_EQ(keyFor(0x3a3, placeOfW), Qt::Key_W) << "Greek";
    EXPECT_EQ(keyFor(0x635, placeOfW), Qt::Key_W) << "Arabic";
    EXPECT_EQ(keyFor(0x419, 24), Qt::Key_Q);
    EXPECT_EQ(keyFor(0x417, 33), Qt::Key_P);
    EXPECT_EQ(keyFor(0x424, 38), Qt::Key_A);
    EXPECT_EQ(keyFor(0x414, 46), Qt::Key_L);
    EXPECT_EQ(keyFor(0x42f, 52), Qt::Key_Z);
    EXPECT_EQ(keyFor(0x42c, 58), Qt::Key_M);
}

TEST(LatinKeys, ALatinLetterIsItselfWhereverItIs) {
    EXPECT_EQ(keyFor(Qt::Key_Comma, placeOfW), Qt::Key_Comma) << "Dvorak";
    EXPECT_EQ(keyFor(Qt::Key_Z, placeOfW), Qt::Key_Z) << "French";
    EXPECT_EQ(keyFor(0x11e, placeOfW), 0x11e) << "Turkish F";
}

TEST(LatinKeys, AKeyElsewhereOrWithoutALetterIsItself) {
    EXPECT_EQ(keyFor(0x425, 34), 0x425) << "where an American keyboard has a bracket";
    EXPECT_EQ(keyFor(0x426, 0), 0x426) << "from nowhere";
    EXPECT_EQ(keyFor(0x426, 9999), 0x426);
    EXPECT_EQ(keyFor(Qt::Key_Escape, placeOfW), Qt::Key_Escape);
    EXPECT_EQ(keyFor(Qt::Key_unknown, placeOfW), Qt::Key_unknown);
    EXPECT_EQ(keyFor(0, placeOfW), 0);
}
