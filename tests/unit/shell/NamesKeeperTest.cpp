#include "shell/NamesKeeper.h"

#include "support/ModelFixture.h"

using namespace amberquill;
using namespace Qt::StringLiterals;

namespace {

class NamesKeeperTest : public ModelFixture {
protected:
    void SetUp() override {
        ModelFixture::SetUp();
        installed_ = apps(2);
        keeper_ = std::make_unique<NamesKeeper>(queue_, files_, u"/cache"_s, u"en"_s);
        keeper_->follow(makeModel());
        model_->refreshApps();
        queue_.runPosted();
    }

    const QString file_ = u"/cache/Amberquill/names"_s;
    std::unique_ptr<NamesKeeper> keeper_;
};

} // namespace

TEST_F(NamesKeeperTest, AScansNamesAreThereAtTheNextStart) {
    const auto names = NamesKeeper::load(files_, u"/cache"_s, u"en"_s);
    EXPECT_EQ(names.size(), 2);
    EXPECT_EQ(names.value(path(2)), u"App 2"_s);
}

TEST_F(NamesKeeperTest, InAnotherLanguageTheyAreNotUsed) {
    EXPECT_TRUE(NamesKeeper::load(files_, u"/cache"_s, u"de"_s).isEmpty());
}

TEST_F(NamesKeeperTest, TheSameNamesAreNotWrittenAgain) {
    const int writes = files_.writes();
    model_->refreshApps();
    queue_.runPosted();
    EXPECT_EQ(files_.writes(), writes);
    installed_[0].name = u"Renamed"_s;
    model_->refreshApps();
    queue_.runPosted();
    EXPECT_EQ(NamesKeeper::load(files_, u"/cache"_s, u"en"_s).value(path(1)), u"Renamed"_s);
}

TEST_F(NamesKeeperTest, NoFileMeansNoNames) {
    EXPECT_TRUE(NamesKeeper::load(files_, u"/elsewhere"_s, u"en"_s).isEmpty());
}
