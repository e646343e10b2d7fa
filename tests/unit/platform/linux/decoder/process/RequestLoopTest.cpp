#include "platform/linux/decoder/process/RequestLoop.h"

#include "platform/linux/decoder/channel/DecodingMessages.h"
#include "platform/linux/decoder/channel/MessageSocket.h"
#include "platform/linux/decoder/channel/SharedMemory.h"

#include <array>
#include <atomic>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <optional>
#include <string_view>
#include <sys/time.h>
#include <thread>
#include <unistd.h>

using namespace amberquill::desktop;
using namespace std::chrono_literals;

namespace {

constexpr RequestLimits patient{1h, 100s};

QImage greenSquare(int edge) {
    QImage image(edge, edge, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::green);
    return image;
}

DecodedIcon greenIcon(const QByteArray&, int edge) {
    return {greenSquare(edge)};
}

// serveRequests() on a thread of its own, and the launcher's end of the socket.
class RequestLoop : public testing::Test {
protected:
    RequestLoop() {
        auto sockets = messageSockets();
        if (sockets) {
            std::tie(near_, far_) = std::move(*sockets);
        }
    }
    ~RequestLoop() override { static_cast<void>(end()); }

    void start(const Decoding& decoding, const RequestLimits& limits = patient) {
        thread_ = std::thread([this, decoding, limits] {
            end_ = serveRequests(far_.get(), decoding, limits);
            far_.close();
        });
        EXPECT_EQ(answer(), (DecodingAnswer{DecodingOutcome::Ready, 0, false}));
    }

    // Closes the socket and waits for the result of serveRequests().
    std::optional<RequestLoopEnd> end() {
        near_.close();
        if (thread_.joinable()) {
            thread_.join();
        }
        return end_;
    }

    bool send(std::span<const std::byte> message, std::span<const int> descriptors) {
        return sendMessage(near_.get(), message, descriptors);
    }
    bool send(const DecodingRequest& request, std::span<const int> descriptors) {
        std::array<std::byte, requestSize> message = {};
        encode(request, message);
        return send(message, descriptors);
    }
    // A request as the launcher makes it, with the bytes "file".
    bool ask(std::uint32_t edge) {
        picture_ = writableMemory(pictureBytes(edge));
        return send({edge, 4}, std::array{file_.get(), picture_.get()});
    }

    // None: serveRequests() has returned.
    std::optional<DecodingAnswer> answer() {
        std::array<std::byte, answerSize> buffer = {};
        const auto message = receiveMessage(near_.get(), buffer);
        return message ? decodedAnswer(std::span(buffer).first(message->size)) : std::nullopt;
    }

    FileDescriptor near_;
    FileDescriptor far_;
    FileDescriptor file_ = sealedMemory(std::as_bytes(std::span(std::string_view("file"))));
    FileDescriptor picture_;
    std::optional<RequestLoopEnd> end_;
    std::thread thread_;
};

// An invalid request, after which serveRequests() returns.
using InvalidRequest = RequestLoop;

constexpr DecodingAnswer picture(std::uint32_t edge, bool isLast = false) {
    return {DecodingOutcome::Picture, edge, isLast};
}

constexpr DecodingAnswer noPicture(std::uint32_t edge) {
    return {DecodingOutcome::NoPicture, edge, false};
}

} // namespace

TEST_F(RequestLoop, EachRequestIsAnsweredFromItsOwnBytes) {
    start([](const QByteArray& bytes, int edge) {
        EXPECT_EQ(bytes, "file");
        return greenIcon(bytes, edge);
    });
    for (const std::uint32_t edge : {1U, 48U, 300U}) {
        ASSERT_TRUE(ask(edge));
        ASSERT_EQ(answer(), picture(edge));
        const auto mapped = MappedMemory::map(picture_, pictureBytes(edge), MappedMemory::Access::Read);
        ASSERT_TRUE(mapped);
        const QImage image(reinterpret_cast<const uchar*>(mapped->bytes().data()), static_cast<int>(edge),
                           static_cast<int>(edge), QImage::Format_ARGB32_Premultiplied);
        EXPECT_EQ(image, greenSquare(static_cast<int>(edge)));
    }
    EXPECT_EQ(end(), RequestLoopEnd::Done);
}

TEST_F(RequestLoop, APictureOfAnotherSizeOrFormatIsRefused) {
    start([](const QByteArray&, int edge) {
        return DecodedIcon{edge == 10 ? greenSquare(11)
                                      : greenSquare(edge).convertToFormat(QImage::Format_RGB888)};
    });
    for (const std::uint32_t edge : {10U, 20U}) {
        ASSERT_TRUE(ask(edge));
        EXPECT_EQ(answer(), noPicture(edge));
    }
}

TEST_F(RequestLoop, ADrawingWithTextNeedsFontsHereToo) {
    start([](const QByteArray&, int) { return DecodedIcon{QImage(), true}; });
    ASSERT_TRUE(ask(8));
    EXPECT_EQ(answer(), (DecodingAnswer{DecodingOutcome::NeedsFonts, 8, false}));
}

TEST_F(RequestLoop, AnEmptyFileIsDecodedLikeAnyOther) {
    start([](const QByteArray& bytes, int) {
        EXPECT_TRUE(bytes.isEmpty());
        return DecodedIcon();
    });
    const FileDescriptor empty = sealedMemory({});
    picture_ = writableMemory(pictureBytes(8));
    ASSERT_TRUE(send({8, 0}, std::array{empty.get(), picture_.get()}));
    EXPECT_EQ(answer(), noPicture(8));
}

TEST_F(RequestLoop, TheRequestsDescriptorsAreClosedBeforeDecoding) {
    const auto descriptorsInUse = [] {
        int count = 0;
        for (int i = 0; i < 1024; ++i) {
            count += ::fcntl(i, F_GETFD) != -1 ? 1 : 0;
        }
        return count;
    };
    std::atomic<int> during = 0;
    start([&](const QByteArray& bytes, int edge) {
        during = descriptorsInUse();
        return greenIcon(bytes, edge);
    });
    picture_ = writableMemory(pictureBytes(8));
    const int before = descriptorsInUse();
    ASSERT_TRUE(send({8, 4}, std::array{file_.get(), picture_.get()}));
    ASSERT_EQ(answer(), picture(8));
    EXPECT_EQ(during.load(), before);
    EXPECT_EQ(descriptorsInUse(), before);
}

TEST_F(RequestLoop, ProcessorTimeIsLimitedForEachPictureOnly) {
    const auto left = [] {
        itimerval timer = {};
        EXPECT_EQ(::getitimer(ITIMER_PROF, &timer), 0);
        return timer.it_value.tv_sec;
    };
    std::atomic<time_t> during =
        0; // atomic, because sanitizers do not see that the messages order the threads
    start([&](const QByteArray& bytes, int edge) {
        during = left();
        return greenIcon(bytes, edge);
    });
    for (int i = 0; i < 2; ++i) {
        during = 0;
        ASSERT_TRUE(ask(8));
        ASSERT_EQ(answer(), picture(8));
        EXPECT_GT(during.load(), 0);
        EXPECT_EQ(left(), 0);
    }
}

TEST_F(RequestLoop, TheAnswerAfterTheProcessorBudgetIsTheLast) {
    start(greenIcon, {0s, 100s});
    ASSERT_TRUE(ask(8));
    EXPECT_EQ(answer(), picture(8, true));
    EXPECT_FALSE(answer());
    EXPECT_EQ(end(), RequestLoopEnd::Done);
}

TEST_F(InvalidRequest, ShorterThanARequest) {
    start(greenIcon);
    ASSERT_TRUE(send(std::array<std::byte, 1>{}, {}));
    EXPECT_FALSE(answer());
    EXPECT_EQ(end(), RequestLoopEnd::InvalidRequest);
}

TEST_F(InvalidRequest, LongerThanARequest) {
    start(greenIcon);
    std::array<std::byte, requestSize + 1> message = {};
    encode(DecodingRequest{8, 4}, std::span(message).first<requestSize>());
    picture_ = writableMemory(pictureBytes(8));
    ASSERT_TRUE(send(message, std::array{file_.get(), picture_.get()}));
    EXPECT_FALSE(answer());
    EXPECT_EQ(end(), RequestLoopEnd::InvalidRequest);
}

TEST_F(InvalidRequest, WithOneDescriptor) {
    start(greenIcon);
    ASSERT_TRUE(send({8, 4}, std::array{file_.get()}));
    EXPECT_FALSE(answer());
    EXPECT_EQ(end(), RequestLoopEnd::InvalidRequest);
}

TEST_F(InvalidRequest, AFileOfAnotherSize) {
    start(greenIcon);
    picture_ = writableMemory(pictureBytes(8));
    ASSERT_TRUE(send({8, 5}, std::array{file_.get(), picture_.get()}));
    EXPECT_FALSE(answer());
    EXPECT_EQ(end(), RequestLoopEnd::InvalidRequest);
}

TEST_F(InvalidRequest, MemoryTooSmallForThePicture) {
    start(greenIcon);
    picture_ = writableMemory(pictureBytes(8) - 1);
    ASSERT_TRUE(send({8, 4}, std::array{file_.get(), picture_.get()}));
    EXPECT_FALSE(answer());
    EXPECT_EQ(end(), RequestLoopEnd::InvalidRequest);
}

TEST_F(InvalidRequest, ReadOnlyMemoryForThePicture) {
    start(greenIcon);
    ASSERT_TRUE(send({1, 4}, std::array{file_.get(), file_.get()}));
    EXPECT_FALSE(answer());
    EXPECT_EQ(end(), RequestLoopEnd::InvalidRequest);
}
