#include "updates/updater/Download.h"

#include "platform/linux/queue/EventLoopQueue.h"
#include "support/LoopbackServer.h"
#include "support/SigningKey.h"
#include "support/TemporaryTree.h"
#include "support/WaitUntil.h"

#include <QDir>
#include <QFileInfo>
#include <chrono>
#include <gtest/gtest.h>
#include <optional>

using namespace amberquill;
using namespace Qt::StringLiterals;

namespace {

constexpr double idleSeconds = 30;

class DownloadTest : public testing::Test {
protected:
    DownloadTest() {
        for (int number = 0; program.size() < 300'000; ++number) {
            program += QByteArray::number(number) + '\n';
        }
        server.serve("/program", [this](const LoopbackServer::Request& request) { return answer(request); });
    }

    // As servers answer: the range that was requested, if the entity tag is still the same.
    [[nodiscard]] LoopbackServer::Answer answer(const LoopbackServer::Request& request) const {
        const QByteArray range = request.headers.value("range");
        if (range.isEmpty() || request.headers.value("if-range") != tag) {
            return LoopbackServer::ok(program, {{"ETag", tag}});
        }
        const qsizetype from = range.mid(QByteArray("bytes=").size()).chopped(1).toLongLong();
        return LoopbackServer::answer("206 Partial Content", program.mid(from),
                                      {{"ETag", tag},
                                       {"Content-Range", "bytes " + QByteArray::number(from) + '-' +
                                                             QByteArray::number(program.size() - 1) + '/' +
                                                             QByteArray::number(program.size())}});
    }

    // From now on the connection is cut with so many bytes missing.
    void serveCut(qsizetype missing) {
        server.serve("/program", [this, missing](const LoopbackServer::Request& request) {
            return LoopbackServer::cut(answer(request), missing);
        });
    }

    void serveWhole() {
        server.serve("/program", [this](const LoopbackServer::Request& request) { return answer(request); });
    }

    [[nodiscard]] Download::Request request() const {
        return {.address = server.address("/program"),
                .length = program.size(),
                .signature = key.sign(program),
                .publicKey = key.publicKey()};
    }

    [[nodiscard]] QString folder() const { return tree.path("cache/updates"); }

    [[nodiscard]] QStringList filesLeft() const {
        return QDir(folder()).entryList(QDir::Files | QDir::Hidden | QDir::System);
    }

    // Runs the download to its end. None: it was verified.
    std::optional<DownloadError> run(Download& download) {
        std::optional<DownloadError> error;
        bool isOver = false;
        const auto failing = QObject::connect(&download, &Download::failed, [&](DownloadError why) {
            error = why;
            isOver = true;
        });
        const auto succeeding = QObject::connect(&download, &Download::verified, [&] { isOver = true; });
        download.start();
        EXPECT_FALSE(isOver) << "before start() has returned";
        EXPECT_TRUE(waitUntil([&isOver] { return isOver; }));
        EXPECT_FALSE(download.isUnderWay());
        QObject::disconnect(failing);
        QObject::disconnect(succeeding);
        return error;
    }

    std::optional<DownloadError> run(const Download::Request& wanted) {
        Download download(queue, folder(), wanted, idleSeconds);
        return run(download);
    }

    static QByteArray contentOf(const QString& path) {
        QFile file(path);
        EXPECT_TRUE(file.open(QIODevice::ReadOnly));
        return file.readAll();
    }

    TemporaryTree tree;
    EventLoopQueue queue;
    LoopbackServer server;
    SigningKey key;
    QByteArray program;
    QByteArray tag = "\"one\"";
};

} // namespace

TEST_F(DownloadTest, AFileWithTheAnnouncedLengthAndSignatureIsVerified) {
    Download download(queue, folder(), request(), idleSeconds);
    qint64 last = 0;
    bool isComplete = false;
    QObject::connect(&download, &Download::progressed, [&](qint64 received, qint64 length) {
        EXPECT_GT(received, last);
        EXPECT_EQ(length, program.size());
        EXPECT_FALSE(isComplete);
        last = received;
    });
    QObject::connect(&download, &Download::verifying, [&] { isComplete = true; });
    EXPECT_EQ(run(download), std::nullopt);
    EXPECT_TRUE(isComplete);
    EXPECT_EQ(last, program.size());
    EXPECT_EQ(contentOf(download.path()), program);
    download.remove();
    EXPECT_EQ(filesLeft(), QStringList());
}

TEST_F(DownloadTest, TheFileIsPrivateToTheUser) {
    Download download(queue, folder(), request(), idleSeconds);
    EXPECT_EQ(run(download), std::nullopt);
    constexpr auto others = QFile::ReadGroup | QFile::WriteGroup | QFile::ExeGroup | QFile::ReadOther |
                            QFile::WriteOther | QFile::ExeOther;
    EXPECT_FALSE(QFileInfo(folder()).permissions() & others);
    EXPECT_FALSE(QFileInfo(download.path()).permissions() & others);
}

TEST_F(DownloadTest, TheFolderIsMadePrivate) {
    tree.makeFolder("cache/updates");
    QFile::setPermissions(folder(), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner |
                                        QFile::ReadOther | QFile::WriteOther | QFile::ExeOther);
    EXPECT_EQ(run(request()), std::nullopt);
    EXPECT_FALSE(QFileInfo(folder()).permissions() & (QFile::WriteOther | QFile::ExeOther));
}

TEST_F(DownloadTest, AFileWithAWrongSignatureIsDeleted) {
    auto wanted = request();
    wanted.signature.front() ^= 1U;
    EXPECT_EQ(run(wanted), DownloadError::WrongSignature);
    EXPECT_EQ(filesLeft(), QStringList());
}

TEST_F(DownloadTest, AFileSignedWithAnotherKeyIsDeleted) {
    auto wanted = request();
    wanted.signature = SigningKey(2).sign(program);
    EXPECT_EQ(run(wanted), DownloadError::WrongSignature);
    EXPECT_EQ(filesLeft(), QStringList());
}

TEST_F(DownloadTest, AnotherFileOfTheSameLengthIsDeleted) {
    const auto wanted = request();
    program[1000] = '?';
    EXPECT_EQ(run(wanted), DownloadError::WrongSignature);
    EXPECT_EQ(filesLeft(), QStringList());
}

TEST_F(DownloadTest, AWrongContentLengthIsRefusedAtOnce) {
    for (const qint64 difference : {-1, 1}) {
        auto wanted = request();
        wanted.length += difference;
        Download download(queue, folder(), wanted, idleSeconds);
        QObject::connect(&download, &Download::progressed, [](qint64, qint64) { ADD_FAILURE(); });
        EXPECT_EQ(run(download), DownloadError::WrongLength);
        EXPECT_EQ(filesLeft(), QStringList());
    }
}

TEST_F(DownloadTest, AWrongLengthIsRefusedWithoutAContentLength) {
    server.serve("/program",
                 LoopbackServer::Answer{"HTTP/1.1 200 OK\r\nConnection: close\r\n\r\n" + program});
    EXPECT_EQ(run(request()), std::nullopt);
    for (const qint64 difference : {-1, 1}) {
        auto wanted = request();
        wanted.length += difference;
        EXPECT_EQ(run(wanted), DownloadError::WrongLength);
        EXPECT_EQ(filesLeft(), QStringList());
    }
}

TEST_F(DownloadTest, BytesBeyondTheAnnouncedLengthAreNotWritten) {
    server.serve("/program",
                 LoopbackServer::Answer{"HTTP/1.1 200 OK\r\nConnection: close\r\n\r\n" + program});
    auto wanted = request();
    --wanted.length;
    Download download(queue, folder(), wanted, idleSeconds);
    QObject::connect(&download, &Download::progressed,
                     [](qint64 received, qint64 length) { EXPECT_LE(received, length); });
    EXPECT_EQ(run(download), DownloadError::WrongLength);
}

TEST_F(DownloadTest, AnInvalidLengthIsRefusedWithoutARequest) {
    for (const qint64 length : {qint64{0}, qint64{-1}, maximumDownloadBytes + 1}) {
        auto wanted = request();
        wanted.length = length;
        EXPECT_EQ(run(wanted), DownloadError::WrongLength);
    }
    EXPECT_TRUE(server.requests().empty());
}

TEST_F(DownloadTest, ResumesAfterTheConnectionWasCut) {
    serveCut(100'000);
    Download download(queue, folder(), request(), idleSeconds);
    EXPECT_EQ(run(download), DownloadError::Connection);
    const qint64 first = download.receivedBytes();
    EXPECT_EQ(first, program.size() - 100'000);
    serveWhole();
    EXPECT_EQ(run(download), std::nullopt);
    EXPECT_EQ(contentOf(download.path()), program);
    ASSERT_FALSE(server.requests().empty());
    EXPECT_FALSE(server.requests().front().headers.contains("range"));
    EXPECT_EQ(server.requests().back().headers.value("range"), "bytes=" + QByteArray::number(first) + '-');
    EXPECT_EQ(server.requests().back().headers.value("if-range"), tag);
}

TEST_F(DownloadTest, ResumesAfterARestartOfTheProgram) {
    serveCut(100'000);
    EXPECT_EQ(run(request()), DownloadError::Connection);
    serveWhole();
    Download next(queue, folder(), request(), idleSeconds);
    EXPECT_EQ(run(next), std::nullopt);
    EXPECT_EQ(contentOf(next.path()), program);
    EXPECT_TRUE(server.requests().back().headers.contains("range"));
}

TEST_F(DownloadTest, ResumesAfterAPause) {
    const auto half = program.size() / 2;
    server.serve("/program", [this, half](const LoopbackServer::Request& asked) {
        const auto whole = answer(asked);
        return LoopbackServer::hanging(whole, whole.bytes.size() - half);
    });
    Download download(queue, folder(), request(), idleSeconds);
    download.start();
    ASSERT_TRUE(waitUntil([&] { return download.receivedBytes() == program.size() - half; }));
    EXPECT_TRUE(download.isUnderWay());
    download.pause();
    EXPECT_FALSE(download.isUnderWay());
    serveWhole();
    EXPECT_EQ(run(download), std::nullopt);
    EXPECT_EQ(contentOf(download.path()), program);
    EXPECT_TRUE(server.requests().back().headers.contains("range"));
}

TEST_F(DownloadTest, TimesOutInTheMiddleOfTheFile) {
    server.serve("/program", [this](const LoopbackServer::Request& asked) {
        return LoopbackServer::hanging(answer(asked), 1000);
    });
    Download download(queue, folder(), request(), 0.1);
    EXPECT_EQ(run(download), DownloadError::Connection);
}

TEST_F(DownloadTest, ACompleteFileIsVerifiedWithoutARequest) {
    EXPECT_EQ(run(request()), std::nullopt);
    Download again(queue, folder(), request(), idleSeconds);
    EXPECT_EQ(run(again), std::nullopt);
    EXPECT_EQ(contentOf(again.path()), program);
    EXPECT_EQ(server.requests().size(), 1U);
}

TEST_F(DownloadTest, StartsOverIfTheServerHasAnotherFile) {
    serveCut(100'000);
    Download download(queue, folder(), request(), idleSeconds);
    EXPECT_EQ(run(download), DownloadError::Connection);
    tag = "\"two\"";
    serveWhole();
    EXPECT_EQ(run(download), std::nullopt);
    EXPECT_EQ(contentOf(download.path()), program);
}

TEST_F(DownloadTest, StartsOverIfTheServerSendsAnotherRange) {
    serveCut(100'000);
    Download download(queue, folder(), request(), idleSeconds);
    EXPECT_EQ(run(download), DownloadError::Connection);
    for (const char* const range : {"bytes 0-9/10", "bytes 5-", "", "nonsense"}) {
        server.serve("/program", [this, range](const LoopbackServer::Request& asked) {
            return asked.headers.contains("range")
                       ? LoopbackServer::answer("206 Partial Content", "0123456789",
                                                {{"Content-Range", range}})
                       : answer(asked);
        });
        EXPECT_EQ(run(download), std::nullopt) << range;
        EXPECT_EQ(contentOf(download.path()), program);
        download.remove();
        serveCut(100'000);
        EXPECT_EQ(run(download), DownloadError::Connection);
    }
}

TEST_F(DownloadTest, StartsOverIfTheRangeIsNotSatisfiable) {
    serveCut(100'000);
    Download download(queue, folder(), request(), idleSeconds);
    EXPECT_EQ(run(download), DownloadError::Connection);
    server.serve("/program", [this](const LoopbackServer::Request& asked) {
        return asked.headers.contains("range") ? LoopbackServer::answer("416 Range Not Satisfiable", {})
                                               : answer(asked);
    });
    EXPECT_EQ(run(download), std::nullopt);
    EXPECT_EQ(contentOf(download.path()), program);
}

TEST_F(DownloadTest, StartsOverWithoutAStrongEntityTag) {
    for (const char* const weak : {"", "W/\"one\"", "one", "\""}) {
        tag = weak;
        serveCut(100'000);
        Download download(queue, folder(), request(), idleSeconds);
        EXPECT_EQ(run(download), DownloadError::Connection);
        serveWhole();
        EXPECT_EQ(run(download), std::nullopt);
        EXPECT_EQ(contentOf(download.path()), program);
        EXPECT_FALSE(server.requests().back().headers.contains("range")) << weak;
        download.remove();
    }
}

TEST_F(DownloadTest, PartsOfDifferentFilesAreRefused) {
    serveCut(100'000);
    const auto wanted = request();
    Download download(queue, folder(), wanted, idleSeconds);
    EXPECT_EQ(run(download), DownloadError::Connection);
    program.fill('?'); // with the same entity tag
    serveWhole();
    EXPECT_EQ(run(download), DownloadError::WrongSignature);
    EXPECT_EQ(filesLeft(), QStringList());
}

TEST_F(DownloadTest, AnErrorStatusKeepsTheReceivedPart) {
    serveCut(100'000);
    Download download(queue, folder(), request(), idleSeconds);
    EXPECT_EQ(run(download), DownloadError::Connection);
    server.serve("/program", LoopbackServer::answer("503 Service Unavailable", "later"));
    EXPECT_EQ(run(download), DownloadError::Connection);
    server.serve("/program", LoopbackServer::redirect("http://example.invalid/program"));
    EXPECT_EQ(run(download), DownloadError::Connection);
    serveWhole();
    EXPECT_EQ(run(download), std::nullopt);
    EXPECT_TRUE(server.requests().back().headers.contains("range"));
}

TEST_F(DownloadTest, FilesOfOtherDownloadsAreRemoved) {
    tree.write("cache/updates/0123.part", "old");
    tree.write("cache/updates/.hidden", "old");
    tree.write("cache/kept", "not ours");
    tree.link("cache/updates/link", tree.at("cache/kept"));
    Download download(queue, folder(), request(), idleSeconds);
    EXPECT_EQ(run(download), std::nullopt);
    download.remove();
    EXPECT_EQ(filesLeft(), QStringList());
    EXPECT_EQ(tree.read("cache/kept"), "not ours");
}

TEST_F(DownloadTest, ASymbolicLinkInItsPlaceIsNotFollowed) {
    Download download(queue, folder(), request(), idleSeconds);
    tree.write("kept", "not ours");
    tree.makeFolder("cache/updates");
    ASSERT_TRUE(QFile::link(tree.path("kept"), download.path()));
    EXPECT_EQ(run(download), std::nullopt);
    EXPECT_FALSE(QFileInfo(download.path()).isSymLink());
    EXPECT_EQ(tree.read("kept"), "not ours");
}

TEST_F(DownloadTest, AFolderThatCannotBeCreatedIsAnError) {
    tree.write("cache", "a file in its place");
    EXPECT_EQ(run(request()), DownloadError::File);
    EXPECT_TRUE(server.requests().empty());
}

TEST_F(DownloadTest, MayBePausedOrDestroyedWhileItReportsProgress) {
    auto download = std::make_unique<Download>(queue, folder(), request(), idleSeconds);
    QObject::connect(download.get(), &Download::progressed, [&download] { download->pause(); });
    download->start();
    ASSERT_TRUE(waitUntil([&download] { return !download->isUnderWay(); }));
    EXPECT_GT(download->receivedBytes(), 0);
    QObject::connect(download.get(), &Download::progressed, [&download] { download.reset(); });
    download->remove();
    download->start();
    ASSERT_TRUE(waitUntil([&download] { return download == nullptr; }));
}

TEST_F(DownloadTest, RemovedOrDestroyedDuringVerificationItGivesNoAnswer) {
    for (const bool isDestroyed : {false, true}) {
        auto download = std::make_unique<Download>(queue, folder(), request(), idleSeconds);
        int answers = 0;
        bool hasEnded = false;
        QObject::connect(download.get(), &Download::verified, [&answers] { ++answers; });
        QObject::connect(download.get(), &Download::failed, [&answers] { ++answers; });
        QObject::connect(download.get(), &Download::verifying, [&] {
            hasEnded = true;
            download->remove();
            if (isDestroyed) {
                download.reset();
            }
        });
        download->start();
        ASSERT_TRUE(waitUntil([&hasEnded] { return hasEnded; }));
        ASSERT_TRUE(queue.finish(std::chrono::seconds(10))) << "the verification does not end";
        bool isSettled = false; // the verification's answer is posted before this
        queue.post([&isSettled] { isSettled = true; });
        ASSERT_TRUE(waitUntil([&isSettled] { return isSettled; }));
        EXPECT_EQ(answers, 0);
    }
}
