#include "States.h"

#include "data/IconCache.h"
#include "motion/Animation.h"
#include "motion/Animations.h"
#include "support/PlatformFakes.h"

using namespace Qt::StringLiterals;

namespace amberquill {

namespace {

constexpr int many = 80;
constexpr double frame = 1.0 / 60;

QUuid gamesID() {
    return QUuid(u"3F2504E0-4F89-11D3-9A0C-0305E82C3301"_s);
}

QStringList numbered(int first, int count) {
    QStringList paths;
    for (int i = 0; i < count; ++i) {
        paths += ModelStage::path(first + i);
    }
    return paths;
}

// With a folder in the third place.
void showPage(ViewStage& stage, int inFolder = 12) {
    stage.files_.addFile(
        ModelStage::layoutPath,
        encodeItems(
            {LaunchItem::app(ModelStage::path(1)), LaunchItem::app(ModelStage::path(2)),
             LaunchItem::folder({gamesID(), u"Games"_s, numbered(inFolder > 20 ? 5 : 50, inFolder)})}));
    if (stage.installed_.empty()) {
        stage.installed_ = ModelStage::apps(many + inFolder);
    }
    stage.open();
    stage.bringUp();
    stage.settle();
}

void showFolder(ViewStage& stage, int count) {
    showPage(stage, count);
    stage.model_->openFolder(gamesID());
    stage.settle();
}

void take(ViewStage& stage, int slot, const QPointF& to) {
    const QPointF from = stage.iconCentre(slot);
    stage.press(from);
    stage.dragTo(from, to);
    stage.settle();
}

// Holds an icon over a slot until the tile there is marked, then moves the icon aside, so that it does not
// cover the tile but the tile stays marked.
void takeOnto(ViewStage& stage, int slot, int target) {
    take(stage, slot, stage.iconCentre(target));
    stage.dragTo(stage.iconCentre(slot),
                 stage.iconCentre(target) + QPointF(stage.model_->metrics().iconSize() * 0.8, 0));
    stage.settle();
}

void focus(ViewStage& stage, const QString& name) {
    if (QQuickItem* field = stage.item(name)) {
        field->forceActiveFocus();
    }
}

void showScripts(ViewStage& stage) {
    const QStringList names = {
        u"日本語のアプリケーション"_s,
        u"简体中文应用程序"_s,
        u"تطبيق عربي"_s,
        u"יישום בעברית"_s,
        u"Ångström Çâêîø"_s,
        u"Zo\u0308e\u0301 N\u0303a\u0302me\u0323\u0307"_s,
        u"Gjpqy|_ ÅÉÎ"_s,
        u"<b>bold</b> & <i>x</i>"_s,
        u"Line\nbreak\tand\u0007bell"_s,
        u"🎨 Paint 👩‍🚀"_s,
        u"हिन्दी ऐप"_s,
        u"ไทยที่นี่ ก็"_s,
        u"Ελληνικά Кириллица"_s,
        u"A name that is very much longer than any cell could ever be wide"_s,
        u"یک نام بسیار بسیار طولانی که در هیچ خانه‌ای جا نمی‌شود"_s,
        u"非常に長い名前のアプリケーションは省略記号で終わります"_s,
        QString(100'000, u'm'),
        u" "_s,
    };
    stage.installed_ = ModelStage::apps(static_cast<int>(names.size()));
    for (qsizetype i = 0; i < names.size(); ++i) {
        stage.installed_[static_cast<std::size_t>(i)].name = names[i];
    }
    stage.open();
    stage.bringUp();
    stage.settle();
}

} // namespace

const std::vector<State>& states() {
    static const std::vector<State> all = {
        {u"page"_s, [](ViewStage& stage) { showPage(stage); }},
        {u"last-page"_s,
         [](ViewStage& stage) {
             showPage(stage);
             stage.model_->goToPage(stage.model_->displayedPageCount() - 1);
             stage.settle();
         }},
        {u"one-page"_s,
         [](ViewStage& stage) {
             stage.installed_ = ModelStage::apps(18);
             stage.open();
             stage.bringUp();
             stage.settle();
         }},
        {u"placeholders"_s,
         [](ViewStage& stage) {
             stage.installed_ = ModelStage::apps(many);
             IconCache::shared().serveFrom(nullptr, nullptr);
             stage.open();
             stage.model_->setPresented(true);
             stage.settle();
         }},
        {u"without-icons"_s,
         [](ViewStage& stage) {
             static NoIcons none;
             IconCache::shared().serveFrom(&none, &stage.queue_);
             showPage(stage);
         }},
        {u"entrance"_s,
         [](ViewStage& stage) {
             showPage(stage);
             stage.model_->setPresented(false);
             withAnimation(motion::show, [&] { stage.model_->setPresented(true); });
             stage.advance(5 * frame);
         }},
        {u"page-turning"_s,
         [](ViewStage& stage) {
             showPage(stage);
             stage.model_->turnToPage(1);
             stage.advance(8 * frame);
         }},
        {u"pressed"_s,
         [](ViewStage& stage) {
             showPage(stage);
             stage.press(stage.iconCentre(1));
         }},
        {u"pressed-folder"_s,
         [](ViewStage& stage) {
             showPage(stage);
             stage.press(stage.iconCentre(2));
         }},
        {u"hover"_s,
         [](ViewStage& stage) {
             showPage(stage);
             QTest::mouseMove(stage.window_.get(), QPoint((stage.contentSize_.width() - 392) / 2 + 22, 62));
             stage.settle();
         }},
        {u"search"_s,
         [](ViewStage& stage) {
             showPage(stage);
             focus(stage, u"searchField"_s);
             stage.model_->setSearchText(stage.installed_.front().name.left(1));
             stage.settle();
         }},
        {u"nothing-found"_s,
         [](ViewStage& stage) {
             showPage(stage);
             stage.model_->setSearchText(u"no such application"_s);
             stage.settle();
         }},
        {u"folder"_s, [](ViewStage& stage) { showFolder(stage, 12); }},
        {u"folder-of-one"_s, [](ViewStage& stage) { showFolder(stage, 1); }},
        {u"folder-empty"_s, [](ViewStage& stage) { showFolder(stage, 0); }},
        {u"folder-crowded"_s, [](ViewStage& stage) { showFolder(stage, 60); }},
        {u"folder-opening"_s,
         [](ViewStage& stage) {
             showPage(stage);
             stage.model_->openFolder(gamesID());
             stage.advance(5 * frame);
         }},
        {u"folder-renaming"_s,
         [](ViewStage& stage) {
             showFolder(stage, 5);
             focus(stage, u"folderTitle"_s);
             QTest::keyClick(stage.window_.get(), Qt::Key_A, Qt::ControlModifier);
             stage.settle();
         }},
        {u"folder-long-name"_s,
         [](ViewStage& stage) {
             showFolder(stage, 5);
             stage.model_->renameFolder(gamesID(),
                                        u"A name that begins here and is longer than the field, the end"_s);
             stage.settle();
         }},
        {u"dragging"_s,
         [](ViewStage& stage) {
             showPage(stage);
             take(stage, 0,
                  stage.model_->metrics().cellCenter(9) +
                      QPointF(stage.model_->metrics().cellSize().width() / 2, 5));
         }},
        {u"dragging-folder"_s,
         [](ViewStage& stage) {
             showPage(stage);
             take(stage, 2,
                  stage.model_->metrics().cellCenter(9) +
                      QPointF(stage.model_->metrics().cellSize().width() / 2, 5));
         }},
        {u"merge-application"_s,
         [](ViewStage& stage) {
             showPage(stage);
             takeOnto(stage, 0, 1);
         }},
        {u"merge-folder"_s,
         [](ViewStage& stage) {
             showPage(stage);
             takeOnto(stage, 0, 2);
         }},
        {u"dropping"_s,
         [](ViewStage& stage) {
             showPage(stage);
             const QPointF from = stage.iconCentre(0);
             const QPointF to = from + QPointF(30, 90);
             take(stage, 0, to);
             stage.release(from, to);
             stage.advance(4 * frame);
         }},
        {u"scripts"_s, showScripts},
    };
    return all;
}

} // namespace amberquill
