#include "platform/linux/activation/x11/StartupMessage.h"

#include <gtest/gtest.h>

using namespace amberquill::desktop;
using namespace Qt::StringLiterals;

namespace {

StartupIdParts parts() {
    return {.host = u"box"_s, .process = 12, .start = 3, .application = u"calc.desktop"_s, .time = 4711};
}

// The number at the end of the id, read as window managers do.
quint32 timeOf(const QString& id) {
    return id.section(u"_TIME"_s, -1).toUInt();
}

} // namespace

TEST(StartupMessage, AnIdNamesTheLauncherTheApplicationAndTheTime) {
    EXPECT_EQ(startupId(parts()), u"amberquill/calc.desktop/12-3-box_TIME4711"_s);
}

TEST(StartupMessage, TheTimeCanBeReadBackForAnyApplicationName) {
    StartupIdParts odd = parts();
    odd.application = u"a b/c\"_TIME9\n%1%5"_s;
    odd.host = u"größe_TIME"_s;
    const QString id = startupId(odd);
    EXPECT_EQ(timeOf(id), 4711U) << id.toStdString();
    EXPECT_EQ(id.count(u'/'), 2);
    EXPECT_FALSE(id.contains(u' '));
    EXPECT_FALSE(id.contains(u'"'));
}

TEST(StartupMessage, ANewMessageHasEveryKnownValue) {
    EXPECT_EQ(startupBeginning({.id = u"x_TIME1"_s,
                                .name = u"The Calculator"_s,
                                .icon = u"calc"_s,
                                .program = u"/bin/calc"_s,
                                .windowClass = u"Calc"_s,
                                .entryPath = u"/a/calc.desktop"_s},
                               0),
              "new: ID=\"x_TIME1\" NAME=\"The Calculator\" SCREEN=\"0\" BIN=\"/bin/calc\" ICON=\"calc\" "
              "WMCLASS=\"Calc\" APPLICATION_ID=\"/a/calc.desktop\"");
}

TEST(StartupMessage, UnknownValuesAreLeftOut) {
    StartupNotice notice;
    notice.id = u"x_TIME1"_s;
    EXPECT_EQ(startupBeginning(notice, 1), "new: ID=\"x_TIME1\" SCREEN=\"1\"");
}

TEST(StartupMessage, QuotesInAValueAreEscaped) {
    StartupNotice notice;
    notice.id = u"x"_s;
    notice.name = u"a\" BIN=\"/bin/evil\\"_s;
    EXPECT_EQ(startupBeginning(notice, 0), R"(new: ID="x" NAME="a\" BIN=\"/bin/evil\\" SCREEN="0")");
}

TEST(StartupMessage, AVeryLongValueIsCut) {
    StartupNotice notice;
    notice.id = u"x"_s;
    notice.name = QString(100'000, u'n');
    EXPECT_LT(startupBeginning(notice, 0).size(), 1000);
}

TEST(StartupMessage, AnEndNamesTheStart) {
    EXPECT_EQ(startupEnd(u"x_TIME1"_s), "remove: ID=\"x_TIME1\"");
}

TEST(StartupMessage, ChunksHoldTheMessageAndItsNullCharacter) {
    for (const qsizetype size : {0, 1, 19, 20, 21, 39, 40}) {
        const QByteArray message(size, 'm');
        QByteArray joined;
        for (const StartupChunk& chunk : startupChunks(message)) {
            joined +=
                QByteArray(reinterpret_cast<const char*>(chunk.data()), static_cast<qsizetype>(chunk.size()));
        }
        EXPECT_EQ(QByteArray(joined.constData()), message) << size;
        EXPECT_EQ(joined.size() / 20, size / 20 + 1) << size;
    }
}
