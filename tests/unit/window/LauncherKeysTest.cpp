#include "window/LauncherKeys.h"

#include <gtest/gtest.h>

using namespace amberquill;
using namespace Qt::StringLiterals;

namespace {

constexpr KeyState nothing{};
constexpr KeyState folder{.folderIsOpen = true};
constexpr KeyState searching{.hasSearchText = true, .isSearching = true};
constexpr KeyState onlySpaces{.hasSearchText = true};
constexpr KeyState dragging{.isDragging = true};

} // namespace

TEST(LauncherKeys, ReturnAndEnterLaunchTheFirstResultOfASearch) {
    EXPECT_EQ(keyAction(Qt::Key_Return, {}, searching), KeyAction::LaunchFirstResult);
    EXPECT_EQ(keyAction(Qt::Key_Enter, Qt::KeypadModifier, searching), KeyAction::LaunchFirstResult);
}

TEST(LauncherKeys, WithoutASearchReturnAndEnterAreIgnored) {
    for (const KeyState& state : {nothing, onlySpaces, dragging}) {
        EXPECT_EQ(keyAction(Qt::Key_Return, {}, state), KeyAction::Ignore);
        EXPECT_EQ(keyAction(Qt::Key_Enter, Qt::KeypadModifier, state), KeyAction::Ignore);
    }
}

TEST(LauncherKeys, WithAFolderOpenReturnAndEnterEndTheEditingOfItsTitle) {
    EXPECT_EQ(keyAction(Qt::Key_Return, {}, folder), KeyAction::EndEditing);
    EXPECT_EQ(keyAction(Qt::Key_Enter, Qt::KeypadModifier, folder), KeyAction::EndEditing);
    EXPECT_EQ(
        keyAction(Qt::Key_Return, {}, {.folderIsOpen = true, .hasSearchText = true, .isSearching = true}),
        KeyAction::EndEditing)
        << "the folder comes before the search";
}

TEST(LauncherKeys, EscapeClosesOneLayerAtATime) {
    EXPECT_EQ(keyAction(Qt::Key_Escape, {}, folder), KeyAction::CloseFolder);
    EXPECT_EQ(keyAction(Qt::Key_Escape, {}, {.folderIsOpen = true, .hasSearchText = true}),
              KeyAction::CloseFolder);
    EXPECT_EQ(keyAction(Qt::Key_Escape, {}, searching), KeyAction::ClearSearch);
    EXPECT_EQ(keyAction(Qt::Key_Escape, {}, onlySpaces), KeyAction::ClearSearch);
    EXPECT_EQ(keyAction(Qt::Key_Escape, {}, nothing), KeyAction::Hide);
    EXPECT_EQ(keyAction(Qt::Key_Escape, {}, dragging), KeyAction::Hide);
}

TEST(LauncherKeys, TheArrowsTurnPages) {
    EXPECT_EQ(keyAction(Qt::Key_Left, {}, nothing), KeyAction::PreviousPage);
    EXPECT_EQ(keyAction(Qt::Key_Right, {}, nothing), KeyAction::NextPage);
    EXPECT_EQ(keyAction(Qt::Key_Right, Qt::KeypadModifier, nothing), KeyAction::NextPage);
}

TEST(LauncherKeys, TheArrowsArePassedOnWithTextInTheFieldAFolderOpenOrDuringADrag) {
    for (const KeyState& state : {searching, onlySpaces, folder, dragging}) {
        EXPECT_EQ(keyAction(Qt::Key_Left, {}, state), KeyAction::PassOn);
        EXPECT_EQ(keyAction(Qt::Key_Right, {}, state), KeyAction::PassOn);
    }
}

TEST(LauncherKeys, WithControlEveryKeyIsPassedOn) {
    for (const int key : {Qt::Key_Return, Qt::Key_Enter, Qt::Key_Escape, Qt::Key_Left, Qt::Key_Right,
                          Qt::Key_F10, Qt::Key_Menu, Qt::Key_Q, Qt::Key_Comma}) {
        for (const KeyState& state : {nothing, folder, searching, dragging}) {
            EXPECT_EQ(keyAction(key, Qt::ControlModifier, state), KeyAction::PassOn);
            EXPECT_EQ(keyAction(key, Qt::ControlModifier | Qt::ShiftModifier, state), KeyAction::PassOn);
        }
    }
}

TEST(LauncherKeys, KeysThatComposeArePassedOn) {
    for (const int key : {Qt::Key_Return, Qt::Key_Enter, Qt::Key_Escape, Qt::Key_Left, Qt::Key_Right}) {
        EXPECT_EQ(keyAction(key, {}, {.isComposing = true}), KeyAction::PassOn);
        EXPECT_EQ(keyAction(key, {}, {.folderIsOpen = true, .isComposing = true}), KeyAction::PassOn);
        EXPECT_EQ(keyAction(key, {}, {.hasSearchText = true, .isSearching = true, .isComposing = true}),
                  KeyAction::PassOn);
    }
}

TEST(LauncherKeys, TheMenusKeysShowTheMenu) {
    EXPECT_EQ(keyAction(Qt::Key_Menu, {}, nothing), KeyAction::ShowMenu);
    EXPECT_EQ(keyAction(Qt::Key_F10, {}, searching), KeyAction::ShowMenu);
    EXPECT_EQ(keyAction(Qt::Key_F10, Qt::ShiftModifier, folder), KeyAction::ShowMenu);
    EXPECT_EQ(keyAction(Qt::Key_F10, Qt::AltModifier, nothing), KeyAction::PassOn);
    EXPECT_EQ(keyAction(Qt::Key_Menu, Qt::MetaModifier, nothing), KeyAction::PassOn);
}

TEST(LauncherKeys, OtherKeysArePassedOn) {
    for (const int key : {Qt::Key_A, Qt::Key_Up, Qt::Key_Down, Qt::Key_Space, Qt::Key_Tab, Qt::Key_Backspace,
                          Qt::Key_Home, Qt::Key_End, Qt::Key_PageUp, Qt::Key_PageDown, Qt::Key_Delete}) {
        for (const KeyState& state : {nothing, folder, searching, dragging}) {
            EXPECT_EQ(keyAction(key, {}, state), KeyAction::PassOn);
        }
    }
}

TEST(LauncherKeys, OnlyPrintableCharactersAreTyping) {
    EXPECT_TRUE(isTyping(u"a"_s, {}));
    EXPECT_TRUE(isTyping(u"A"_s, Qt::ShiftModifier));
    EXPECT_TRUE(isTyping(u" "_s, {}));
    EXPECT_TRUE(isTyping(u"7"_s, Qt::KeypadModifier));
    EXPECT_TRUE(isTyping(u"é"_s, {}));
    EXPECT_TRUE(isTyping(u"😀"_s, {}));
    EXPECT_FALSE(isTyping({}, {})) << "a modifier or an arrow";
    for (const QChar control : u"\b\t\r\u001b\u007f"_s) {
        EXPECT_FALSE(isTyping(control, {}));
    }
    EXPECT_FALSE(isTyping(u"a"_s, Qt::ControlModifier));
    EXPECT_FALSE(isTyping(u"a"_s, Qt::AltModifier));
    EXPECT_FALSE(isTyping(u"a"_s, Qt::MetaModifier));
}
