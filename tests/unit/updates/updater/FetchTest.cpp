#include "updates/updater/Fetch.h"

#include "platform/linux/queue/EventLoopQueue.h"
#include "support/LoopbackServer.h"
#include "support/WaitUntil.h"

#include <gtest/gtest.h>
#include <optional>

using namespace amberquill;

namespace {

constexpr qint64 limit = qint64{5} * 1024 * 1024;

class FetchTest : public testing::Test {
protected:
    Fetched fetched(const QUrl& address, const Timeouts& timeouts = {}) {
        Fetch fetch(queue, timeouts);
        std::optional<Fetched> result;
        fetch.get(address, limit, [&result](const Fetched& what) { result = what; });
        EXPECT_FALSE(result) << "before get() has returned";
        EXPECT_TRUE(waitUntil([&result] { return result.has_value(); }));
        EXPECT_FALSE(fetch.isUnderWay());
        return result.value_or(QByteArray("no answer"));
    }

    EventLoopQueue queue;
    LoopbackServer server;
};

} // namespace

TEST_F(FetchTest, AnswersTheBody) {
    server.serve("/feed", LoopbackServer::ok("hello"));
    EXPECT_EQ(fetched(server.address("/feed")), Fetched(QByteArray("hello")));
    ASSERT_EQ(server.requests().size(), 1U);
    EXPECT_EQ(server.requests().front().headers.value("accept-encoding"), "identity");
    EXPECT_FALSE(server.requests().front().headers.contains("cookie"));
}

TEST_F(FetchTest, ABodyNeedsNoContentLength) {
    server.serve("/feed", LoopbackServer::Answer{"HTTP/1.1 200 OK\r\nConnection: close\r\n\r\nhello"});
    EXPECT_EQ(fetched(server.address("/feed")), Fetched(QByteArray("hello")));
}

TEST_F(FetchTest, ABodyMayBeEmpty) {
    server.serve("/feed", LoopbackServer::ok({}));
    EXPECT_EQ(fetched(server.address("/feed")), Fetched(QByteArray()));
}

TEST_F(FetchTest, OnlyStatus200IsAccepted) {
    server.serve("/broken", LoopbackServer::answer("500 Internal Server Error", "sorry"));
    server.serve("/none", LoopbackServer::answer("204 No Content", {}));
    server.serve("/part", LoopbackServer::answer("206 Partial Content", "hel"));
    server.serve("/moved", LoopbackServer::answer("302 Found", "nowhere"));
    for (const char* const path : {"/missing", "/broken", "/none", "/part", "/moved"}) {
        EXPECT_EQ(fetched(server.address(path)), Fetched(FetchError::BadStatus)) << path;
    }
}

TEST_F(FetchTest, FollowsRedirects) {
    server.serve("/a", LoopbackServer::redirect("/b"));
    server.serve("/b", LoopbackServer::redirect(server.address("/c").toEncoded(), "301 Moved Permanently"));
    server.serve("/c", LoopbackServer::redirect("d?e=f", "307 Temporary Redirect"));
    server.serve("/d?e=f", LoopbackServer::ok("hello"));
    EXPECT_EQ(fetched(server.address("/a")), Fetched(QByteArray("hello")));
}

TEST_F(FetchTest, ARedirectLoopIsAnError) {
    server.serve("/a", LoopbackServer::redirect("/b"));
    server.serve("/b", LoopbackServer::redirect("/a"));
    EXPECT_EQ(fetched(server.address("/a")), Fetched(FetchError::TooManyRedirects));
    EXPECT_EQ(server.requests().size(), 2U);
}

TEST_F(FetchTest, FollowsAtMostTenRedirects) {
    for (int step = 0; step < 11; ++step) {
        server.serve("/" + QByteArray::number(step),
                     LoopbackServer::redirect("/" + QByteArray::number(step + 1)));
    }
    server.serve("/11", LoopbackServer::ok("hello"));
    EXPECT_EQ(fetched(server.address("/1")), Fetched(QByteArray("hello")));
    EXPECT_EQ(fetched(server.address("/0")), Fetched(FetchError::TooManyRedirects));
}

TEST_F(FetchTest, DoesNotFollowARedirectToPlainHttpElsewhere) {
    server.serve("/a", LoopbackServer::redirect("http://example.invalid/feed"));
    EXPECT_EQ(fetched(server.address("/a")), Fetched(FetchError::ForbiddenAddress));
}

TEST_F(FetchTest, DoesNotFollowARedirectToAnotherScheme) {
    server.serve("/a", LoopbackServer::redirect("file:///etc/hostname"));
    EXPECT_EQ(fetched(server.address("/a")), Fetched(FetchError::ForbiddenAddress));
}

TEST_F(FetchTest, DoesNotFetchPlainHttpFromElsewhere) {
    EXPECT_EQ(fetched(QUrl(QStringLiteral("http://example.invalid/feed"))),
              Fetched(FetchError::ForbiddenAddress));
    EXPECT_EQ(fetched(QUrl()), Fetched(FetchError::ForbiddenAddress));
}

TEST_F(FetchTest, ABodyAboveTheLimitIsAnError) {
    server.serve("/five", LoopbackServer::ok(QByteArray(limit, 'x')));
    server.serve("/more", LoopbackServer::ok(QByteArray(limit + 1, 'x')));
    server.serve("/six", LoopbackServer::ok(QByteArray(qsizetype{6} * 1024 * 1024, 'x')));
    server.serve("/unsaid", LoopbackServer::Answer{"HTTP/1.1 200 OK\r\nConnection: close\r\n\r\n" +
                                                   QByteArray(qsizetype{6} * 1024 * 1024, 'x')});
    EXPECT_EQ(fetched(server.address("/five")), Fetched(QByteArray(limit, 'x')));
    for (const char* const path : {"/more", "/six", "/unsaid"}) {
        EXPECT_EQ(fetched(server.address(path)), Fetched(FetchError::TooLarge)) << path;
    }
}

TEST_F(FetchTest, TimesOutWithoutAResponse) {
    server.serve("/silent", LoopbackServer::Answer{{}, false});
    EXPECT_EQ(fetched(server.address("/silent"), {.idle = 0.1}), Fetched(FetchError::TimedOut));
}

TEST_F(FetchTest, TimesOutInTheMiddleOfTheBody) {
    const auto whole = LoopbackServer::ok(QByteArray(1000, 'x'));
    server.serve("/stops", LoopbackServer::hanging(whole, whole.bytes.size() - 10));
    EXPECT_EQ(fetched(server.address("/stops"), {.idle = 0.1}), Fetched(FetchError::TimedOut));
}

TEST_F(FetchTest, TimesOutAfterTheTotalTime) {
    server.serve("/silent", LoopbackServer::Answer{{}, false});
    EXPECT_EQ(fetched(server.address("/silent"), {.idle = 60, .total = 0.1}), Fetched(FetchError::TimedOut));
}

TEST_F(FetchTest, AConnectionThatIsCutIsAnError) {
    server.serve("/cut", LoopbackServer::cut(LoopbackServer::ok(QByteArray(1000, 'x')), 10));
    server.serve("/closed", LoopbackServer::Answer{});
    EXPECT_EQ(fetched(server.address("/cut")), Fetched(FetchError::ConnectionFailed));
    EXPECT_EQ(fetched(server.address("/closed")), Fetched(FetchError::ConnectionFailed));
}

TEST_F(FetchTest, ARefusedConnectionIsAnError) {
    QUrl unused;
    {
        const LoopbackServer gone;
        unused = gone.address("/feed");
    }
    EXPECT_EQ(fetched(unused), Fetched(FetchError::ConnectionFailed));
}

TEST_F(FetchTest, GivesNoAnswerOnceCancelled) {
    server.serve("/feed", LoopbackServer::ok("hello"));
    server.serve("/silent", LoopbackServer::Answer{{}, false});
    Fetch fetch(queue);
    int answers = 0;
    fetch.get(server.address("/silent"), limit, [&answers](const Fetched&) { ++answers; });
    ASSERT_TRUE(waitUntil([this] { return server.requests().size() == 1; }));
    fetch.cancel();
    EXPECT_FALSE(fetch.isUnderWay());
    EXPECT_EQ(fetched(server.address("/feed")), Fetched(QByteArray("hello")));
    EXPECT_EQ(answers, 0);
}

TEST_F(FetchTest, MayBeStartedAgainByItsAnswer) {
    server.serve("/feed", LoopbackServer::ok("hello"));
    Fetch fetch(queue);
    std::vector<Fetched> answers;
    fetch.get(server.address("/missing"), limit, [&](const Fetched& first) {
        answers.push_back(first);
        fetch.get(server.address("/feed"), limit, [&](const Fetched& second) { answers.push_back(second); });
    });
    ASSERT_TRUE(waitUntil([&answers] { return answers.size() == 2; }));
    EXPECT_EQ(answers.front(), Fetched(FetchError::BadStatus));
    EXPECT_EQ(answers.back(), Fetched(QByteArray("hello")));
}
