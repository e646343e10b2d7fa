#include "platform/linux/decoder/channel/DecodingMessages.h"

#include "platform/linux/decoder/channel/IconBounds.h"

#include <array>
#include <cstring>

namespace amberquill::desktop {

namespace {

constexpr std::uint32_t requestMagic = 0x4151'4901;
constexpr std::uint32_t answerMagic = 0x4151'4902;

template<std::size_t Count>
std::optional<std::array<std::uint32_t, Count>> wordsOf(std::span<const std::byte> message) {
    std::array<std::uint32_t, Count> words = {};
    if (message.size() != sizeof words) {
        return std::nullopt;
    }
    std::memcpy(words.data(), message.data(), sizeof words);
    return words;
}

} // namespace

void encode(const DecodingRequest& request, std::span<std::byte, requestSize> to) {
    const std::array words{requestMagic, request.edge, request.bytes};
    static_assert(sizeof words == requestSize);
    std::memcpy(to.data(), words.data(), sizeof words);
}

void encode(const DecodingAnswer& answer, std::span<std::byte, answerSize> to) {
    const std::array words{answerMagic, static_cast<std::uint32_t>(answer.outcome), answer.edge,
                           std::uint32_t{answer.isLast ? 1U : 0U}};
    static_assert(sizeof words == answerSize);
    std::memcpy(to.data(), words.data(), sizeof words);
}

std::optional<DecodingRequest> decodedRequest(std::span<const std::byte> message) {
    const auto words = wordsOf<3>(message);
    if (!words) {
        return std::nullopt;
    }
    const auto [magic, edge, bytes] = *words;
    if (magic != requestMagic || edge < 1 || edge > maximumIconEdge || bytes > maximumIconBytes) {
        return std::nullopt;
    }
    return DecodingRequest{edge, bytes};
}

std::optional<DecodingAnswer> decodedAnswer(std::span<const std::byte> message) {
    const auto words = wordsOf<4>(message);
    if (!words) {
        return std::nullopt;
    }
    const auto [magic, outcome, edge, isLast] = *words;
    if (magic != answerMagic || outcome > static_cast<std::uint32_t>(DecodingOutcome::NeedsFonts) ||
        edge > maximumIconEdge || isLast > 1) {
        return std::nullopt;
    }
    return DecodingAnswer{static_cast<DecodingOutcome>(outcome), edge, isLast == 1};
}

} // namespace amberquill::desktop
