#include "localization/UpdateTexts.h"

#include "localization/L.h"

#include <QRegularExpression>
#include <QSet>
#include <gtest/gtest.h>

using namespace amberquill;
using namespace Qt::StringLiterals;

namespace {

class UpdateTexts : public testing::Test {
protected:
    void TearDown() override { L::setLanguage(AppLanguage::System); }

    static QStringList allIn(AppLanguage language) {
        L::setLanguage(language);
        QStringList texts;
        for (std::size_t number = 0; number < updateTextCount; ++number) {
            texts += updateText(static_cast<UpdateText>(number));
        }
        return texts;
    }

    static QStringList placesIn(const QString& text) {
        QStringList places;
        const QRegularExpression place(u"%\\d"_s);
        for (auto match = place.globalMatch(text); match.hasNext();) {
            places += match.next().captured();
        }
        places.sort();
        return places;
    }
};

} // namespace

TEST_F(UpdateTexts, EveryLanguageHasEachOfThemAndNoTwoAreTheSame) {
    for (std::size_t language = 1; language < allAppLanguages.size(); ++language) {
        const QStringList texts = allIn(allAppLanguages.at(language));
        for (const QString& text : texts) {
            EXPECT_FALSE(text.trimmed().isEmpty());
            EXPECT_EQ(text, text.trimmed());
        }
        EXPECT_EQ(QSet<QString>(texts.begin(), texts.end()).size(), static_cast<qsizetype>(updateTextCount));
    }
}

TEST_F(UpdateTexts, EachIsTranslated) {
    const QStringList english = allIn(AppLanguage::English);
    for (std::size_t language = 2; language < allAppLanguages.size(); ++language) {
        const QStringList texts = allIn(allAppLanguages.at(language));
        for (qsizetype number = 0; number < texts.size(); ++number) {
            EXPECT_NE(texts[number], english[number]) << texts[number].toStdString();
        }
    }
}

TEST_F(UpdateTexts, WhatIsPutIntoThemHasItsPlaceInEveryLanguage) {
    const QStringList english = allIn(AppLanguage::English);
    for (const AppLanguage language : allAppLanguages) {
        const QStringList texts = allIn(language);
        for (qsizetype number = 0; number < texts.size(); ++number) {
            EXPECT_EQ(placesIn(texts[number]), placesIn(english[number])) << texts[number].toStdString();
        }
    }
}

TEST_F(UpdateTexts, TheirMarksAreThoseOfPrintedText) {
    for (const AppLanguage language : allAppLanguages) {
        for (const QString& text : allIn(language)) {
            EXPECT_FALSE(text.contains(u'\'') || text.contains(u'"') || text.contains(u"..."_s))
                << text.toStdString();
        }
    }
    for (const QString& text : allIn(AppLanguage::French)) {
        EXPECT_FALSE(text.contains(QRegularExpression(u"[^\u00a0][:;?!]"_s))) << text.toStdString();
    }
    for (const AppLanguage language : {AppLanguage::Chinese, AppLanguage::Japanese}) {
        for (const QString& text : allIn(language)) {
            EXPECT_FALSE(text.contains(QRegularExpression(u"[,.:;?!]"_s))) << text.toStdString();
        }
    }
}
