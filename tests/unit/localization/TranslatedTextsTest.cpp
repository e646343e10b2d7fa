#include "localization/TranslatedTexts.h"

#include "localization/L.h"
#include "support/TestPaths.h"

#include <QFile>
#include <QRegularExpression>
#include <QSet>
#include <QXmlStreamReader>
#include <gtest/gtest.h>

using namespace amberquill;
using namespace Qt::StringLiterals;

namespace {

class TranslatedTexts : public testing::Test {
protected:
    void TearDown() override { L::setLanguage(AppLanguage::System); }

    static QStringList updateTextsIn(AppLanguage language) {
        L::setLanguage(language);
        QStringList texts;
        for (std::size_t number = 0; number < updateTextCount; ++number) {
            texts += updateText(static_cast<UpdateText>(number));
        }
        return texts;
    }

    static QStringList spokenTextsIn(AppLanguage language) {
        L::setLanguage(language);
        return {spokenFolder(u"N"_s, 0), spokenFolder(u"N"_s, 1), spokenFolder(u"N"_s, 2),
                spokenFolder(u"N"_s, 5), spokenPage(2, 6),        spokenClear()};
    }

    static QStringList placeholders(const QString& text) {
        QStringList found;
        const QRegularExpression placeholder(u"%\\d"_s);
        for (auto match = placeholder.globalMatch(text); match.hasNext();) {
            found += match.next().captured();
        }
        found.sort();
        return found;
    }
};

// A message of a .ts file.
struct Message {
    QString source;
    QStringList translations; // one for each plural form
    QString state;            // "unfinished", "vanished"; empty: finished
};

Message readMessage(QXmlStreamReader& xml) {
    Message message;
    while (xml.readNextStartElement()) {
        if (xml.name() == u"source") {
            message.source = xml.readElementText();
        } else if (xml.name() == u"translation") {
            message.state = xml.attributes().value(u"type"_s).toString();
            QString text;
            while (!xml.readNext() || !xml.isEndElement()) {
                if (xml.isStartElement()) { // <numerusform>
                    message.translations += xml.readElementText();
                } else if (xml.isCharacters()) {
                    text += xml.text();
                }
            }
            if (message.translations.isEmpty()) {
                message.translations += text;
            }
        } else {
            xml.skipCurrentElement();
        }
    }
    return message;
}

// The messages of a language's file.
std::vector<Message> messagesIn(AppLanguage language) {
    QFile file(projectFile(u"src/localization/translations/"_s + rawValue(language) + u".ts"_s));
    EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << file.fileName().toStdString();
    QXmlStreamReader xml(&file);
    std::vector<Message> messages;
    while (!xml.atEnd()) {
        if (xml.readNext() == QXmlStreamReader::StartElement && xml.name() == u"message") {
            messages.push_back(readMessage(xml));
        }
    }
    EXPECT_FALSE(xml.hasError()) << xml.errorString().toStdString();
    return messages;
}

std::vector<AppLanguage> translatedLanguages() {
    return {allAppLanguages.begin() + 2, allAppLanguages.end()};
}

} // namespace

TEST_F(TranslatedTexts, EveryLanguageHasAFileWithEveryText) {
    const QStringList updates = updateTextsIn(AppLanguage::English);
    QSet<QString> expected(updates.begin(), updates.end());
    expected += {u"%1, folder, %2 app"_s, u"%1, folder, %2 apps"_s, u"Page %1 of %2"_s, u"Clear"_s};
    for (const AppLanguage language : translatedLanguages()) {
        QSet<QString> sources;
        for (const Message& message : messagesIn(language)) {
            EXPECT_FALSE(sources.contains(message.source)) << message.source.toStdString();
            sources += message.source;
        }
        EXPECT_EQ(sources, expected) << rawValue(language).toStdString();
    }
}

TEST_F(TranslatedTexts, NoTranslationIsUnfinishedOrEmpty) {
    for (const AppLanguage language : translatedLanguages()) {
        for (const Message& message : messagesIn(language)) {
            EXPECT_EQ(message.state, QString()) << message.source.toStdString();
            for (const QString& translation : message.translations) {
                EXPECT_FALSE(translation.trimmed().isEmpty()) << message.source.toStdString();
            }
        }
    }
}

TEST_F(TranslatedTexts, EveryTranslationHasThePlaceholdersOfItsSource) {
    for (const AppLanguage language : translatedLanguages()) {
        for (const Message& message : messagesIn(language)) {
            for (const QString& translation : message.translations) {
                EXPECT_EQ(placeholders(translation), placeholders(message.source))
                    << translation.toStdString();
            }
        }
    }
}

TEST_F(TranslatedTexts, TheProgramHasTheTranslationsOfTheFiles) {
    const QStringList english = updateTextsIn(AppLanguage::English);
    for (const AppLanguage language : translatedLanguages()) {
        const QStringList texts = updateTextsIn(language);
        for (const Message& message : messagesIn(language)) {
            if (const qsizetype number = english.indexOf(message.source); number >= 0) {
                EXPECT_EQ(texts[number], message.translations.constFirst());
            }
        }
        for (qsizetype number = 0; number < texts.size(); ++number) {
            EXPECT_NE(texts[number], english[number]) << texts[number].toStdString();
        }
        const QStringList spoken = spokenTextsIn(language);
        const QStringList spokenInEnglish = spokenTextsIn(AppLanguage::English);
        for (qsizetype number = 0; number < spoken.size(); ++number) {
            EXPECT_NE(spoken[number], spokenInEnglish[number]) << spoken[number].toStdString();
        }
    }
}

TEST_F(TranslatedTexts, FollowTheLanguageOfTheInterface) {
    L::setLanguage(AppLanguage::German);
    EXPECT_EQ(updateText(UpdateText::Later), u"Später"_s);
    EXPECT_EQ(spokenClear(), u"Löschen"_s);
    L::setLanguage(AppLanguage::English);
    EXPECT_EQ(updateText(UpdateText::Later), u"Later"_s);
    EXPECT_EQ(spokenClear(), u"Clear"_s);
    L::setLanguage(AppLanguage::Chinese);
    EXPECT_EQ(updateText(UpdateText::Later), u"稍后"_s);
    EXPECT_EQ(spokenPage(2, 6), u"第 2 页，共 6 页"_s);
}

TEST_F(TranslatedTexts, NoTwoTextsOfALanguageAreTheSame) {
    for (std::size_t language = 1; language < allAppLanguages.size(); ++language) {
        const QStringList texts = updateTextsIn(allAppLanguages.at(language));
        for (const QString& text : texts) {
            EXPECT_FALSE(text.isEmpty());
            EXPECT_EQ(text, text.trimmed());
        }
        EXPECT_EQ(QSet<QString>(texts.begin(), texts.end()).size(), static_cast<qsizetype>(updateTextCount));
    }
}

TEST_F(TranslatedTexts, HaveTypographicPunctuation) {
    for (const AppLanguage language : allAppLanguages) {
        for (const QString& text : updateTextsIn(language)) {
            EXPECT_FALSE(text.contains(u'\'') || text.contains(u'"') || text.contains(u"..."_s))
                << text.toStdString();
        }
    }
    for (const QString& text : updateTextsIn(AppLanguage::French)) {
        EXPECT_FALSE(text.contains(QRegularExpression(u"[^\u00a0][:;?!]"_s))) << text.toStdString();
    }
    for (const AppLanguage language : {AppLanguage::Chinese, AppLanguage::Japanese}) {
        for (const QString& text : updateTextsIn(language)) {
            EXPECT_FALSE(text.contains(QRegularExpression(u"[,.:;?!]"_s))) << text.toStdString();
        }
    }
}

TEST_F(TranslatedTexts, AFolderIsSpokenWithItsNameAndCount) {
    L::setLanguage(AppLanguage::English);
    EXPECT_EQ(spokenFolder(u"Games"_s, 5), u"Games, folder, 5 apps"_s);
    EXPECT_EQ(spokenFolder(u"Games"_s, 1), u"Games, folder, 1 app"_s);
    EXPECT_EQ(spokenFolder(u"100 %2"_s, 0), u"100 %2, folder, 0 apps"_s) << "a name is not a format";
    L::setLanguage(AppLanguage::French);
    EXPECT_EQ(spokenFolder(u"Jeux"_s, 1), u"Jeux, dossier, 1 app"_s);
    EXPECT_EQ(spokenFolder(u"Jeux"_s, 0), u"Jeux, dossier, 0 apps"_s);
    L::setLanguage(AppLanguage::German);
    EXPECT_EQ(spokenFolder(u"Spiele"_s, 5), u"Spiele, Ordner, 5 Apps"_s);
    L::setLanguage(AppLanguage::Japanese);
    EXPECT_EQ(spokenFolder(u"ゲーム"_s, 5), u"ゲーム、フォルダ、アプリ5個"_s);
}
