#include "data/HomePaths.h"

#include <gtest/gtest.h>

using namespace amberquill;
using namespace Qt::StringLiterals;

namespace {

// Knows the user "ann" and counts the look-ups.
class Homes {
public:
    explicit Homes(const QString& own = u"/home/me"_s)
        : folders_{own, [this](const QString& user) {
                       ++asked;
                       return user == u"ann"_s ? std::optional(u"/srv/ann"_s) : std::nullopt;
                   }} {}
    Homes(const Homes&) = delete;
    Homes& operator=(const Homes&) = delete;
    ~Homes() = default;

    [[nodiscard]] TildeExpansion expansion() const { return TildeExpansion(folders_); }

    int asked = 0;

private:
    HomeFolders folders_;
};

} // namespace

TEST(HomeRelative, APathBelowHomeBeginsWithATilde) {
    EXPECT_EQ(homeRelative(u"/home/me/Applications/X.app"_s, u"/home/me"_s), u"~/Applications/X.app"_s);
}

TEST(HomeRelative, AFolderWithHomeAsAPrefixOfItsNameIsNotHome) {
    EXPECT_EQ(homeRelative(u"/home/meabel/X.app"_s, u"/home/me"_s), u"/home/meabel/X.app"_s);
    EXPECT_EQ(homeRelative(u"/home/me"_s, u"/home/me"_s), u"/home/me"_s);
    EXPECT_EQ(homeRelative(u"/srv/home/me/X.app"_s, u"/home/me"_s), u"/srv/home/me/X.app"_s);
}

TEST(HomeRelative, WithoutAHomeOrWithTheRootAsHomePathsStay) {
    EXPECT_EQ(homeRelative(u"/usr/X.app"_s, QString()), u"/usr/X.app"_s);
    EXPECT_EQ(homeRelative(u"/usr/X.app"_s, u"/"_s), u"/usr/X.app"_s);
}

TEST(TildeExpansion, ATildeAloneIsTheUsersOwnHome) {
    const Homes homes;
    EXPECT_EQ(homes.expansion().expand(u"~/Applications/X.app"_s), u"/home/me/Applications/X.app"_s);
    EXPECT_EQ(homes.expansion().expand(u"~"_s), u"/home/me"_s);
    EXPECT_EQ(homes.expansion().expand(u"~/"_s), u"/home/me/"_s);
}

TEST(TildeExpansion, ATildeWithANameIsThatUsersHome) {
    const Homes homes;
    EXPECT_EQ(homes.expansion().expand(u"~ann/X.app"_s), u"/srv/ann/X.app"_s);
    EXPECT_EQ(homes.expansion().expand(u"~ann"_s), u"/srv/ann"_s);
}

TEST(TildeExpansion, ThePathOfAnUnknownUserStays) {
    const Homes homes;
    EXPECT_EQ(homes.expansion().expand(u"~bob/X.app"_s), u"~bob/X.app"_s);
    EXPECT_EQ(Homes(QString()).expansion().expand(u"~/X.app"_s), u"~/X.app"_s);
    EXPECT_EQ(TildeExpansion(HomeFolders{}).expand(u"~ann/X.app"_s), u"~ann/X.app"_s);
}

TEST(TildeExpansion, ATildeAnywhereElseIsNotExpanded) {
    const Homes homes;
    EXPECT_EQ(homes.expansion().expand(u"/a/~/X.app"_s), u"/a/~/X.app"_s);
    EXPECT_EQ(homes.expansion().expand(u" ~/X.app"_s), u" ~/X.app"_s);
    EXPECT_EQ(homes.expansion().expand(QString()), QString());
}

TEST(TildeExpansion, TheRootAsHomeDoesNotDoubleTheSlash) {
    const Homes homes(u"/"_s);
    EXPECT_EQ(homes.expansion().expand(u"~/X.app"_s), u"/X.app"_s);
    EXPECT_EQ(homes.expansion().expand(u"~"_s), u"/"_s);
}

TEST(TildeExpansion, EachUserIsLookedUpOnceAndOnlyAFewUsersAre) {
    const Homes homes;
    TildeExpansion expansion = homes.expansion();
    for (int round = 0; round < 3; ++round) {
        EXPECT_EQ(expansion.expand(u"~ann/X.app"_s), u"/srv/ann/X.app"_s);
    }
    EXPECT_EQ(homes.asked, 1);
    for (int user = 0; user < 1000; ++user) {
        EXPECT_EQ(expansion.expand(u"~user%1/X.app"_s.arg(user)), u"~user%1/X.app"_s.arg(user));
    }
    EXPECT_EQ(homes.asked, TildeExpansion::mostUsers);
    EXPECT_EQ(expansion.expand(u"~ann/Y.app"_s), u"/srv/ann/Y.app"_s);
}

TEST(TildeExpansion, ATooLongUserNameIsNotLookedUp) {
    const Homes homes;
    const QString path = u'~' + QString(1'000'000, u'a') + u"/X.app"_s;
    EXPECT_EQ(homes.expansion().expand(path), path);
    EXPECT_EQ(homes.asked, 0);
}

TEST(TildeExpansion, ReversesHomeRelative) {
    const Homes homes;
    for (const QString& path :
         {u"/home/me/X.app"_s, u"/home/meabel/X.app"_s, u"/home/me"_s, u"/home/me/"_s, u"/"_s}) {
        EXPECT_EQ(homes.expansion().expand(homeRelative(path, u"/home/me"_s)), path);
    }
}
