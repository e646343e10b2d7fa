#include "UpdaterFixture.h"
#include "support/LogRecorder.h"

#include <gtest/gtest.h>

using namespace amberquill;
using namespace Qt::StringLiterals;

namespace {

class UpdaterLogTest : public UpdaterFixture {};

} // namespace

TEST_F(UpdaterLogTest, RefusalsAreInTheDebugLog) {
    const QByteArray wrongSystem =
        "<item><sparkle:version>9</sparkle:version><enclosure sparkle:os='windows'/></item>";
    server.serve("/program", LoopbackServer::ok(program));
    serveFeed("<item><title>News</title></item>" + wrongSystem + itemOf("2.0", enclosureOf(program)));
    keys.publicKey = SigningKey(2).publicKey();
    const LogRecorder log(u"amberquill.updates.debug=true"_s);
    EXPECT_EQ(errorOfInstalling(), UpdateError::WrongSignature);
    const QString lines = LogRecorder::lines().join(u'\n');
    for (const char* const expected : {"item skipped, no version or a text that is too long: \"News\"",
                                       "version \"9\" passed over: for another system or channel",
                                       "download deleted: wrong signature", "no update: wrong signature"}) {
        EXPECT_TRUE(lines.contains(QLatin1String(expected))) << expected << "\nin\n" << lines.toStdString();
    }
}

TEST_F(UpdaterLogTest, AFeedThatCannotBeReadIsInTheDebugLog) {
    const LogRecorder log(u"amberquill.updates.debug=true"_s);
    server.serve("/feed", LoopbackServer::ok("<rss><channel>"));
    updater().checkForUpdates();
    ASSERT_TRUE(settleAt(Updater::State::Failed));
    EXPECT_TRUE(LogRecorder::lines().join(u'\n').contains(u"feed refused"_s));
    updater().acknowledge();
    LogRecorder::lines().clear();
    server.serve("/feed", LoopbackServer::redirect("http://example.invalid/feed"));
    updater().checkForUpdates();
    ASSERT_TRUE(settleAt(Updater::State::Failed));
    EXPECT_TRUE(LogRecorder::lines().join(u'\n').contains(u"redirect refused"_s));
    EXPECT_TRUE(LogRecorder::lines().join(u'\n').contains(u"no update: the feed could not be fetched"_s));
}

TEST_F(UpdaterLogTest, NothingIsPrintedByDefault) {
    const LogRecorder log{QString()};
    serveVersion("2.0");
    keys.publicKey = SigningKey(2).publicKey();
    EXPECT_EQ(errorOfInstalling(), UpdateError::WrongSignature);
    EXPECT_EQ(LogRecorder::lines(), QStringList());
}
