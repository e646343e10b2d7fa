#include "platform/linux/environment/QtSystemLanguages.h"

#include <QLocale>
#include <gtest/gtest.h>

using namespace amberquill::desktop;
using namespace Qt::StringLiterals;

TEST(QtSystemLanguages, WithoutALanguageListTheLocaleCounts) {
    EXPECT_EQ(QtSystemLanguages().systemWideList(), std::nullopt);
}

TEST(QtSystemLanguages, TheLocalesVariablesDecideWhatIsPreferred) {
    const QByteArray before = qgetenv("LANGUAGE");
    const bool wasSet = qEnvironmentVariableIsSet("LANGUAGE");
    const QByteArray localeBefore = qgetenv("LC_ALL");
    const bool localeWasSet = qEnvironmentVariableIsSet("LC_ALL");
    qputenv("LC_ALL", "fr_CA.UTF-8");
    qputenv("LANGUAGE", "fr_CA:de");
    const QStringList preferred = QtSystemLanguages().preferred();
    wasSet ? qputenv("LANGUAGE", before) : qunsetenv("LANGUAGE");
    localeWasSet ? qputenv("LC_ALL", localeBefore) : qunsetenv("LC_ALL");
    ASSERT_FALSE(preferred.isEmpty());
    EXPECT_EQ(preferred.front(), u"fr-CA"_s);
    EXPECT_GE(preferred.indexOf(u"de"_s), 1) << preferred.join(u' ').toStdString();
}
