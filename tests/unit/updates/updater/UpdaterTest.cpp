#include "updates/updater/Updater.h"

#include "UpdaterFixture.h"

#include <gtest/gtest.h>

using namespace amberquill;
using namespace Qt::StringLiterals;
using State = Updater::State;

namespace {

class UpdaterTest : public UpdaterFixture {
protected:
    // The calls that a check by the user causes.
    QStringList check() {
        interface.take();
        updater().checkForUpdates();
        EXPECT_TRUE(settle(
            [this] { return updater().state() != State::Checking && updater().state() != State::Idle; }));
        return interface.take();
    }
};

} // namespace

TEST_F(UpdaterTest, ANewerVersionIsOffered) {
    serveVersion("2.0");
    EXPECT_EQ(check(), (QStringList{u"checking"_s, u"will show 2.0 itself, asked for"_s,
                                    u"found 2.0 over 1.0 shown"_s}));
    EXPECT_EQ(updater().state(), State::Found);
    EXPECT_EQ(interface.lastOffer->installKind, InstallKind::Image);
    EXPECT_EQ(interface.lastOffer->page(), QUrl(u"https://example.org/"_s));
    updater().later();
    EXPECT_EQ(interface.take(), (QStringList{u"dismiss"_s, u"session over"_s, u"cycle over, asked for"_s}));
    EXPECT_EQ(updater().state(), State::Idle);
}

TEST_F(UpdaterTest, AnEqualOrOlderVersionIsNotOffered) {
    for (const char* const version : {"1.0", "1.0.0", "0.9", "1.0rc1"}) {
        serveVersion(version);
        EXPECT_EQ(check(), (QStringList{u"checking"_s, u"none over 1.0 shown"_s})) << version;
        updater().acknowledge();
        EXPECT_EQ(interface.take(),
                  (QStringList{u"dismiss"_s, u"session over"_s, u"cycle over, asked for"_s}));
    }
}

TEST_F(UpdaterTest, AFeedThatCannotBeFetchedOrReadIsAnError) {
    server.serve("/empty", LoopbackServer::ok({}));
    server.serve("/broken", LoopbackServer::ok("<rss><channel>"));
    server.serve("/bomb",
                 LoopbackServer::ok("<!DOCTYPE rss [<!ENTITY a \"b\">]><rss><channel>&a;</channel></rss>"));
    server.serve("/large", LoopbackServer::ok(QByteArray(qsizetype{6} * 1024 * 1024, ' ')));
    server.serve("/500", LoopbackServer::answer("500 Internal Server Error", "sorry"));
    server.serve("/cut", LoopbackServer::cut(LoopbackServer::ok("<rss><channel/></rss>"), 3));
    server.serve("/loop", LoopbackServer::redirect("/loop"));
    server.serve("/elsewhere", LoopbackServer::redirect("http://example.invalid/feed"));
    const std::vector<std::pair<QUrl, UpdateError>> feeds = {
        {server.address("/empty"), UpdateError::FeedContent},
        {server.address("/broken"), UpdateError::FeedContent},
        {server.address("/bomb"), UpdateError::FeedContent},
        {server.address("/large"), UpdateError::FeedConnection},
        {server.address("/500"), UpdateError::FeedConnection},
        {server.address("/404"), UpdateError::FeedConnection},
        {server.address("/cut"), UpdateError::FeedConnection},
        {server.address("/loop"), UpdateError::FeedConnection},
        {server.address("/elsewhere"), UpdateError::FeedConnection},
        {QUrl(u"http://example.invalid/feed"_s), UpdateError::FeedConnection}};
    for (const auto& [address, error] : feeds) {
        keys.feedAddress = address;
        restartUpdater();
        EXPECT_EQ(check(), (QStringList{u"checking"_s, u"error"_s})) << address.toString().toStdString();
        EXPECT_EQ(interface.lastError, error) << address.toString().toStdString();
        updater().acknowledge();
        EXPECT_EQ(interface.take(),
                  (QStringList{u"dismiss"_s, u"session over"_s, u"cycle over, asked for with error"_s}));
    }
}

TEST_F(UpdaterTest, AFeedThatDoesNotAnswerTimesOut) {
    server.serve("/feed", LoopbackServer::Answer{{}, false});
    updater().checkForUpdates();
    ASSERT_TRUE(settle([this] { return feedRequests() == 1; }));
    EXPECT_EQ(updater().state(), State::Checking);
    pass(Timeouts().idle);
    EXPECT_EQ(updater().state(), State::Failed);
    EXPECT_EQ(interface.lastError, UpdateError::FeedConnection);
}

TEST_F(UpdaterTest, AMissingFeedIsAnErrorAtOnce) {
    keys.feedAddress.reset();
    updater().checkForUpdates();
    EXPECT_EQ(interface.take(), (QStringList{u"checking"_s, u"error"_s}));
    EXPECT_EQ(interface.lastError, UpdateError::NoFeed);
}

TEST_F(UpdaterTest, ACheckCanBeCancelled) {
    server.serve("/feed", LoopbackServer::Answer{{}, false});
    updater().checkForUpdates();
    updater().checkForUpdates();
    updater().cancel();
    EXPECT_EQ(interface.take(), (QStringList{u"checking"_s, u"front"_s, u"dismiss"_s, u"session over"_s,
                                             u"cycle over, asked for"_s}));
    EXPECT_EQ(updater().state(), State::Idle);
    // A late response does not disturb the next check.
    serveVersion("2.0");
    EXPECT_EQ(check().size(), 3);
}

TEST_F(UpdaterTest, ACheckCancelledWhileTheFeedIsReadFindsNothing) {
    serveVersion("2.0");
    updater().checkForUpdates();
    const std::size_t before = queue.waiting();
    ASSERT_TRUE(waitUntil([&] { return queue.waiting() > before; })) << "the feed has not arrived";
    updater().cancel();
    queue.runPosted();
    EXPECT_EQ(updater().state(), State::Idle);
    EXPECT_FALSE(interface.lastOffer);
}

TEST_F(UpdaterTest, ASecondCheckBringsTheWindowToTheFront) {
    serveVersion("2.0");
    check();
    updater().checkForUpdates();
    EXPECT_EQ(interface.take(), QStringList{u"front"_s});
    EXPECT_EQ(feedRequests(), 1U);
}

TEST_F(UpdaterTest, AnUpdateIsDownloadedVerifiedAndInstalled) {
    serveVersion("2.0");
    findUpdate();
    updater().install();
    EXPECT_EQ(updater().state(), State::Downloading);
    ASSERT_TRUE(settleAt(State::Installed));
    EXPECT_EQ(interface.take(), (QStringList{u"progress"_s, u"installing"_s, u"ready 2.0"_s}));
    EXPECT_EQ(interface.lastReceived, program.size());
    EXPECT_EQ(interface.lastLength, program.size());
    EXPECT_EQ(installer.program, program);
    EXPECT_EQ(filesLeft(), QStringList());
    updater().restart();
    EXPECT_EQ(interface.take(), (QStringList{u"dismiss"_s, u"session over"_s, u"cycle over, asked for"_s}));
    EXPECT_EQ(installer.starts, 1);
    EXPECT_EQ(quits, 1);
}

TEST_F(UpdaterTest, TheProgramStaysIfTheNewOneCannotBeStarted) {
    serveVersion("2.0");
    findUpdate();
    updater().install();
    ASSERT_TRUE(settleAt(State::Installed));
    installer.canStart = false;
    updater().restart();
    EXPECT_EQ(quits, 0);
    EXPECT_EQ(updater().state(), State::Idle);
}

TEST_F(UpdaterTest, AnInstalledVersionIsNotDownloadedAgain) {
    serveVersion("2.0");
    findUpdate();
    updater().install();
    ASSERT_TRUE(settleAt(State::Installed));
    updater().later();
    EXPECT_EQ(quits, 0);
    EXPECT_EQ(check(), (QStringList{u"checking"_s, u"ready 2.0"_s}));
    updater().later();
    serveVersion("2.1");
    EXPECT_EQ(check().size(), 3);
    EXPECT_EQ(interface.lastOffer->item.version, u"2.1"_s);
}

TEST_F(UpdaterTest, NothingIsDownloadedWithoutAPublicKey) {
    serveVersion("2.0");
    keys.publicKey.reset();
    EXPECT_EQ(errorOfInstalling(), UpdateError::NoPublicKey);
    EXPECT_EQ(server.requests().size(), 1U);
}

TEST_F(UpdaterTest, NothingIsDownloadedWithoutASignature) {
    const QByteArray plain = "url='" + server.address("/program").toEncoded() + "' length='5'";
    for (const QByteArray& enclosure : {plain, plain + " sparkle:edSignature='c2hvcnQ='"}) {
        serveFeed(itemOf("2.0", enclosure));
        EXPECT_EQ(errorOfInstalling(), UpdateError::NoSignature);
    }
    EXPECT_EQ(server.requests().size(), 2U);
}

TEST_F(UpdaterTest, AVersionWithoutAValidDownloadIsAnError) {
    const QByteArray good = enclosureOf(program);
    for (const QByteArray& enclosure :
         {QByteArray(), QByteArray(good).replace("length=", "size="),
          QByteArray(good).replace("url=", "href="),
          QByteArray(good).replace("http://127.0.0.1", "http://example.invalid")}) {
        serveFeed(itemOf("2.0", enclosure));
        EXPECT_EQ(errorOfInstalling(), UpdateError::NoDownload) << enclosure.toStdString();
    }
}

TEST_F(UpdaterTest, ADownloadAboveTheLimitIsNotStarted) {
    serveFeed(itemOf("2.0", enclosureOf(program).replace(QByteArray::number(program.size()), "1073741825")));
    EXPECT_EQ(errorOfInstalling(), UpdateError::WrongLength);
    EXPECT_EQ(server.requests().size(), 1U);
}

TEST_F(UpdaterTest, ADownloadWithAWrongSignatureIsDeleted) {
    serveVersion("2.0");
    keys.publicKey = SigningKey(2).publicKey();
    EXPECT_EQ(errorOfInstalling(), UpdateError::WrongSignature);
    EXPECT_EQ(filesLeft(), QStringList());
    EXPECT_EQ(installer.staged, QByteArray());
}

TEST_F(UpdaterTest, ADownloadOfAWrongLengthIsDeleted) {
    serveVersion("2.0");
    server.serve("/program", LoopbackServer::ok(program + '!'));
    EXPECT_EQ(errorOfInstalling(), UpdateError::WrongLength);
    EXPECT_EQ(filesLeft(), QStringList());
}

TEST_F(UpdaterTest, ADownloadedProgramThatIsNotNewerIsRefused) {
    serveVersion("2.0");
    for (const QString& version : {u"1.0"_s, u"0.9"_s, u"1.0.0"_s, u"1.0b"_s}) {
        installer.stagedVersion = version;
        EXPECT_EQ(errorOfInstalling(), UpdateError::NotNewer) << version.toStdString();
        EXPECT_EQ(filesLeft(), QStringList());
        EXPECT_EQ(installer.staged, QByteArray());
    }
}

TEST_F(UpdaterTest, AProgramThatCannotBeReplacedStays) {
    serveVersion("2.0");
    installer.replaces = false;
    EXPECT_EQ(errorOfInstalling(), UpdateError::Installation);
    EXPECT_EQ(filesLeft(), QStringList());
    installer.stagedVersion.reset();
    EXPECT_EQ(errorOfInstalling(), UpdateError::Installation);
    EXPECT_EQ(filesLeft(), QStringList());
}

TEST_F(UpdaterTest, ADownloadThatCannotBeWrittenIsAnError) {
    serveVersion("2.0");
    tree.write("updates", "a file in its place");
    EXPECT_EQ(errorOfInstalling(), UpdateError::File);
}

TEST_F(UpdaterTest, NothingIsDownloadedIfTheProgramIsNotAnImage) {
    serveVersion("2.0");
    for (const InstallKind kind : {InstallKind::PackageManager, InstallKind::Other}) {
        installer.installKind = kind;
        findUpdate();
        EXPECT_EQ(interface.lastOffer->installKind, kind);
        updater().later();
        EXPECT_EQ(errorOfInstalling(), UpdateError::Installation);
    }
    EXPECT_EQ(feedRequests(), server.requests().size());
}

TEST_F(UpdaterTest, ADownloadIsPausedAndResumed) {
    serveVersion("2.0");
    findUpdate();
    server.serve("/program", [this](const LoopbackServer::Request&) {
        const auto whole = LoopbackServer::ok(program, {{"ETag", "\"one\""}});
        return LoopbackServer::hanging(whole, whole.bytes.size() - 1000);
    });
    updater().install();
    ASSERT_TRUE(settle([this] { return interface.lastReceived == program.size() - 1000; }));
    updater().pause();
    updater().pause();
    EXPECT_EQ(interface.take(), (QStringList{u"progress"_s, u"paused"_s}));
    EXPECT_EQ(updater().state(), State::Downloading);
    server.serve("/program", [this](const LoopbackServer::Request& request) {
        EXPECT_EQ(request.headers.value("range"), "bytes=" + QByteArray::number(program.size() - 1000) + '-');
        return LoopbackServer::answer(
            "206 Partial Content", program.last(1000),
            {{"Content-Range", "bytes " + QByteArray::number(program.size() - 1000) + '-' +
                                   QByteArray::number(program.size() - 1) + '/' +
                                   QByteArray::number(program.size())}});
    });
    updater().resume();
    ASSERT_TRUE(settleAt(State::Installed));
    EXPECT_EQ(interface.take(), (QStringList{u"progress"_s, u"installing"_s, u"ready 2.0"_s}));
    EXPECT_EQ(installer.program, program);
}

TEST_F(UpdaterTest, ACancelledDownloadIsResumedNextTime) {
    serveVersion("2.0");
    findUpdate();
    server.serve("/program", [this](const LoopbackServer::Request& request) {
        const auto whole = LoopbackServer::ok(program, {{"ETag", "\"one\""}});
        return request.headers.contains("range") ? LoopbackServer::answer("503 Service Unavailable", {})
                                                 : LoopbackServer::hanging(whole, whole.bytes.size() - 1000);
    });
    updater().install();
    ASSERT_TRUE(settle([this] { return interface.lastReceived == program.size() - 1000; }));
    updater().cancel();
    EXPECT_EQ(interface.take(),
              (QStringList{u"progress"_s, u"dismiss"_s, u"session over"_s, u"cycle over, asked for"_s}));
    EXPECT_FALSE(filesLeft().isEmpty());
    restartUpdater();
    EXPECT_EQ(errorOfInstalling(), UpdateError::Download);
    EXPECT_EQ(server.requests().back().headers.value("range"),
              "bytes=" + QByteArray::number(program.size() - 1000) + '-');
    EXPECT_FALSE(filesLeft().isEmpty());
}

TEST_F(UpdaterTest, MayBeCancelledWhileProgressIsShown) {
    serveVersion("2.0");
    findUpdate();
    interface.progressed = [this] { updater().cancel(); };
    updater().install();
    EXPECT_EQ(updater().state(), State::Idle);
    interface.progressed = [this] {
        if (interface.lastReceived > 0) {
            updater().cancel();
        }
    };
    findUpdate();
    updater().install();
    ASSERT_TRUE(settleAt(State::Idle));
}

TEST_F(UpdaterTest, AnswersInOtherStatesDoNothing) {
    serveVersion("2.0");
    const auto answer = [this] {
        updater().pause();
        updater().resume();
        updater().restart();
        updater().acknowledge();
    };
    answer();
    updater().install();
    updater().later();
    updater().skip();
    updater().cancel();
    EXPECT_EQ(interface.take(), QStringList());
    findUpdate();
    answer();
    updater().cancel();
    EXPECT_EQ(interface.take(), QStringList());
    EXPECT_EQ(updater().state(), State::Found);
    EXPECT_FALSE(preferences.contains(u"SUSkippedVersion"_s));
    EXPECT_EQ(quits, 0);
}

TEST_F(UpdaterTest, ThePageOfAnOfferIsTheReleasePageOrTheNotes) {
    const QByteArray notes = "<sparkle:releaseNotesLink>https://example.org/notes</sparkle:releaseNotesLink>"
                             "<sparkle:version>2.0</sparkle:version></item>";
    serveFeed("<item><link>https://example.org/page</link>" + notes);
    findUpdate();
    EXPECT_EQ(interface.lastOffer->page(), QUrl(u"https://example.org/page"_s));
    updater().later();
    serveFeed("<item>" + notes);
    findUpdate();
    EXPECT_EQ(interface.lastOffer->page(), QUrl(u"https://example.org/notes"_s));
}
