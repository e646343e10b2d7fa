#include "window/LayoutDialogs.h"

#include "localization/FrameworkLanguage.h"
#include "localization/L.h"
#include "platform/SystemLanguages.h"
#include "support/LogRecorder.h"
#include "support/ModelFixture.h"
#include "support/PlatformFakes.h"
#include "window/ApplicationIcon.h"

#include <QApplication>
#include <QFileDialog>
#include <QMessageBox>
#include <QPushButton>
#include <QTemporaryDir>
#include <map>

using namespace amberquill;
using namespace Qt::StringLiterals;

namespace {

class LayoutDialogsTest : public ModelFixture {
protected:
    void SetUp() override {
        ModelFixture::SetUp();
        L::setLanguage(AppLanguage::English);
        installed_ = {{u"/b.app"_s, u"B"_s}, {u"/a.app"_s, u"A"_s}};
        files_.addFile(layoutPath, encodeItems({LaunchItem::app(u"/b.app"_s), LaunchItem::app(u"/a.app"_s)}));
        makeModel();
        model_->willShow();
        queue_.runPosted();
        dialogs_ = std::make_unique<LayoutDialogs>(LayoutDialogs::Services{
            .model = *model_, .files = files_, .startFolder = folder_.path(), .above = [] {
                return nullptr;
            }});
    }
    void TearDown() override {
        dialogs_.reset();
        L::setLanguage(AppLanguage::System);
        ModelFixture::TearDown();
    }

    template<typename Dialog>
    static Dialog* shown() {
        return qobject_cast<Dialog*>(QApplication::activeModalWidget());
    }

    // The about panel; null: there is none.
    static QMessageBox* panel() {
        for (QWidget* each : QApplication::topLevelWidgets()) {
            auto* box = qobject_cast<QMessageBox*>(each);
            if (box != nullptr && box->isVisible() && box->windowTitle() == L::about()) {
                return box;
            }
        }
        return nullptr;
    }

    static void press(QMessageBox::ButtonRole role) {
        auto* box = shown<QMessageBox>();
        ASSERT_NE(box, nullptr);
        for (QAbstractButton* button : box->buttons()) {
            if (box->buttonRole(button) == role) {
                button->click();
                return;
            }
        }
        FAIL() << "no such button";
    }

    void choose(const QString& path) {
        auto* dialog = shown<QFileDialog>();
        ASSERT_NE(dialog, nullptr);
        Q_EMIT dialog->fileSelected(path);
        dialog->close();
    }

    // Imports the file and expects the error that it holds no layout.
    void expectNoLayoutIn(const QString& path) {
        dialogs_->importLayout();
        choose(path);
        press(QMessageBox::AcceptRole);
        auto* box = shown<QMessageBox>();
        ASSERT_NE(box, nullptr);
        EXPECT_EQ(box->text(), L::importFailed());
        EXPECT_EQ(box->informativeText(), L::invalidLayoutFile());
        EXPECT_TRUE(isUntouched());
    }

    [[nodiscard]] bool isUntouched() const {
        return model_->items() == LaunchItems{LaunchItem::app(u"/b.app"_s), LaunchItem::app(u"/a.app"_s)};
    }

    QTemporaryDir folder_;
    std::unique_ptr<LayoutDialogs> dialogs_;
};

} // namespace

TEST_F(LayoutDialogsTest, AResetIsAskedForFirst) {
    dialogs_->confirmReset();
    auto* box = shown<QMessageBox>();
    ASSERT_NE(box, nullptr);
    EXPECT_EQ(box->text(), L::resetTitle());
    EXPECT_EQ(box->informativeText(), L::resetMessage());
    EXPECT_EQ(box->buttons().constFirst()->text(), L::reset());
    EXPECT_TRUE(isUntouched());
    press(QMessageBox::AcceptRole);
    EXPECT_EQ(model_->items(), (LaunchItems{LaunchItem::app(u"/a.app"_s), LaunchItem::app(u"/b.app"_s)}));
}

TEST_F(LayoutDialogsTest, ADeclinedResetChangesNothing) {
    dialogs_->confirmReset();
    press(QMessageBox::RejectRole);
    EXPECT_TRUE(isUntouched());
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_FALSE(dialogs_->isOpen());
}

TEST_F(LayoutDialogsTest, AnExportIsWrittenToTheChosenFile) {
    dialogs_->exportLayout();
    auto* dialog = shown<QFileDialog>();
    ASSERT_NE(dialog, nullptr);
    EXPECT_EQ(dialog->acceptMode(), QFileDialog::AcceptSave);
    EXPECT_EQ(dialog->directory().path(), folder_.path());
    EXPECT_TRUE(dialog->selectedFiles().constFirst().endsWith(L::exportFileName()));
    choose(u"/desktop/layout.json"_s);
    const auto written = files_.file(u"/desktop/layout.json"_s);
    ASSERT_TRUE(written);
    EXPECT_TRUE(written->contains("amberquill-layout"));
    EXPECT_TRUE(files_.isReadableByOthers(u"/desktop/layout.json"_s)) << "as far as the umask lets";
}

TEST_F(LayoutDialogsTest, TheFileDialogsAreForJsonFiles) {
    const auto expectJson = [] {
        auto* dialog = shown<QFileDialog>();
        ASSERT_NE(dialog, nullptr);
        EXPECT_EQ(dialog->nameFilters(), QStringList{u"JSON (*.json)"_s});
        EXPECT_EQ(dialog->defaultSuffix(), u"json"_s);
        dialog->close();
    };
    dialogs_->exportLayout();
    expectJson();
    dialogs_->importLayout();
    expectJson();
}

TEST_F(LayoutDialogsTest, AnExportToANameWithoutSuffixIsAJsonFile) {
    dialogs_->exportLayout();
    auto* dialog = shown<QFileDialog>();
    ASSERT_NE(dialog, nullptr);
    dialog->selectFile(u"mine"_s);
    EXPECT_EQ(dialog->selectedFiles(), QStringList{folder_.filePath(u"mine.json"_s)});
}

TEST_F(LayoutDialogsTest, WithoutADesktopFolderTheFileDialogsBeginInTheHomeFolder) {
    dialogs_ = std::make_unique<LayoutDialogs>(LayoutDialogs::Services{
        .model = *model_, .files = files_, .startFolder = folder_.filePath(u"missing"_s), .above = [] {
            return nullptr;
        }});
    for (const auto open : {&LayoutDialogs::exportLayout, &LayoutDialogs::importLayout}) {
        (*dialogs_.*open)();
        auto* dialog = shown<QFileDialog>();
        ASSERT_NE(dialog, nullptr);
        EXPECT_EQ(dialog->directory().path(), QDir::homePath());
        dialog->close();
    }
}

TEST_F(LayoutDialogsTest, AFailedExportShowsAnError) {
    dialogs_->exportLayout();
    files_.refuseWrites(true);
    choose(u"/desktop/layout.json"_s);
    auto* box = shown<QMessageBox>();
    ASSERT_NE(box, nullptr);
    EXPECT_EQ(box->icon(), QMessageBox::Warning);
    EXPECT_EQ(box->text(), L::exportFailed());
    EXPECT_EQ(box->informativeText(), u"layout.json: No space left on device"_s);
}

TEST_F(LayoutDialogsTest, FailedExportsAndImportsAreLogged) {
    files_.addFile(u"/desktop/other.json"_s, "{}");
    const std::string log = debugLog("amberquill.window", [&] {
        dialogs_->importLayout();
        choose(u"/desktop/missing.json"_s);
        press(QMessageBox::AcceptRole);
        expectNoLayoutIn(u"/desktop/other.json"_s);
        dialogs_->exportLayout();
        files_.refuseWrites(true);
        choose(u"/desktop/layout.json"_s);
    });
    EXPECT_NE(log.find("could not read \"/desktop/missing.json\""), std::string::npos) << log;
    EXPECT_NE(log.find("no layout to import in \"/desktop/other.json\""), std::string::npos) << log;
    EXPECT_NE(log.find("could not export to \"/desktop/layout.json\""), std::string::npos) << log;
}

TEST_F(LayoutDialogsTest, AConfirmedImportReplacesTheLayout) {
    dialogs_->exportLayout();
    choose(u"/desktop/layout.json"_s);
    model_->resetLayout();
    dialogs_->importLayout();
    choose(u"/desktop/layout.json"_s);
    auto* box = shown<QMessageBox>();
    ASSERT_NE(box, nullptr);
    EXPECT_EQ(box->text(), L::importTitle());
    EXPECT_EQ(box->informativeText(), L::importMessage());
    EXPECT_EQ(box->buttons().constFirst()->text(), L::importButton());
    EXPECT_FALSE(isUntouched()) << "not before it is confirmed";
    press(QMessageBox::AcceptRole);
    EXPECT_TRUE(isUntouched());
}

TEST_F(LayoutDialogsTest, AFileThatIsNoLayoutShowsAnErrorAndChangesNothing) {
    files_.addFile(u"/desktop/other.json"_s, "{}");
    expectNoLayoutIn(u"/desktop/other.json"_s);
}

TEST_F(LayoutDialogsTest, AFileThatCannotBeReadShowsAnError) {
    dialogs_->importLayout();
    choose(u"/desktop/missing.json"_s);
    press(QMessageBox::AcceptRole);
    auto* box = shown<QMessageBox>();
    ASSERT_NE(box, nullptr);
    EXPECT_EQ(box->text(), L::importFailed());
    EXPECT_EQ(box->informativeText(), u"missing.json: No such file or directory"_s);
    EXPECT_TRUE(isUntouched());
}

TEST_F(LayoutDialogsTest, AReadErrorIsShownInTheInterfaceLanguage) {
    files_.addFile(u"/desktop/locked.json"_s);
    files_.makeUnreadable(u"/desktop/locked.json"_s);
    const std::map<AppLanguage, QString> words = {
        {AppLanguage::German, u"locked.json: Zugriff verweigert"_s},
        {AppLanguage::Japanese, u"locked.json: 許可されていません"_s},
        {AppLanguage::English, u"locked.json: Permission denied"_s},
    };
    const FixedSystemLanguages system({});
    FrameworkLanguage frameworks(preferences_, system);
    for (const auto& [language, said] : words) {
        L::setLanguage(language);
        frameworks.apply(language);
        dialogs_->importLayout();
        choose(u"/desktop/locked.json"_s);
        press(QMessageBox::AcceptRole);
        auto* box = shown<QMessageBox>();
        ASSERT_NE(box, nullptr);
        EXPECT_EQ(box->text(), L::importFailed());
        EXPECT_EQ(box->informativeText(), said);
        press(QMessageBox::AcceptRole);
        EXPECT_TRUE(isUntouched());
    }
}

TEST_F(LayoutDialogsTest, AFileTooLargeForALayoutShowsAnError) {
    files_.addFile(u"/desktop/large.json"_s, QByteArray(64 * 1024 * 1024 + 1, ' '));
    expectNoLayoutIn(u"/desktop/large.json"_s);
}

TEST_F(LayoutDialogsTest, ClosingTheAboutPanelIsReported) {
    bool isClosed = false;
    dialogs_->showAbout(u"1.2"_s, [&isClosed] { isClosed = true; });
    auto* box = panel();
    ASSERT_NE(box, nullptr);
    EXPECT_EQ(box->text(), u"Amberquill"_s);
    EXPECT_EQ(box->informativeText(), u"1.2"_s);
    EXPECT_EQ(box->iconPixmap().toImage().convertToFormat(QImage::Format_ARGB32_Premultiplied),
              applicationPicture(64));
    EXPECT_FALSE(isClosed);
    box->buttons().constFirst()->click();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_TRUE(isClosed);
}

TEST_F(LayoutDialogsTest, TheAboutPanelIsNotModal) {
    dialogs_->showAbout(u"1.2"_s, [] {});
    ASSERT_NE(panel(), nullptr);
    EXPECT_EQ(QApplication::activeModalWidget(), nullptr) << "other windows take keys";
    dialogs_->confirmReset();
    EXPECT_NE(panel(), nullptr) << "a question leaves it alone";
}

TEST_F(LayoutDialogsTest, ThereIsOneAboutPanel) {
    int closed = 0;
    for (int i = 0; i < 2; ++i) {
        dialogs_->showAbout(u"1.2"_s, [&closed] { ++closed; });
    }
    ASSERT_NE(panel(), nullptr);
    panel()->close();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_EQ(panel(), nullptr);
    EXPECT_EQ(closed, 1);
}

TEST_F(LayoutDialogsTest, TheAboutPanelIsWideEnoughForItsTitle) {
    for (const AppLanguage language : allAppLanguages) {
        L::setLanguage(language);
        dialogs_->showAbout(u"1"_s, [] {});
        ASSERT_NE(panel(), nullptr);
        // Window managers put buttons beside the title and draw it larger and bold.
        QFont title = QApplication::font();
        title.setBold(true);
        constexpr int buttons = 120;
        EXPECT_GE(panel()->width(), QFontMetrics(title).horizontalAdvance(L::about()) + buttons);
        panel()->close();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }
}
