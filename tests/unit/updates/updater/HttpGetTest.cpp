#include "updates/updater/HttpGet.h"

#include "support/LoopbackServer.h"
#include "support/ManualQueue.h"
#include "support/WaitUntil.h"

#include <gtest/gtest.h>

using namespace amberquill;

namespace {

constexpr double idleLimit = 30;

class HttpGetTest : public testing::Test {
protected:
    // Callbacks that count their calls and destroy the request in the one with this name.
    HttpGet::Callbacks callbacks(const char* destroyer) {
        const auto called = [this, destroyer](const char* name) {
            ++calls[name];
            if (qstrcmp(name, destroyer) == 0) {
                request.reset();
            }
        };
        return {.headReceived =
                    [called](const HttpGet::Head&) {
                        called("headReceived");
                        return true;
                    },
                .bodyReceived =
                    [called](const QByteArray&) {
                        called("bodyReceived");
                        return true;
                    },
                .finished = [called] { called("finished"); },
                .failed = [called](FetchError) { called("failed"); }};
    }

    void get(const QUrl& address, HttpGet::Callbacks callbacks) {
        request = std::make_unique<HttpGet>(queue, address, HttpGet::Headers(), idleLimit, std::nullopt,
                                            std::move(callbacks));
    }

    ManualQueue queue;
    LoopbackServer server;
    std::unique_ptr<HttpGet> request;
    QHash<QByteArray, int> calls;
};

} // namespace

TEST_F(HttpGetTest, MayBeDestroyedByEachCallback) {
    server.serve("/file", LoopbackServer::ok("hello"));
    const QList<QByteArray> order = {"headReceived", "bodyReceived", "finished"};
    for (const QByteArray& destroyer : order) {
        calls.clear();
        get(server.address("/file"), callbacks(destroyer.constData()));
        ASSERT_TRUE(waitUntil([this] { return request == nullptr; })) << destroyer.toStdString();
        QCoreApplication::processEvents();
        queue.runPosted();
        for (const QByteArray& name : order) {
            EXPECT_EQ(calls.value(name), order.indexOf(name) <= order.indexOf(destroyer) ? 1 : 0)
                << name.toStdString() << " after " << destroyer.toStdString();
        }
        EXPECT_EQ(calls.value("failed"), 0);
    }
    calls.clear();
    get(QUrl(QStringLiteral("http://example.invalid/")), callbacks("failed"));
    queue.runPosted();
    EXPECT_EQ(request, nullptr);
    EXPECT_EQ(calls.value("failed"), 1);
}

TEST_F(HttpGetTest, DestroyedByARejectionItDoesNotFail) {
    server.serve("/file", LoopbackServer::ok("hello"));
    for (const bool rejectsHead : {true, false}) {
        calls.clear();
        HttpGet::Callbacks rejecting = callbacks("none");
        rejecting.headReceived = [this, rejectsHead](const HttpGet::Head&) {
            if (rejectsHead) {
                request.reset();
            }
            return !rejectsHead;
        };
        rejecting.bodyReceived = [this](const QByteArray&) {
            request.reset();
            return false;
        };
        get(server.address("/file"), std::move(rejecting));
        ASSERT_TRUE(waitUntil([this] { return request == nullptr; }));
        EXPECT_EQ(calls.value("failed"), 0);
    }
}

TEST_F(HttpGetTest, EveryPartOfTheBodyRestartsTheIdleTime) {
    QTcpServer slow;
    ASSERT_TRUE(slow.listen(QHostAddress::LocalHost));
    get(QUrl(QStringLiteral("http://127.0.0.1:%1/").arg(slow.serverPort())), callbacks("none"));
    ASSERT_TRUE(waitUntil([&slow] { return slow.hasPendingConnections(); }));
    QTcpSocket* const socket = slow.nextPendingConnection();
    socket->write("HTTP/1.1 200 OK\r\nContent-Length: 100\r\n\r\n");
    for (int part = 1; part <= 3; ++part) {
        socket->write("x");
        ASSERT_TRUE(waitUntil([&] { return calls.value("bodyReceived") == part; }));
        queue.advance(idleLimit - 1);
        EXPECT_EQ(calls.value("failed"), 0) << part;
    }
    queue.advance(1);
    EXPECT_EQ(calls.value("failed"), 1);
}
