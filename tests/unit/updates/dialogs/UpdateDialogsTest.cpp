#include "updates/dialogs/UpdateDialogs.h"

#include "localization/L.h"
#include "localization/TranslatedTexts.h"
#include "updates/dialogs/UpdateFoundDialog.h"
#include "updates/dialogs/UpdateProgressDialog.h"

#include <QApplication>
#include <QLabel>
#include <QMessageBox>
#include <QProgressBar>
#include <QPushButton>
#include <QWindow>
#include <gtest/gtest.h>

using namespace amberquill;
using namespace Qt::StringLiterals;

namespace {

class UpdateDialogsTest : public testing::Test {
protected:
    void SetUp() override {
        L::setLanguage(AppLanguage::English);
        const auto answer = [this](const char* name) {
            return [this, name] { answers_ += QLatin1String(name); };
        };
        dialogs_->setAnswers({.install = answer("install"),
                              .later = answer("later"),
                              .skip = answer("skip"),
                              .acknowledge = answer("acknowledge"),
                              .pause = answer("pause"),
                              .resume = answer("resume"),
                              .cancel = answer("cancel"),
                              .restart = answer("restart")});
        offer_.item.version = u"13"_s;
        offer_.item.shortVersion = u"1.3"_s;
        offer_.item.releaseNotes = u"Faster."_s;
        offer_.item.releasePage = QUrl(u"https://example.org/1.3"_s);
        offer_.installedVersion = u"1.2"_s;
        offer_.installKind = InstallKind::Image;
    }
    void TearDown() override {
        dialogs_.reset();
        L::setLanguage(AppLanguage::System);
    }

    // The one dialog on the screen; null: none, or more.
    static QDialog* shown() {
        QDialog* found = nullptr;
        for (QWidget* widget : QApplication::topLevelWidgets()) {
            auto* dialog = qobject_cast<QDialog*>(widget);
            if (dialog != nullptr && dialog->isVisible()) {
                EXPECT_EQ(found, nullptr) << "two at once";
                found = dialog;
            }
        }
        return found;
    }

    static void click(const QString& title) {
        QDialog* dialog = shown();
        ASSERT_NE(dialog, nullptr);
        for (QPushButton* button : dialog->findChildren<QPushButton*>()) {
            if (button->text() == title) {
                button->click();
                return;
            }
        }
        FAIL() << "no button " << title.toStdString();
    }
    static void click(UpdateText title) { click(updateText(title)); }

    static QMessageBox* message() { return qobject_cast<QMessageBox*>(shown()); }

    static QStringList texts() {
        QStringList found;
        for (const QLabel* label : shown()->findChildren<QLabel*>()) {
            EXPECT_TRUE(label->text().isEmpty() || label->textFormat() == Qt::PlainText);
            found += label->text();
        }
        return found;
    }

    QStringList answers_;
    QStringList pages_;
    UpdateOffer offer_;
    std::unique_ptr<UpdateDialogs> dialogs_ = std::make_unique<UpdateDialogs>(UpdateDialogs::Services{
        .launcher = [] { return nullptr; },
        .openPage =
            [this](const QUrl& page, QWindow& from) {
                EXPECT_TRUE(from.isVisible());
                pages_ += page.toString();
            },
    });
};

} // namespace

TEST_F(UpdateDialogsTest, AnUpdateIsShownWithBothVersions) {
    dialogs_->showUpdateFound(offer_);
    EXPECT_TRUE(texts().contains(u"Amberquill 1.3 is available. You have version 1.2."_s));
    EXPECT_FALSE(shown()->isModal());
    EXPECT_TRUE(shown()->windowFlags().testFlag(Qt::WindowStaysOnTopHint));
    EXPECT_TRUE(answers_.isEmpty());
}

TEST_F(UpdateDialogsTest, EachButtonGivesItsAnswer) {
    for (const auto& [title, answer] :
         {std::pair(UpdateText::Skip, u"skip"_s), std::pair(UpdateText::RemindLater, u"later"_s),
          std::pair(UpdateText::Install, u"install"_s)}) {
        answers_.clear();
        dialogs_->showUpdateFound(offer_);
        click(title);
        EXPECT_EQ(answers_, QStringList{answer});
        EXPECT_EQ(shown(), nullptr);
    }
}

TEST_F(UpdateDialogsTest, OnlyACheckByTheUserTakesTheFocus) {
    dialogs_->showUpdateFound(offer_);
    EXPECT_TRUE(shown()->testAttribute(Qt::WA_ShowWithoutActivating));
    dialogs_->showChecking();
    dialogs_->showUpdateFound(offer_);
    EXPECT_FALSE(shown()->testAttribute(Qt::WA_ShowWithoutActivating));
}

TEST_F(UpdateDialogsTest, IfTheProgramIsNotAnImageThePageIsOpened) {
    for (const InstallKind kind : {InstallKind::PackageManager, InstallKind::Other}) {
        pages_.clear();
        answers_.clear();
        offer_.installKind = kind;
        dialogs_->showUpdateFound(offer_);
        EXPECT_TRUE(texts().contains(updateText(UpdateText::PackageManaged)));
        click(UpdateText::OpenReleasePage);
        EXPECT_EQ(pages_, QStringList{u"https://example.org/1.3"_s});
        EXPECT_EQ(answers_, QStringList{u"later"_s});
    }
}

TEST_F(UpdateDialogsTest, APageWithoutHttpsIsNotOffered) {
    offer_.installKind = InstallKind::PackageManager;
    for (const QString& page : {u"http://example.org/"_s, u"file:///etc/passwd"_s, u""_s}) {
        offer_.item.releasePage = QUrl(page);
        dialogs_->showUpdateFound(offer_);
        for (const QPushButton* button : shown()->findChildren<QPushButton*>()) {
            EXPECT_NE(button->text(), updateText(UpdateText::OpenReleasePage)) << page.toStdString();
        }
    }
}

TEST_F(UpdateDialogsTest, AReplacedDialogGivesNoAnswer) {
    dialogs_->showChecking();
    dialogs_->showUpdateFound(offer_);
    dialogs_->showProgress(1, 4);
    dialogs_->showReadyToRestart(offer_.item);
    dialogs_->showError(UpdateError::Download);
    dialogs_->showNoUpdate(u"1.2"_s);
    dialogs_->dismiss();
    EXPECT_EQ(shown(), nullptr);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_TRUE(answers_.isEmpty());
}

TEST_F(UpdateDialogsTest, CheckDownloadAndInstallationAreOneDialog) {
    dialogs_->showChecking();
    QDialog* const dialog = shown();
    dialogs_->showProgress(1, 4);
    dialogs_->showPaused(1, 4);
    dialogs_->showInstalling();
    EXPECT_EQ(shown(), dialog);
    EXPECT_TRUE(texts().contains(updateText(UpdateText::Installing)));
}

TEST_F(UpdateDialogsTest, ADownloadIsPausedResumedAndCancelled) {
    dialogs_->showProgress(1, 4);
    click(UpdateText::Pause);
    dialogs_->showPaused(1, 4);
    click(UpdateText::Resume);
    dialogs_->showProgress(2, 4);
    click(L::cancel());
    EXPECT_EQ(answers_, (QStringList{u"pause"_s, u"resume"_s, u"cancel"_s}));
    EXPECT_EQ(shown(), nullptr);
}

TEST_F(UpdateDialogsTest, ACheckCanBeCancelled) {
    dialogs_->showChecking();
    shown()->close();
    EXPECT_EQ(answers_, QStringList{u"cancel"_s});
}

TEST_F(UpdateDialogsTest, NoUpdateIsShownWithTheTextsOfTheAlert) {
    dialogs_->showNoUpdate(u"1.2"_s);
    ASSERT_NE(message(), nullptr);
    EXPECT_EQ(message()->text(), L::upToDate());
    EXPECT_EQ(message()->informativeText(), u"Amberquill 1.2 is the latest version."_s);
    EXPECT_TRUE(message()->isModal());
    message()->button(QMessageBox::Ok)->click();
    EXPECT_EQ(answers_, QStringList{u"acknowledge"_s});
}

TEST_F(UpdateDialogsTest, EveryErrorHasItsOwnText) {
    QSet<QString> seen;
    for (const UpdateError error :
         {UpdateError::FeedConnection, UpdateError::FeedContent, UpdateError::NoDownload,
          UpdateError::NoPublicKey, UpdateError::NoSignature, UpdateError::Download, UpdateError::WrongLength,
          UpdateError::WrongSignature, UpdateError::File, UpdateError::NotNewer, UpdateError::Installation}) {
        answers_.clear();
        dialogs_->showError(error);
        ASSERT_NE(message(), nullptr);
        EXPECT_EQ(message()->text(), updateText(UpdateText::FailedTitle));
        EXPECT_FALSE(seen.contains(message()->informativeText())) << static_cast<int>(error);
        seen += message()->informativeText();
        message()->close();
        EXPECT_EQ(answers_, QStringList{u"acknowledge"_s});
    }
}

TEST_F(UpdateDialogsTest, ARestartIsOfferedAndCanBePostponed) {
    offer_.item.shortVersion = u"<b>1.3</b>"_s;
    dialogs_->showReadyToRestart(offer_.item);
    EXPECT_TRUE(texts().contains(u"Restart Amberquill to use version <b>1.3</b>."_s));
    click(UpdateText::RestartNow);
    EXPECT_EQ(answers_, QStringList{u"restart"_s});
    dialogs_->showReadyToRestart(offer_.item);
    message()->close();
    EXPECT_EQ(answers_, (QStringList{u"restart"_s, u"later"_s}));
}

TEST_F(UpdateDialogsTest, TheAlertIsModalAndReportsItsEnd) {
    int closed = 0;
    dialogs_->alertUpToDate(u"1.2"_s, [&closed] { ++closed; });
    ASSERT_NE(message(), nullptr);
    EXPECT_TRUE(message()->isModal());
    EXPECT_EQ(message()->informativeText(), u"Amberquill 1.2 is the latest version."_s);
    EXPECT_EQ(message()->standardButtons(), QMessageBox::Ok);
    dialogs_->alertUpToDate(u"1.2"_s, [&closed] { closed += 10; });
    EXPECT_EQ(closed, 0);
    message()->button(QMessageBox::Ok)->click();
    EXPECT_EQ(closed, 11) << "one alert for both";
    EXPECT_EQ(shown(), nullptr);
}

TEST_F(UpdateDialogsTest, TheAlertStandsApartFromWhatTheUpdaterShows) {
    dialogs_->alertUpToDate(u"1.2"_s, [] {});
    QDialog* const alert = shown();
    dialogs_->dismiss();
    EXPECT_EQ(shown(), alert);
}
