#include "window/LauncherKeys.h"

#include <gtest/gtest.h>

using namespace amberquill;

TEST(LauncherKeys, EscapePeelsBackOneLayerAtATime) {
    EXPECT_EQ(keyAction(Qt::Key_Escape, {}, {true, false}), KeyAction::CloseFolder);
    EXPECT_EQ(keyAction(Qt::Key_Escape, {}, {false, false}), KeyAction::Hide);
}

TEST(LauncherKeys, TheArrowsTurnPages) {
    EXPECT_EQ(keyAction(Qt::Key_Left, {}, {}), KeyAction::PreviousPage);
    EXPECT_EQ(keyAction(Qt::Key_Right, {}, {}), KeyAction::NextPage);
    EXPECT_EQ(keyAction(Qt::Key_Right, Qt::KeypadModifier, {}), KeyAction::NextPage);
}

TEST(LauncherKeys, TheArrowsGoOnWithTextInTheFieldOrAFolderOpen) {
    EXPECT_EQ(keyAction(Qt::Key_Left, {}, {false, true}), KeyAction::PassOn);
    EXPECT_EQ(keyAction(Qt::Key_Right, {}, {true, false}), KeyAction::PassOn);
}

TEST(LauncherKeys, WithControlEveryKeyGoesOn) {
    for (const int key : {Qt::Key_Escape, Qt::Key_Left, Qt::Key_Right, Qt::Key_Q}) {
        EXPECT_EQ(keyAction(key, Qt::ControlModifier, {}), KeyAction::PassOn);
        EXPECT_EQ(keyAction(key, Qt::ControlModifier | Qt::ShiftModifier, {true, true}), KeyAction::PassOn);
    }
}

TEST(LauncherKeys, OtherKeysGoOn) {
    EXPECT_EQ(keyAction(Qt::Key_A, {}, {}), KeyAction::PassOn);
    EXPECT_EQ(keyAction(Qt::Key_Up, {}, {}), KeyAction::PassOn);
}
