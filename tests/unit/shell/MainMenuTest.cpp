#include "shell/MainMenu.h"

#include "localization/L.h"
#include "platform/Keyboard.h"

#include <QAction>
#include <QKeyEvent>
#include <gtest/gtest.h>

using namespace amberquill;
using namespace Qt::StringLiterals;

namespace {

// Has the letter W on one key, and none elsewhere.
class FakeKeyboard final : public Keyboard {
public:
    static constexpr std::uint32_t keyOfW = 7;

    [[nodiscard]] char americanLetter(std::uint32_t scanCode) const override {
        return scanCode == keyOfW ? 'W' : '\0';
    }
};

class MainMenuTest : public testing::Test {
protected:
    void SetUp() override { L::setLanguage(AppLanguage::English); }
    void TearDown() override { L::setLanguage(AppLanguage::System); }

    [[nodiscard]] MainMenu make() {
        return MainMenu(
            {
                .about = [this] { done_ += u"about"_s; },
                .hide = [this] { done_ += u"hide"_s; },
                .quit = [this] { done_ += u"quit"_s; },
                .edit = [this](EditCommand command) { done_ += u"edit %1"_s.arg(static_cast<int>(command)); },
                .close = [this] { done_ += u"close"_s; },
            },
            keyboard_);
    }

    // The entries as "title keys".
    static QStringList entries(const MainMenu::Menu& menu) {
        QStringList result;
        for (const auto& item : menu.items) {
            result +=
                item->isSeparator()
                    ? u"-"_s
                    : (item->text() + u' ' + item->shortcut().toString(QKeySequence::PortableText)).trimmed();
        }
        return result;
    }

    static bool press(const MainMenu& menu, int key, Qt::KeyboardModifiers modifiers) {
        return menu.performKeyEquivalent(QKeyEvent(QEvent::KeyPress, key, modifiers));
    }

    // With Control, on the key with this scan code.
    static bool pressAt(const MainMenu& menu, std::uint32_t scanCode, int key) {
        return menu.performKeyEquivalent(
            QKeyEvent(QEvent::KeyPress, key, Qt::ControlModifier, scanCode, 0, 0, QString(), false, 1));
    }

    FakeKeyboard keyboard_;
    QStringList done_;
};

} // namespace

TEST_F(MainMenuTest, TheEntriesStandInOrderWithTheirKeys) {
    const MainMenu menu = make();
    ASSERT_EQ(menu.menus().size(), 2U);
    EXPECT_EQ(menu.menus()[0].title, QString());
    EXPECT_EQ(entries(menu.menus()[0]),
              (QStringList{u"About Amberquill"_s, u"-"_s, u"Hide Amberquill Ctrl+H"_s,
                           u"Quit Amberquill Ctrl+Q"_s}));
    EXPECT_EQ(menu.menus()[1].title, u"Edit"_s);
    EXPECT_EQ(entries(menu.menus()[1]),
              (QStringList{u"Undo Ctrl+Z"_s, u"-"_s, u"Cut Ctrl+X"_s, u"Copy Ctrl+C"_s, u"Paste Ctrl+V"_s,
                           u"Select All Ctrl+A"_s, u"-"_s, u"Close Ctrl+W"_s}));
}

TEST_F(MainMenuTest, TheMenuIsInTheLanguageAtItsConstruction) {
    L::setLanguage(AppLanguage::German);
    const MainMenu german = make();
    L::setLanguage(AppLanguage::Japanese);
    EXPECT_EQ(german.menus()[1].title, u"Bearbeiten"_s);
    EXPECT_EQ(entries(german.menus()[1]).constLast(), u"Schließen Ctrl+W"_s);
    EXPECT_EQ(make().menus()[1].title, u"編集"_s);
}

TEST_F(MainMenuTest, TheKeysTriggerTheirEntries) {
    const MainMenu menu = make();
    for (const int key :
         {Qt::Key_H, Qt::Key_Q, Qt::Key_Z, Qt::Key_X, Qt::Key_C, Qt::Key_V, Qt::Key_A, Qt::Key_W}) {
        EXPECT_TRUE(press(menu, key, Qt::ControlModifier));
    }
    EXPECT_EQ(done_, (QStringList{u"hide"_s, u"quit"_s, u"edit 0"_s, u"edit 1"_s, u"edit 2"_s, u"edit 3"_s,
                                  u"edit 4"_s, u"close"_s}));
}

TEST_F(MainMenuTest, OtherKeysTriggerNothing) {
    const MainMenu menu = make();
    EXPECT_FALSE(press(menu, Qt::Key_Q, {}));
    EXPECT_FALSE(press(menu, Qt::Key_Q, Qt::ControlModifier | Qt::ShiftModifier));
    EXPECT_FALSE(press(menu, Qt::Key_Q, Qt::AltModifier));
    EXPECT_FALSE(press(menu, Qt::Key_B, Qt::ControlModifier));
    EXPECT_FALSE(press(menu, Qt::Key_Control, Qt::ControlModifier));
    EXPECT_TRUE(done_.isEmpty());
}

TEST_F(MainMenuTest, TheKeysWorkInEveryKeyboardLayout) {
    EXPECT_TRUE(press(make(), Qt::Key_W, Qt::ControlModifier | Qt::GroupSwitchModifier));
    EXPECT_EQ(done_, QStringList{u"close"_s});
}

TEST_F(MainMenuTest, TheAboutEntryWorksWithoutKeys) {
    const MainMenu menu = make();
    menu.menus()[0].items[0]->trigger();
    EXPECT_EQ(done_, QStringList{u"about"_s});
}

TEST_F(MainMenuTest, ALetterOfAnotherScriptCountsAsTheLatinOneOnItsKey) {
    const MainMenu menu = make();
    for (const int letter : {0x426, 0x3a3, 0x635}) { // Cyrillic, Greek, Arabic
        EXPECT_TRUE(pressAt(menu, FakeKeyboard::keyOfW, letter)) << letter;
    }
    EXPECT_EQ(done_, (QStringList{u"close"_s, u"close"_s, u"close"_s}));
}

TEST_F(MainMenuTest, ALetterOfAnotherScriptOnAnotherKeyTriggersNothing) {
    const MainMenu menu = make();
    EXPECT_FALSE(pressAt(menu, 0, 0x426));
    EXPECT_FALSE(pressAt(menu, FakeKeyboard::keyOfW + 1, 0x426));
}

TEST_F(MainMenuTest, ALatinLetterCountsAsItselfOnEveryKey) {
    const MainMenu menu = make();
    EXPECT_FALSE(pressAt(menu, FakeKeyboard::keyOfW, Qt::Key_Comma)) << "Dvorak";
    EXPECT_FALSE(pressAt(menu, FakeKeyboard::keyOfW, 0x11e)) << "Turkish F";
    EXPECT_TRUE(pressAt(menu, FakeKeyboard::keyOfW, Qt::Key_Z)) << "French";
    EXPECT_EQ(done_, QStringList{u"edit 0"_s});
}

TEST_F(MainMenuTest, AKeyWithoutALetterCountsAsItself) {
    const MainMenu menu = make();
    for (const int key : {static_cast<int>(Qt::Key_Escape), static_cast<int>(Qt::Key_unknown), 0}) {
        EXPECT_FALSE(pressAt(menu, FakeKeyboard::keyOfW, key)) << key;
    }
}
