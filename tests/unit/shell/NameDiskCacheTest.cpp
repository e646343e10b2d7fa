#include "shell/NameDiskCache.h"

#include "support/ModelFixture.h"

using namespace amberquill;
using namespace Qt::StringLiterals;

namespace {

class NameDiskCacheTest : public ModelFixture {
protected:
    void SetUp() override {
        ModelFixture::SetUp();
        installed_ = apps(2);
        cache_ = std::make_unique<NameDiskCache>(queue_, files_, u"/cache"_s, u"en"_s);
        cache_->follow(makeModel());
        model_->refreshApps();
        queue_.runPosted();
    }

    const QString file_ = u"/cache/Amberquill/names"_s;
    std::unique_ptr<NameDiskCache> cache_;
};

} // namespace

TEST_F(NameDiskCacheTest, TheNextStartHasTheNamesOfTheLastScan) {
    const auto names = NameDiskCache::load(files_, u"/cache"_s, u"en"_s);
    EXPECT_EQ(names.size(), 2);
    EXPECT_EQ(names.value(path(2)), u"App 2"_s);
}

TEST_F(NameDiskCacheTest, NamesInAnotherLanguageAreNotUsed) {
    EXPECT_TRUE(NameDiskCache::load(files_, u"/cache"_s, u"de"_s).isEmpty());
}

TEST_F(NameDiskCacheTest, OnlyChangedNamesAreWritten) {
    const int writes = files_.writes();
    model_->refreshApps();
    queue_.runPosted();
    EXPECT_EQ(files_.writes(), writes);
    installed_[0].name = u"Renamed"_s;
    model_->refreshApps();
    queue_.runPosted();
    EXPECT_EQ(NameDiskCache::load(files_, u"/cache"_s, u"en"_s).value(path(1)), u"Renamed"_s);
}

TEST_F(NameDiskCacheTest, WithoutAFileThereAreNoNames) {
    EXPECT_TRUE(NameDiskCache::load(files_, u"/elsewhere"_s, u"en"_s).isEmpty());
}
