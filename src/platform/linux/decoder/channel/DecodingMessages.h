#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>

namespace amberquill::desktop {

// What the launcher and a process that decodes icons for it (`amberquill-icons`) say to each other, over a
// MessageSocket. The process says `Ready` once it has given up all that it does not need. From then on each
// request has one answer. Both ends are of one build, so numbers are in the machine's own order. Only while
// the program is upgraded may they not be: whoever changes the messages changes their marks, and neither end
// understands the other.

// The descriptor under which the process finds its end of the socket.
inline constexpr int decoderSocket = 0;

// The argument with which the process reads the fonts of the system before it begins, for drawings with text.
inline constexpr const char* decoderFontsArgument = "--fonts";

// The status with which the process ends by itself.
enum class DecoderExit {
    Done,             // the other end is gone, or its last answer was given
    ByHand,           // it was not started by the launcher
    NotConfined,      // what decodes cannot be shut in on this system: nothing was decoded
    SenselessRequest, // it got a request that the launcher does not make
};

// A request brings two descriptors: shared memory with the file's bytes, sealed against every change, and
// shared memory for the picture, sealed against other sizes.
inline constexpr std::size_t requestDescriptors = 2;

struct DecodingRequest {
    std::uint32_t edge = 0;  // of the picture, in device pixels
    std::uint32_t bytes = 0; // of the file

    bool operator==(const DecodingRequest&) const = default;
};

enum class DecodingOutcome : std::uint32_t {
    Ready,      // for requests; comes once
    Picture,    // the memory for the picture holds it: rows without gaps of premultiplied ARGB
    NoPicture,  // broken, not an icon, or over one of the bounds
    NeedsFonts, // a drawing with text, and this process was started without fonts
};

struct DecodingAnswer {
    DecodingOutcome outcome = DecodingOutcome::NoPicture;
    std::uint32_t edge = 0; // as in the request; 0 with `Ready`
    bool isLast = false;    // the process ends now: it has worked for long

    bool operator==(const DecodingAnswer&) const = default;
};

// The size of the memory for a picture, in bytes.
[[nodiscard]] constexpr std::size_t pictureBytes(std::uint32_t edge) {
    return std::size_t{edge} * edge * sizeof(std::uint32_t);
}

// As they travel.
inline constexpr std::size_t requestSize = 3 * sizeof(std::uint32_t);
inline constexpr std::size_t answerSize = 4 * sizeof(std::uint32_t);

void encode(const DecodingRequest& request, std::span<std::byte, requestSize> to);
void encode(const DecodingAnswer& answer, std::span<std::byte, answerSize> to);

// None for what `encode` does not write, and for sizes beyond largestIconBytes and largestIconEdge.
[[nodiscard]] std::optional<DecodingRequest> decodedRequest(std::span<const std::byte> message);
[[nodiscard]] std::optional<DecodingAnswer> decodedAnswer(std::span<const std::byte> message);

} // namespace amberquill::desktop
