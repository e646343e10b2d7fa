#include "updates/dialogs/UpdateProgressDialog.h"

#include "localization/L.h"
#include "localization/TranslatedTexts.h"

#include <QApplication>
#include <QLabel>
#include <QLocale>
#include <QProgressBar>
#include <QPushButton>
#include <gtest/gtest.h>
#include <stdexcept>

using namespace amberquill;
using namespace Qt::StringLiterals;

namespace {

class UpdateProgressDialogTest : public testing::Test {
protected:
    void SetUp() override {
        L::setLanguage(AppLanguage::English);
        QLocale::setDefault(QLocale(u"en"_s));
        dialog_.show();
    }
    void TearDown() override {
        QLocale::setDefault(QLocale::system());
        L::setLanguage(AppLanguage::System);
    }

    [[nodiscard]] QStringList texts() const {
        QStringList found;
        for (const QLabel* label : dialog_.findChildren<QLabel*>()) {
            if (!label->text().isEmpty()) {
                found += label->text();
            }
        }
        return found;
    }
    [[nodiscard]] QProgressBar& bar() const { return *dialog_.findChild<QProgressBar*>(); }
    [[nodiscard]] QPushButton& button(const QString& title) const {
        for (QPushButton* each : dialog_.findChildren<QPushButton*>()) {
            if (each->text() == title) {
                return *each;
            }
        }
        throw std::logic_error("no such button");
    }
    [[nodiscard]] QPushButton& cancel() const { return button(L::cancel()); }

    int cancelled_ = 0;
    int paused_ = 0;
    int resumed_ = 0;
    UpdateProgressDialog dialog_{UpdateProgressDialog::Answers{.pause = [this] { ++paused_; },
                                                               .resume = [this] { ++resumed_; },
                                                               .cancel = [this] { ++cancelled_; }}};
};

} // namespace

TEST_F(UpdateProgressDialogTest, ShowsTheCurrentStep) {
    EXPECT_EQ(texts(), QStringList{u"Checking for updates…"_s});
    EXPECT_EQ(bar().maximum(), 0) << "the duration is not known";
    dialog_.showDownload(1'500'000, 6'000'000);
    EXPECT_EQ(texts(), (QStringList{u"Downloading the update…"_s, u"1.5 MB of 6.0 MB"_s}));
    EXPECT_EQ(bar().value() * 4, bar().maximum());
    EXPECT_EQ(bar().accessibleName(), u"Downloading the update…"_s);
    dialog_.showInstalling();
    EXPECT_EQ(texts(), QStringList{u"Installing the update…"_s});
    EXPECT_EQ(bar().maximum(), 0);
}

TEST_F(UpdateProgressDialogTest, SizesAboveTheBarsRangeAreShown) {
    dialog_.showDownload(40'000'000'000, 50'000'000'000);
    EXPECT_EQ(bar().value() * 5, bar().maximum() * 4);
    dialog_.showDownload(60, 50);
    EXPECT_EQ(bar().value(), bar().maximum());
    dialog_.showDownload(1'500'000, 0);
    EXPECT_EQ(bar().maximum(), 0);
    EXPECT_EQ(texts().at(1), u"1.5 MB"_s);
}

TEST_F(UpdateProgressDialogTest, SizesAreFormattedInTheLanguage) {
    QLocale::setDefault(QLocale(u"de"_s));
    L::setLanguage(AppLanguage::German);
    dialog_.showDownload(1'500'000, 6'000'000);
    EXPECT_EQ(texts().at(1), u"1,5 MB von 6,0 MB"_s);
}

TEST_F(UpdateProgressDialogTest, OnlyADownloadCanBePaused) {
    EXPECT_FALSE(button(updateText(UpdateText::Pause)).isVisible());
    dialog_.showDownload(1, 4);
    ASSERT_TRUE(button(updateText(UpdateText::Pause)).isVisible());
    button(updateText(UpdateText::Pause)).click();
    EXPECT_EQ(paused_, 1);
    dialog_.showPaused(1, 4);
    EXPECT_EQ(texts().constFirst(), updateText(UpdateText::Paused));
    button(updateText(UpdateText::Resume)).click();
    EXPECT_EQ(resumed_, 1);
    dialog_.showDownload(2, 4);
    button(updateText(UpdateText::Pause)).click();
    EXPECT_EQ(paused_, 2);
    dialog_.showInstalling();
    EXPECT_FALSE(button(updateText(UpdateText::Pause)).isVisible());
}

TEST_F(UpdateProgressDialogTest, CancellingAndClosingAreTheSame) {
    cancel().click();
    EXPECT_EQ(cancelled_, 1);
    EXPECT_FALSE(dialog_.isVisible());
    dialog_.reject();
    EXPECT_EQ(cancelled_, 1);
    int closed = 0;
    UpdateProgressDialog other(
        UpdateProgressDialog::Answers{.pause = [] {}, .resume = [] {}, .cancel = [&closed] { ++closed; }});
    other.show();
    other.close();
    EXPECT_EQ(closed, 1);
}

TEST_F(UpdateProgressDialogTest, ClosingDoesNotCancelAnInstallation) {
    dialog_.showInstalling();
    EXPECT_FALSE(cancel().isEnabled());
    EXPECT_TRUE(dialog_.close()) << "a dialog that stays open keeps the program from quitting";
    EXPECT_FALSE(dialog_.isVisible());
    EXPECT_EQ(cancelled_, 0);
}
