#include "updates/updater/Version.h"

#include <array>
#include <gtest/gtest.h>

using namespace amberquill;

namespace {

bool isOlder(QStringView a, QStringView b) {
    return compareVersions(a, b) < 0 && compareVersions(b, a) > 0;
}

bool isSame(QStringView a, QStringView b) {
    return compareVersions(a, b) == 0 && compareVersions(b, a) == 0;
}

} // namespace

TEST(Version, NumbersCompareAsNumbers) {
    EXPECT_TRUE(isOlder(u"1.9", u"1.10"));
    EXPECT_TRUE(isOlder(u"2", u"10"));
    EXPECT_TRUE(isSame(u"1.02", u"1.2"));
}

TEST(Version, NumbersMayBeLongerThanAnyInteger) {
    EXPECT_TRUE(isOlder(u"99999999999999999999", u"100000000000000000000"));
    EXPECT_TRUE(isOlder(u"1.100000000000000000000", u"1.100000000000000000001"));
    EXPECT_TRUE(isSame(u"000000000000000000000000000000000000001", u"1"));
}

TEST(Version, AMissingPartIsZero) {
    EXPECT_TRUE(isSame(u"1.0", u"1.0.0"));
    EXPECT_TRUE(isSame(u"1", u"1.0.0"));
    EXPECT_TRUE(isOlder(u"1.0", u"1.0.1"));
    EXPECT_TRUE(isOlder(u"1.0.0", u"1.0.0.1"));
}

TEST(Version, LettersMarkAPrerelease) {
    EXPECT_TRUE(isOlder(u"1.0b", u"1.0"));
    EXPECT_TRUE(isOlder(u"1.0b", u"1.0.0"));
    EXPECT_TRUE(isOlder(u"1.0.0b", u"1.0"));
    EXPECT_TRUE(isOlder(u"1.0-beta", u"1.0"));
    EXPECT_TRUE(isOlder(u"0.9", u"1.0b"));
    EXPECT_TRUE(isOlder(u"1.0", u"1.1b"));
}

TEST(Version, LettersCompareWithoutCase) {
    EXPECT_TRUE(isOlder(u"1.0a", u"1.0b"));
    EXPECT_TRUE(isOlder(u"1.0b9", u"1.0RC1"));
    EXPECT_TRUE(isOlder(u"1.0b2", u"1.0b10"));
    EXPECT_TRUE(isSame(u"1.0B2", u"1.0b2"));
}

TEST(Version, OtherCharactersSeparateParts) {
    EXPECT_TRUE(isSame(u"1.2", u"1-2"));
    EXPECT_TRUE(isSame(u" 1 (2) ", u"1.2"));
    EXPECT_TRUE(isOlder(u"1.2", u"12"));
    EXPECT_TRUE(isSame(u"", u"0"));
    EXPECT_TRUE(isSame(u"...", u""));
    EXPECT_TRUE(isOlder(u"", u"0.0.1"));
}

TEST(Version, TheOrderIsTransitive) {
    constexpr std::array ordered = {QStringView(u"x"),       QStringView(u"0"),     QStringView(u"0.9.9"),
                                    QStringView(u"1.0a"),    QStringView(u"1.0b1"), QStringView(u"1.0b2"),
                                    QStringView(u"1.0.0rc"), QStringView(u"1"),     QStringView(u"1.0.1"),
                                    QStringView(u"1.9"),     QStringView(u"1.10"),  QStringView(u"2a"),
                                    QStringView(u"2")};
    for (std::size_t older = 0; older < ordered.size(); ++older) {
        for (std::size_t newer = older + 1; newer < ordered.size(); ++newer) {
            EXPECT_TRUE(isOlder(ordered[older], ordered[newer]))
                << ordered[older].toString().toStdString() << " < "
                << ordered[newer].toString().toStdString();
        }
    }
}
