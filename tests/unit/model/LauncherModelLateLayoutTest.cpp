#include "data/LayoutFile.h"
#include "support/ModelFixture.h"

#include <QUuid>

using namespace amberquill;
using namespace Qt::StringLiterals;

namespace {

// The model starts before the layout file has been read.
class LauncherModelLateLayout : public ModelFixture {
protected:
    void SetUp() override {
        ModelFixture::SetUp();
        layoutIsLate_ = true;
        files_.addFile(layoutPath, encodeItems(arranged_));
        model().setSize({1500, 892});
    }

    LauncherModel& model() { return model_ ? *model_ : shownWith(4); }

    [[nodiscard]] LaunchItems kept() {
        queue_.runPosted();
        model_->flushSaves();
        const auto stored = LayoutStore::read(files_, u"/data"_s);
        return stored.items.value_or(LaunchItems());
    }

    void arrive() {
        model_->takeLateLayout(LayoutStore::read(files_, u"/data"_s));
        queue_.runPosted();
    }

    const LaunchItems arranged_ = {
        LaunchItem::app(path(4)),
        LaunchItem::folder(
            {QUuid::fromString(u"3F2504E0-4F89-11D3-9A0C-0305E82C3301"_s), u"Mine"_s, {path(3), path(2)}}),
        LaunchItem::app(path(1))};
    const LaunchItems byName_ = {LaunchItem::app(path(1)), LaunchItem::app(path(2)), LaunchItem::app(path(3)),
                                 LaunchItem::app(path(4))};
};

} // namespace

TEST_F(LauncherModelLateLayout, UntilItComesTheApplicationsAreShownAndNothingIsSaved) {
    EXPECT_EQ(model_->items(), byName_);
    model_->move(u"a:"_s + path(1), 3);
    model_->save();
    EXPECT_EQ(kept(), arranged_);
}

TEST_F(LauncherModelLateLayout, AResetBeforeItComesKeepsACopyOfTheLateLayout) {
    model_->resetLayout();
    queue_.runPosted();
    const auto copies = [this] { return files_.listFolder(u"/data/Amberquill/layout-history"_s); };
    EXPECT_FALSE(copies());
    arrive();
    queue_.runPosted();
    ASSERT_TRUE(copies());
    ASSERT_EQ(copies()->size(), 1U);
    const auto copy =
        decodeLayoutFile(*files_.file(u"/data/Amberquill/layout-history/"_s + copies()->front().name));
    ASSERT_TRUE(copy);
    EXPECT_EQ(copy->items, arranged_);
}

TEST_F(LauncherModelLateLayout, ItReplacesChangesMadeMeanwhile) {
    model_->move(u"a:"_s + path(1), 3);
    model_->sortByName();
    arrive();
    EXPECT_EQ(model_->items(), arranged_);
    EXPECT_EQ(kept(), arranged_);
}

TEST_F(LauncherModelLateLayout, NewApplicationsJoinIt) {
    installed_ = apps(5);
    model_->refreshApps();
    queue_.runPosted();
    arrive();
    LaunchItems wanted = arranged_;
    wanted.push_back(LaunchItem::app(path(5)));
    EXPECT_EQ(model_->items(), wanted);
    EXPECT_EQ(kept(), wanted);
}

TEST_F(LauncherModelLateLayout, ItWaitsForTheEndOfADrag) {
    const QPointF from = model_->visibleEntries().front().center;
    press(from);
    dragTo(from, from + QPointF(30, 0));
    ASSERT_TRUE(model_->drag());
    arrive();
    EXPECT_EQ(model_->items(), byName_);
    release(from, from + QPointF(30, 0));
    queue_.advance(1);
    EXPECT_EQ(model_->items(), arranged_);
    EXPECT_EQ(kept(), arranged_);
}

TEST_F(LauncherModelLateLayout, ItDoesNotReplaceAResetOrAnImport) {
    model_->resetLayout();
    EXPECT_EQ(kept(), arranged_);
    arrive();
    EXPECT_EQ(model_->items(), byName_);
    EXPECT_EQ(kept(), byName_);
}

TEST_F(LauncherModelLateLayout, AFileThatDoesNotDecodeIsSetAsideAndTheItemsStay) {
    files_.addFile(layoutPath, "nonsense");
    arrive();
    EXPECT_EQ(model_->items(), byName_);
    EXPECT_EQ(kept(), byName_);
}
