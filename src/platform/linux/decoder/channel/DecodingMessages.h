// decoder/channel/: how the launcher and a process that decodes icons talk. Both programs use this library.
//
// - DecodingMessages are the request and the answer: begin reading here.
// - MessageSocket sends and receives messages with descriptors.
// - SharedMemory has a file's bytes, and the picture, so that messages stay small. Sealed memory cannot be
//   changed or shrunk while the other process reads it.
// - IconBounds are the maximum sizes of files and pictures.
//
// Each side treats the other as hostile: a message of another length, magic number or size is rejected, and
// no descriptor leaks. Nothing here logs.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>

namespace amberquill::desktop {

// The messages between the launcher and a process that decodes icons (`amberquill-icons`), over a
// MessageSocket. The process sends `Ready` once it is sandboxed. From then on it sends one answer for each
// request. Both programs are of one build, so numbers have the machine's own byte order. While the program is
// upgraded the builds may differ: whoever changes a message changes its magic number, so that the other build
// rejects it.

// The process's descriptor of its end of the socket.
inline constexpr int decoderSocket = 0;

// The argument for a process that reads the system's fonts at its start, for drawings with text.
inline constexpr const char* decoderFontsArgument = "--fonts";

// The process's exit status.
enum class DecoderExit {
    Done,            // the other end is gone, or the last answer was sent
    NotFromLauncher, // not started by the launcher
    NoSandbox,       // this system cannot sandbox the process: nothing was decoded
    InvalidRequest,  // got a request that the launcher does not send
};

// A request has two descriptors: shared memory with the file's bytes, sealed against every change, and shared
// memory for the picture, sealed against changes of its size.
inline constexpr std::size_t requestDescriptors = 2;

struct DecodingRequest {
    std::uint32_t edge = 0;  // of the picture, in device pixels
    std::uint32_t bytes = 0; // of the file

    bool operator==(const DecodingRequest&) const = default;
};

enum class DecodingOutcome : std::uint32_t {
    Ready,      // for requests; sent once
    Picture,    // in the shared memory: rows of premultiplied ARGB without gaps
    NoPicture,  // broken, not an icon, or over a bound
    NeedsFonts, // a drawing with text, and this process was started without fonts
};

struct DecodingAnswer {
    DecodingOutcome outcome = DecodingOutcome::NoPicture;
    std::uint32_t edge = 0; // as in the request; 0 with `Ready`
    bool isLast = false;    // the process exits now: it has used its processor time

    bool operator==(const DecodingAnswer&) const = default;
};

// The size of the memory for a picture, in bytes.
[[nodiscard]] constexpr std::size_t pictureBytes(std::uint32_t edge) {
    return std::size_t{edge} * edge * sizeof(std::uint32_t);
}

// The messages' sizes, in bytes.
inline constexpr std::size_t requestSize = 3 * sizeof(std::uint32_t);
inline constexpr std::size_t answerSize = 4 * sizeof(std::uint32_t);

void encode(const DecodingRequest& request, std::span<std::byte, requestSize> to);
void encode(const DecodingAnswer& answer, std::span<std::byte, answerSize> to);

// None: a message that `encode` does not write, or sizes over maximumIconBytes or maximumIconEdge.
[[nodiscard]] std::optional<DecodingRequest> decodedRequest(std::span<const std::byte> message);
[[nodiscard]] std::optional<DecodingAnswer> decodedAnswer(std::span<const std::byte> message);

} // namespace amberquill::desktop
