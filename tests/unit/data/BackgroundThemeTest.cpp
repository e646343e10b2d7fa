#include "data/BackgroundTheme.h"

#include <QStringList>
#include <gtest/gtest.h>

using namespace amberquill;
using namespace Qt::StringLiterals;

TEST(BackgroundTheme, EachThemeHasItsTextAndIsFoundByIt) {
    const QStringList texts = {u"blue"_s, u"purple"_s, u"green"_s};
    for (std::size_t i = 0; i < allBackgroundThemes.size(); ++i) {
        EXPECT_EQ(rawValue(allBackgroundThemes.at(i)), texts.at(static_cast<qsizetype>(i)));
        EXPECT_EQ(backgroundTheme(texts.at(static_cast<qsizetype>(i))), allBackgroundThemes.at(i));
    }
}

TEST(BackgroundTheme, AnyOtherTextIsNoTheme) {
    EXPECT_EQ(backgroundTheme(u"red"_s), std::nullopt);
    EXPECT_EQ(backgroundTheme(u"Blue"_s), std::nullopt);
    EXPECT_EQ(backgroundTheme(QString()), std::nullopt);
}
