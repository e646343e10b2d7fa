#include "platform/linux/decoder/pictures/IconFormat.h"

#include <array>
#include <string_view>

namespace amberquill::desktop {

using namespace std::string_view_literals;

namespace {

struct Signature {
    std::string_view bytes;
    IconFormat format;
};

constexpr std::array signatures{
    Signature{.bytes = "\x89PNG\r\n\x1a\n"sv, .format = IconFormat::Png},
    Signature{.bytes = "\xFF\xD8\xFF"sv, .format = IconFormat::Jpeg},
    Signature{.bytes = "II*\0"sv, .format = IconFormat::Tiff},
    Signature{.bytes = "MM\0*"sv, .format = IconFormat::Tiff},
    Signature{.bytes = "/* XPM"sv, .format = IconFormat::Xpm},
    Signature{.bytes = "\0\0\1\0"sv, .format = IconFormat::Ico},
    Signature{.bytes = "icns"sv, .format = IconFormat::Icns},
    Signature{.bytes = "\xFF\xFE<\0"sv, .format = IconFormat::Svg}, // UTF-16
    Signature{.bytes = "\xFE\xFF\0<"sv, .format = IconFormat::Svg},
    Signature{.bytes = "\x1F\x8B"sv, .format = IconFormat::CompressedSvg},
};

} // namespace

std::optional<IconFormat> iconFormat(QByteArrayView bytes) {
    std::string_view text(bytes.data(), static_cast<std::size_t>(bytes.size()));
    for (const auto& [signature, format] : signatures) {
        if (text.starts_with(signature)) {
            return format;
        }
    }
    if (text.starts_with("RIFF"sv) && text.size() >= 12 && text.substr(8, 4) == "WEBP"sv) {
        return IconFormat::Webp;
    }
    if (text.starts_with("\xEF\xBB\xBF"sv)) {
        text.remove_prefix(3);
    }
    const auto first = text.find_first_not_of(" \t\r\n"sv);
    if (first != std::string_view::npos && text[first] == '<') {
        return IconFormat::Svg;
    }
    return std::nullopt;
}

} // namespace amberquill::desktop
