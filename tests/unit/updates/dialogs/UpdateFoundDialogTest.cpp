#include "updates/dialogs/UpdateFoundDialog.h"

#include "localization/L.h"
#include "localization/TranslatedTexts.h"

#include <QApplication>
#include <QKeyEvent>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <gtest/gtest.h>

using namespace amberquill;
using namespace Qt::StringLiterals;

namespace {

class UpdateFoundDialogTest : public testing::Test {
protected:
    void SetUp() override { L::setLanguage(AppLanguage::English); }
    void TearDown() override {
        dialog_.reset();
        L::setLanguage(AppLanguage::System);
    }

    void show(const FoundUpdate& update) {
        dialog_ = std::make_unique<UpdateFoundDialog>(
            update,
            UpdateFoundDialog::Answers{.chosen = [this](UpdateChoice choice) { choices_.push_back(choice); },
                                       .openPage = [this] { pagesOpened_ += dialog_->isVisible() ? 1 : 0; }});
        dialog_->show();
    }

    [[nodiscard]] QPushButton* button(UpdateText title) const {
        for (QPushButton* each : dialog_->findChildren<QPushButton*>()) {
            if (each->text() == updateText(title)) {
                return each;
            }
        }
        return nullptr;
    }

    [[nodiscard]] QStringList texts() const {
        QStringList found;
        for (const QLabel* label : dialog_->findChildren<QLabel*>()) {
            if (!label->text().isEmpty()) {
                EXPECT_EQ(label->textFormat(), Qt::PlainText);
                found += label->text();
            }
        }
        return found;
    }

    void press(Qt::Key key) {
        QWidget* focused = dialog_->focusWidget() != nullptr ? dialog_->focusWidget() : dialog_.get();
        for (const auto type : {QEvent::KeyPress, QEvent::KeyRelease}) {
            QKeyEvent event(type, key, Qt::NoModifier);
            QCoreApplication::sendEvent(focused, &event);
        }
    }

    FoundUpdate update_{.version = u"1.3"_s, .installedVersion = u"1.2"_s, .notes = u"Faster."_s};
    std::unique_ptr<UpdateFoundDialog> dialog_;
    std::vector<UpdateChoice> choices_;
    int pagesOpened_ = 0; // while the dialog was there
};

} // namespace

TEST_F(UpdateFoundDialogTest, ShowsTheNewAndTheInstalledVersion) {
    show(update_);
    EXPECT_EQ(texts(),
              (QStringList{u"A new version of Amberquill is available"_s,
                           u"Amberquill 1.3 is available. You have version 1.2."_s, u"Release Notes"_s}));
    EXPECT_EQ(dialog_->windowTitle(), u"Amberquill"_s);
    EXPECT_FALSE(dialog_->accessibleName().isEmpty());
}

TEST_F(UpdateFoundDialogTest, TheButtonsAreInOrderAndGiveTheirChoice) {
    const std::vector<std::pair<UpdateText, UpdateChoice>> expected = {
        {UpdateText::Skip, UpdateChoice::Skip},
        {UpdateText::RemindLater, UpdateChoice::Later},
        {UpdateText::Install, UpdateChoice::Install}};
    int x = -1;
    for (const auto& [title, choice] : expected) {
        show(update_);
        QPushButton* found = button(title);
        ASSERT_NE(found, nullptr);
        EXPECT_GT(found->x(), x);
        x = found->x();
        choices_.clear();
        found->click();
        EXPECT_EQ(choices_, std::vector{choice});
        EXPECT_FALSE(dialog_->isVisible());
    }
}

TEST_F(UpdateFoundDialogTest, ClosingItMeansLater) {
    show(update_);
    dialog_->close();
    EXPECT_EQ(choices_, std::vector{UpdateChoice::Later});
    show(update_);
    press(Qt::Key_Escape);
    EXPECT_EQ(choices_, (std::vector{UpdateChoice::Later, UpdateChoice::Later}));
}

TEST_F(UpdateFoundDialogTest, ReturnInstallsOnlyAfterACheckByTheUser) {
    show(update_);
    press(Qt::Key_Return);
    EXPECT_EQ(choices_, std::vector{UpdateChoice::Install});
    update_.isUserInitiated = false;
    for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Space}) {
        choices_.clear();
        show(update_);
        press(key);
        EXPECT_EQ(choices_, std::vector{UpdateChoice::Later});
    }
}

TEST_F(UpdateFoundDialogTest, ReturnPressesTheButtonWithTheFocus) {
    show(update_);
    button(UpdateText::Skip)->setFocus();
    press(Qt::Key_Return);
    EXPECT_EQ(choices_, std::vector{UpdateChoice::Skip});
}

TEST_F(UpdateFoundDialogTest, TheNotesAreShownAsPlainText) {
    update_.notes = u"<h1>Big</h1><img src=\"file:///etc/passwd\">\n&amp;"_s;
    show(update_);
    auto* notes = dialog_->findChild<QPlainTextEdit*>();
    ASSERT_NE(notes, nullptr);
    EXPECT_EQ(notes->toPlainText(), update_.notes);
    EXPECT_TRUE(notes->isReadOnly());
    EXPECT_TRUE(notes->tabChangesFocus()) << "Tab leaves the notes";
    EXPECT_EQ(notes->accessibleName(), updateText(UpdateText::ReleaseNotes));
}

TEST_F(UpdateFoundDialogTest, VeryLongNotesAreCutOff) {
    update_.notes = QString(5'000'000, u'x');
    show(update_);
    const QString shown = dialog_->findChild<QPlainTextEdit*>()->toPlainText();
    EXPECT_EQ(shown.size(), 20'001);
    EXPECT_TRUE(shown.endsWith(u'…'));
}

TEST_F(UpdateFoundDialogTest, WithoutNotesThereIsNoNotesArea) {
    update_.notes.clear();
    show(update_);
    EXPECT_EQ(dialog_->findChild<QPlainTextEdit*>(), nullptr);
    EXPECT_FALSE(texts().contains(updateText(UpdateText::ReleaseNotes)));
}

TEST_F(UpdateFoundDialogTest, AVersionIsCutOffAndShownAsPlainText) {
    update_.version = u"<b>1</b>\n\u202e"_s + QString(200, u'9');
    update_.installedVersion = u"%1"_s;
    show(update_);
    EXPECT_EQ(texts().at(1),
              u"Amberquill <b>1</b>"_s + QString(30, u'9') + u" is available. You have version %1."_s);
}

TEST_F(UpdateFoundDialogTest, AProgramThatIsNotAnImageOffersThePage) {
    update_.canInstall = false;
    update_.hasPage = true;
    show(update_);
    EXPECT_TRUE(texts().contains(updateText(UpdateText::PackageManaged)));
    EXPECT_EQ(button(UpdateText::Install), nullptr);
    ASSERT_NE(button(UpdateText::OpenReleasePage), nullptr);
    button(UpdateText::OpenReleasePage)->click();
    EXPECT_EQ(pagesOpened_, 1);
    EXPECT_EQ(choices_, std::vector{UpdateChoice::Later});
    EXPECT_FALSE(dialog_->isVisible());
}

TEST_F(UpdateFoundDialogTest, WithoutAPageThereIsNoButtonForIt) {
    update_.canInstall = false;
    show(update_);
    EXPECT_EQ(button(UpdateText::OpenReleasePage), nullptr);
    press(Qt::Key_Return);
    EXPECT_EQ(choices_, std::vector{UpdateChoice::Later});
}
