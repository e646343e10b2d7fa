#include "platform/linux/decoder/channel/DecodingMessages.h"

#include "platform/linux/decoder/channel/IconBounds.h"

#include <array>
#include <gtest/gtest.h>

using namespace amberquill::desktop;

namespace {

template<std::size_t Size, typename Message>
std::array<std::byte, Size> encodedMessage(const Message& message) {
    std::array<std::byte, Size> bytes = {};
    encode(message, bytes);
    return bytes;
}

auto encodedRequest(const DecodingRequest& request) {
    return encodedMessage<requestSize>(request);
}

auto encodedAnswer(const DecodingAnswer& answer) {
    return encodedMessage<answerSize>(answer);
}

} // namespace

TEST(DecodingMessages, ARequestArrivesAsItWasSent) {
    const DecodingRequest request{120, 4711};
    EXPECT_EQ(decodedRequest(encodedRequest(request)), request);
    const DecodingRequest largest{maximumIconEdge, maximumIconBytes};
    EXPECT_EQ(decodedRequest(encodedRequest(largest)), largest);
}

TEST(DecodingMessages, AnAnswerArrivesAsItWasSent) {
    for (const auto outcome : {DecodingOutcome::Ready, DecodingOutcome::Picture, DecodingOutcome::NoPicture,
                               DecodingOutcome::NeedsFonts}) {
        for (const bool isLast : {false, true}) {
            const DecodingAnswer answer{outcome, 48, isLast};
            EXPECT_EQ(decodedAnswer(encodedAnswer(answer)), answer);
        }
    }
}

TEST(DecodingMessages, SizesOverTheBoundsAreRefused) {
    EXPECT_FALSE(decodedRequest(encodedRequest({0, 1})));
    EXPECT_FALSE(decodedRequest(encodedRequest({maximumIconEdge + 1, 1})));
    EXPECT_FALSE(decodedRequest(encodedRequest({1, maximumIconBytes + 1})));
    EXPECT_FALSE(decodedAnswer(encodedAnswer({DecodingOutcome::Picture, maximumIconEdge + 1, false})));
}

TEST(DecodingMessages, OtherMessagesAreRefused) {
    const auto request = encodedRequest({120, 4711});
    const auto answer = encodedAnswer({DecodingOutcome::Picture, 120, false});
    EXPECT_FALSE(decodedRequest({}));
    EXPECT_FALSE(decodedRequest(std::span(request).first(request.size() - 1)));
    EXPECT_FALSE(decodedAnswer(std::span(answer).first(answer.size() - 1)));
    EXPECT_FALSE(decodedRequest(std::span(answer).first(requestSize)));
    for (std::size_t i = 0; i < sizeof(std::uint32_t); ++i) {
        auto changed = answer;
        changed.at(i) ^= std::byte{1};
        EXPECT_FALSE(decodedAnswer(changed)) << i;
    }
    EXPECT_FALSE(decodedAnswer(encodedAnswer({static_cast<DecodingOutcome>(4), 120, false})));
    auto neither = answer;
    neither.at(answerSize - sizeof(std::uint32_t)) = std::byte{2};
    EXPECT_FALSE(decodedAnswer(neither));
}
