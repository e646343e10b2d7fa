#include "RootViewFixture.h"

#include "localization/L.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QInputMethodEvent>

using namespace amberquill;
using namespace Qt::StringLiterals;

namespace {

// Typing into both text fields.
class TextFieldTest : public RootViewFixture {
protected:
    void showWithFolder() {
        files_.addFile(layoutPath, encodeItems({LaunchItem::folder({id_, u"Games"_s, {path(1), path(2)}})}));
        showWith(60);
        settle();
    }

    [[nodiscard]] QQuickItem* focused(const QString& name) const {
        QQuickItem* field = item(name);
        EXPECT_NE(field, nullptr);
        field->forceActiveFocus();
        return field;
    }

    static QString text(const QQuickItem* field) { return field->property("text").toString(); }

    void key(Qt::Key key, Qt::KeyboardModifiers modifiers = {}) {
        QTest::keyClick(window_.get(), key, modifiers);
    }

    static void compose(QQuickItem* field, const QString& preedit, const QString& commit = {}) {
        QInputMethodEvent event(preedit, {});
        event.setCommitString(commit);
        QCoreApplication::sendEvent(field, &event);
    }

    const QUuid id_{u"3F2504E0-4F89-11D3-9A0C-0305E82C3301"_s};
};

} // namespace

INSTANTIATE_TEST_SUITE_P(Size, TextFieldTest, testing::Values(QSize(1280, 800)),
                         [](const auto& size) { return std::to_string(size.param.width()); });

TEST_P(TextFieldTest, ComposedTextIsSearchedForOnlyOnceItIsCommitted) {
    installed_ = {{u"/Applications/1.app"_s, u"日本語"_s}, {u"/Applications/2.app"_s, u"Other"_s}};
    open();
    bringUp();
    QQuickItem* field = focused(u"searchField"_s);
    compose(field, u"にほん"_s);
    EXPECT_EQ(field->property("preeditText").toString(), u"にほん"_s);
    EXPECT_EQ(model_->searchText(), QString());
    EXPECT_EQ(model_->displayedItems().size(), 2U);
    compose(field, {}, u"日本"_s);
    EXPECT_EQ(model_->searchText(), u"日本"_s);
    EXPECT_EQ(model_->displayedItems().size(), 1U);
}

TEST_P(TextFieldTest, AFoldersNameIsComposedToo) {
    showWithFolder();
    model_->openFolder(id_);
    settle();
    QQuickItem* field = focused(u"folderTitle"_s);
    key(Qt::Key_End);
    compose(field, u"げ"_s);
    EXPECT_EQ(model_->folder(id_)->name, u"Games"_s);
    compose(field, {}, u"芸"_s);
    EXPECT_EQ(model_->folder(id_)->name, u"Games芸"_s);
}

TEST_P(TextFieldTest, ThePlaceholderIsInTheInterfaceLanguageAndHiddenByTypedOrComposedText) {
    showWith(3);
    QQuickItem* field = focused(u"searchField"_s);
    const auto placeholder = [&]() -> QString {
        for (const QQuickItem* each : drawn(u"QQuickText"_s)) {
            if (drawnRect(each).intersects(drawnRect(field))) {
                return each->property("text").toString();
            }
        }
        return {};
    };
    model_->setLanguage(AppLanguage::English);
    EXPECT_EQ(placeholder(), u"Search"_s);
    model_->setLanguage(AppLanguage::German);
    EXPECT_EQ(placeholder(), L::search());
    EXPECT_NE(placeholder(), u"Search"_s);
    compose(field, u"n"_s);
    EXPECT_EQ(placeholder(), QString());
    compose(field, {});
    EXPECT_EQ(placeholder(), L::search());
    type("a");
    EXPECT_EQ(placeholder(), QString());
    model_->setLanguage(AppLanguage::System);
}

TEST_P(TextFieldTest, SelectionClipboardAndUndoWork) {
    showWith(60);
    QQuickItem* field = focused(u"searchField"_s);
    type("app 42");
    key(Qt::Key_A, Qt::ControlModifier);
    EXPECT_EQ(field->property("selectedText").toString(), u"app 42"_s);
    key(Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ(QGuiApplication::clipboard()->text(), u"app 42"_s);
    key(Qt::Key_X, Qt::ControlModifier);
    EXPECT_EQ(model_->searchText(), QString());
    key(Qt::Key_V, Qt::ControlModifier);
    EXPECT_EQ(model_->searchText(), u"app 42"_s);
    key(Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(model_->searchText(), QString());
    key(Qt::Key_Z, Qt::ControlModifier | Qt::ShiftModifier);
    EXPECT_EQ(model_->searchText(), u"app 42"_s);
}

TEST_P(TextFieldTest, TextPastedFromElsewhereStaysOnOneLine) {
    showWith(3);
    QQuickItem* field = focused(u"searchField"_s);
    QGuiApplication::clipboard()->setText(u"<b>one</b>\ntwo"_s);
    key(Qt::Key_V, Qt::ControlModifier);
    EXPECT_TRUE(text(field).startsWith(u"<b>one</b>"_s)) << "as it is";
    EXPECT_LT(field->property("contentHeight").toDouble(), 30);
}

TEST_P(TextFieldTest, RightToLeftTextBeginsAtTheRight) {
    showWith(3);
    QQuickItem* field = focused(u"searchField"_s);
    compose(field, {}, u"שלום"_s);
    EXPECT_EQ(model_->searchText(), u"שלום"_s);
    const QRectF end = field->property("cursorRectangle").toRectF();
    EXPECT_LT(end.left(), field->width() - 15) << "left of what was typed";
    EXPECT_GT(end.left(), field->width() / 2);
    field->setProperty("cursorPosition", 0);
    EXPECT_GT(field->property("cursorRectangle").toRectF().left(), field->width() - 5);
}

TEST_P(TextFieldTest, ALongNameIsShownFromItsBeginningUnlessItIsBeingEdited) {
    showWithFolder();
    model_->renameFolder(id_,
                         u"A name that begins here and is far longer than the field could be, the end"_s);
    model_->openFolder(id_);
    settle();
    QQuickItem* field = item(u"folderTitle"_s);
    ASSERT_NE(field, nullptr);
    const auto left = [&] { return field->property("cursorRectangle").toRectF().left(); };
    const double beginning = field->property("leftPadding").toDouble();
    EXPECT_EQ(field->property("cursorPosition").toInt(), 0);
    EXPECT_NEAR(left(), beginning, 1);
    field->forceActiveFocus();
    key(Qt::Key_End);
    EXPECT_NEAR(left(), field->width(), 3);
    window_->endEditing();
    EXPECT_NEAR(left(), beginning, 1);
}

TEST_P(TextFieldTest, TheClearButtonEmptiesTheSearch) {
    showWith(60);
    focused(u"searchField"_s)->setProperty("cursorPosition", 0);
    type("app 42");
    const QQuickItem* clear = item(u"clearButton"_s);
    ASSERT_TRUE(clear->isVisible());
    QCoreApplication::processEvents();
    QTest::mouseClick(window_.get(), Qt::LeftButton, {}, drawnRect(clear).center().toPoint());
    EXPECT_EQ(model_->searchText(), QString());
    EXPECT_EQ(model_->displayedItems().size(), 60U);
    EXPECT_FALSE(clear->isVisible());
}
