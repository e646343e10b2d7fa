#include "localization/L.h"
#include "support/ModelFixture.h"

#include <QSignalSpy>

using namespace amberquill;
using namespace Qt::StringLiterals;

namespace {

class FakeLoginItem final : public LoginItem {
public:
    [[nodiscard]] bool isEnabled() const override { return isEnabled_; }
    void enable() override { isEnabled_ = !refuses; }
    void disable() override { isEnabled_ = false; }

    bool refuses = false;

private:
    bool isEnabled_ = false;
};

class LauncherModelSettings : public ModelFixture {
protected:
    void TearDown() override {
        ModelFixture::TearDown();
        L::setLanguage(AppLanguage::System);
    }
};

} // namespace

TEST_F(LauncherModelSettings, AGridSideIsStoredAsAnInteger) {
    LauncherModel& model = shownWith(3);
    model.setColumns(8);
    model.setRows(6);
    EXPECT_EQ(model.columns(), 8);
    EXPECT_EQ(model.rows(), 6);
    EXPECT_EQ(preferences_.integer(u"gridColumns"_s), 8);
    EXPECT_EQ(preferences_.integer(u"gridRows"_s), 6);
    EXPECT_EQ(makeModel().columns(), 8);
    EXPECT_EQ(makeModel().rows(), 6);
}

TEST_F(LauncherModelSettings, AGridSideStoredAsTextReadsAsAbsent) {
    preferences_.setString(u"gridColumns"_s, u"9"_s);
    preferences_.setString(u"gridRows"_s, u"6"_s);
    EXPECT_EQ(makeModel().columns(), 7);
    EXPECT_EQ(makeModel().rows(), 5);
}

TEST_F(LauncherModelSettings, ASmallerGridMovesTheViewToTheNewLastPage) {
    LauncherModel& model = shownWith(80);
    model.setGrid(5, 4);
    model.goToPage(3);
    model.setGrid(9, 6);
    EXPECT_EQ(model.page(), 1);
    EXPECT_EQ(model.displayedPageCount(), 2);
}

TEST_F(LauncherModelSettings, ColumnsAreSetBeforeRows) {
    LauncherModel& model = shownWith(80);
    model.setGrid(5, 4);
    model.goToPage(3);
    model.setGrid(9, 2);
    EXPECT_EQ(model.displayedPageCount(), 5);
    EXPECT_EQ(model.page(), 2) << "9 × 4 on the way has three pages; 5 × 2 would have had eight";
}

TEST_F(LauncherModelSettings, AGridIsSignalledWithThePageInRange) {
    LauncherModel& model = shownWith(80);
    model.goToPage(2);
    int grids = 0;
    QObject::connect(&model, &LauncherModel::gridChanged, [&] {
        ++grids;
        EXPECT_LT(model.page(), model.displayedPageCount());
    });
    QSignalSpy pageCount(&model, &LauncherModel::pageCountChanged);
    model.setGrid(9, 6);
    EXPECT_EQ(grids, 2);
    EXPECT_EQ(pageCount.count(), 1) << "80 tiles take 2 pages of 9 × 5 as of 9 × 6";
    model.setGrid(9, 6);
    EXPECT_EQ(grids, 2) << "unchanged";
}

TEST_F(LauncherModelSettings, SixGridsAreOffered) {
    const std::vector<std::pair<int, int>> expected = {{5, 4}, {6, 4}, {7, 5}, {8, 5}, {8, 6}, {9, 6}};
    EXPECT_EQ(std::vector(LauncherModel::gridPresets.begin(), LauncherModel::gridPresets.end()), expected);
}

TEST_F(LauncherModelSettings, ABackgroundIsStoredByItsText) {
    LauncherModel& model = shownWith(1);
    QSignalSpy told(&model, &LauncherModel::backgroundChanged);
    for (const BackgroundTheme theme :
         {BackgroundTheme::Purple, BackgroundTheme::Green, BackgroundTheme::Blue}) {
        model.setBackground(theme);
        EXPECT_EQ(model.background(), theme);
        EXPECT_EQ(preferences_.string(u"backgroundTheme"_s), rawValue(theme));
        EXPECT_EQ(LauncherModel::storedBackground(preferences_), theme);
    }
    EXPECT_EQ(told.count(), 3);
}

TEST_F(LauncherModelSettings, AnUnknownStoredBackgroundIsBlue) {
    preferences_.setString(u"backgroundTheme"_s, u"red"_s);
    EXPECT_EQ(makeModel().background(), BackgroundTheme::Blue);
    preferences_.setInteger(u"backgroundTheme"_s, 2);
    EXPECT_EQ(makeModel().background(), BackgroundTheme::Blue);
}

TEST_F(LauncherModelSettings, ALanguageIsCurrentStoredAndAppliedBeforeItIsSignalledOnce) {
    QStringList steps;
    applyToFrameworks_ = [&](AppLanguage language) {
        EXPECT_EQ(language, AppLanguage::German);
        EXPECT_EQ(L::language(), AppLanguage::German);
        EXPECT_EQ(preferences_.string(u"appLanguage"_s), u"de"_s);
        steps.append(u"applied"_s);
    };
    LauncherModel& model = makeModel();
    QObject::connect(&model, &LauncherModel::languageDidChange, [&] {
        EXPECT_EQ(model.language(), AppLanguage::German);
        EXPECT_EQ(L::search(), u"Suchen"_s);
        steps.append(u"told"_s);
    });
    model.setLanguage(AppLanguage::German);
    EXPECT_EQ(steps, (QStringList{u"applied"_s, u"told"_s}));
}

TEST_F(LauncherModelSettings, ALanguageIsCurrentBeforeItIsStored) {
    LauncherModel& model = makeModel();
    std::optional<AppLanguage> current;
    preferences_.onStored = [&current](const QString& key) {
        if (key == u"appLanguage"_s) {
            current = L::language();
        }
    };
    model.setLanguage(AppLanguage::German);
    EXPECT_EQ(current, AppLanguage::German);
}

TEST_F(LauncherModelSettings, FollowingTheSystemIsAChoiceThatIsStoredToo) {
    LauncherModel& model = makeModel();
    model.setLanguage(AppLanguage::Japanese);
    model.setLanguage(AppLanguage::System);
    EXPECT_EQ(preferences_.string(u"appLanguage"_s), u"system"_s);
    EXPECT_EQ(L::language(), AppLanguage::System);
}

TEST_F(LauncherModelSettings, PreferencesReadLateAreUsedAndNotStoredAgain) {
    LauncherModel& model = shownWith(80);
    const QSignalSpy grid(&model, &LauncherModel::gridChanged);
    const QSignalSpy background(&model, &LauncherModel::backgroundChanged);
    const QSignalSpy language(&model, &LauncherModel::languageDidChange);
    preferences_.setInteger(u"gridColumns"_s, 5);
    preferences_.setString(u"backgroundTheme"_s, rawValue(BackgroundTheme::Green));
    preferences_.setString(u"appLanguage"_s, rawValue(AppLanguage::French));
    model.goToPage(2);
    QStringList stored;
    preferences_.onStored = [&stored](const QString& key) { stored += key; };
    model.takeLatePreferences();
    EXPECT_EQ(model.columns(), 5);
    EXPECT_EQ(model.rows(), 5);
    EXPECT_EQ(model.background(), BackgroundTheme::Green);
    EXPECT_EQ(model.language(), AppLanguage::French);
    EXPECT_EQ(L::language(), AppLanguage::French);
    EXPECT_EQ(grid.size(), 1);
    EXPECT_EQ(background.size(), 1);
    EXPECT_EQ(language.size(), 1);
    EXPECT_EQ(stored, QStringList());
}

TEST_F(LauncherModelSettings, OpeningAtLoginTogglesTheDesktopsState) {
    const auto item = std::make_shared<FakeLoginItem>();
    loginItem_ = item;
    LauncherModel& model = makeModel();
    EXPECT_FALSE(model.opensAtLogin());
    model.toggleOpenAtLogin();
    EXPECT_TRUE(model.opensAtLogin());
    item->disable(); // outside the program
    model.toggleOpenAtLogin();
    EXPECT_TRUE(model.opensAtLogin());
    model.toggleOpenAtLogin();
    EXPECT_FALSE(model.opensAtLogin());
    item->refuses = true;
    model.toggleOpenAtLogin();
    EXPECT_FALSE(model.opensAtLogin()) << "a refusal is silent";
}

TEST_F(LauncherModelSettings, ADesktopWithoutLoginItemsRefusesSilently) {
    LauncherModel& model = makeModel();
    model.toggleOpenAtLogin();
    EXPECT_FALSE(model.opensAtLogin());
}
