#include "platform/linux/decoder/pictures/SvgInspection.h"

#include "platform/linux/decoder/pictures/MarkupScanner.h"
#include "platform/linux/decoder/pictures/RasterPicture.h"
#include "platform/linux/decoder/pictures/SvgReferences.h"

#include <QByteArray>
#include <algorithm>
#include <array>
#include <cctype>
#include <deque>
#include <optional>
#include <string>
#include <unordered_map>

namespace amberquill::desktop {

namespace {

// Of fifty thousand icons in common use the largest has 2 600 elements, ten levels and 460 kB of text.
constexpr std::size_t maximumText = std::size_t{8} * 1024 * 1024;
constexpr std::size_t maximumMarkup = std::size_t{1024} * 1024; // embedded pictures apart
constexpr std::size_t maximumDepth = 100;
constexpr std::size_t maximumDrawn = 5'000;
constexpr std::size_t maximumDashed = 500; // dashes may be many where the path is one
constexpr std::size_t maximumEntities = 256;
constexpr std::size_t maximumEntityValue = 256;
constexpr std::size_t maximumEntityUses = 10'000;
constexpr std::int64_t maximumEmbeddedPixels = std::int64_t{16} * 1024 * 1024;
constexpr int maximumDigits = 6; // of coordinates, before the point
constexpr int maximumExponent = 5;

// Attributes with coordinates, in alphabetical order.
constexpr std::array<std::string_view, 20> geometry{
    "cx",           "cy",        "d",       "fx",    "fy", "height", "points", "r", "rx", "ry",
    "stroke-width", "transform", "viewBox", "width", "x",  "x1",     "x2",     "y", "y1", "y2"};

// Attributes that name other elements, or the element itself.
constexpr std::array<std::string_view, 13> naming{
    "class",      "clip-path",  "fill",         "filter", "href",   "id",   "marker",
    "marker-end", "marker-mid", "marker-start", "mask",   "stroke", "style"};

template<std::size_t Size>
bool isOneOf(const std::array<std::string_view, Size>& names, std::string_view name) {
    return std::binary_search(names.begin(), names.end(), name);
}

bool isDigit(char character) {
    return character >= '0' && character <= '9';
}

// Whether a number in the list is larger than any coordinate of an icon.
bool hasHugeNumber(std::string_view numbers) {
    int digits = 0;
    bool isFraction = false;
    for (std::size_t i = 0; i < numbers.size(); ++i) {
        const char character = numbers[i];
        if (isDigit(character)) {
            digits += digits > 0 || character != '0' ? 1 : 0;
            if (!isFraction && digits > maximumDigits) {
                return true;
            }
            continue;
        }
        if ((character == 'e' || character == 'E') && i > 0 && isDigit(numbers[i - 1])) {
            auto at = i + 1;
            const bool isNegative = at < numbers.size() && numbers[at] == '-';
            at += at < numbers.size() && (isNegative || numbers[at] == '+') ? 1 : 0;
            int exponent = 0;
            for (; at < numbers.size() && isDigit(numbers[at]) && exponent <= maximumExponent; ++at) {
                exponent = exponent * 10 + (numbers[at] - '0');
            }
            if (!isNegative && exponent > maximumExponent) {
                return true;
            }
        }
        isFraction = character == '.';
        digits = 0;
    }
    return false;
}

// Encodings in which the bytes of markup are what they look like.
bool isPlainEncoding(std::string_view name) {
    std::string lower(name);
    std::transform(lower.begin(), lower.end(), lower.begin(),
                   [](unsigned char character) { return static_cast<char>(std::tolower(character)); });
    return lower == "utf-8" || lower == "utf8" || lower == "us-ascii" || lower == "ascii" ||
           lower.starts_with("iso-8859-") || lower.starts_with("windows-125");
}

bool declaresPlainEncoding(std::string_view declaration) {
    const auto found = declaration.find("encoding");
    if (found == std::string_view::npos) {
        return true;
    }
    declaration.remove_prefix(found + std::string_view("encoding").size());
    skipSpace(declaration);
    if (!declaration.starts_with('=')) {
        return false;
    }
    declaration.remove_prefix(1);
    skipSpace(declaration);
    const auto name = takeQuoted(declaration);
    return name && isPlainEncoding(*name);
}

// Calls `with` for each id that the text refers to as url(#id).
template<typename With>
void forEachUrl(std::string_view text, With with) {
    constexpr std::string_view opening = "url(";
    for (auto found = text.find(opening); found != std::string_view::npos; found = text.find(opening)) {
        text.remove_prefix(found + opening.size());
        auto target = text.substr(0, text.find(')'));
        const auto hash = target.find('#');
        if (hash != std::string_view::npos) {
            target.remove_prefix(hash + 1);
            with(target.substr(0, target.find_first_of("'\" \t")));
        }
    }
}

bool hasDashes(std::string_view style) {
    constexpr std::string_view property = "stroke-dasharray";
    for (auto found = style.find(property); found != std::string_view::npos; found = style.find(property)) {
        style.remove_prefix(found + property.size());
        auto value = style;
        while (!value.empty() && (value.front() == ':' || value.front() == ' ')) {
            value.remove_prefix(1);
        }
        if (!value.starts_with("none")) {
            return true;
        }
    }
    return false;
}

class Inspector {
public:
    SvgVerdict inspect(std::string_view text) {
        if (text.size() > maximumText) {
            return SvgVerdict::TooLarge;
        }
        if (text.find('\0') != std::string_view::npos) {
            return SvgVerdict::NotSvg;
        }
        constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";
        if (text.starts_with(byteOrderMark)) {
            text.remove_prefix(byteOrderMark.size());
        }
        markup_ = text.size();
        MarkupScanner scanner(text);
        while (const auto piece = scanner.next()) {
            if (const auto verdict = take(*piece); verdict != SvgVerdict::Harmless) {
                return verdict;
            }
        }
        if (scanner.failed() || drawing_.elements() == 0 || drawing_.depth() > 0) {
            return SvgVerdict::NotSvg;
        }
        if (markup_ > maximumMarkup) {
            return SvgVerdict::TooLarge;
        }
        if (!entities_.empty() &&
            std::count(text.begin(), text.end(), '&') > static_cast<std::ptrdiff_t>(maximumEntityUses)) {
            return SvgVerdict::SuspectEntities;
        }
        return judgeDrawing();
    }

private:
    SvgVerdict take(const MarkupScanner::Piece& piece) {
        using Kind = MarkupScanner::Kind;
        switch (piece.kind) {
        case Kind::Instruction:
            return takeInstruction(piece.text);
        case Kind::DocumentType:
            return drawing_.elements() == 0 ? takeDocumentType(piece.text) : SvgVerdict::NotSvg;
        case Kind::Text:
            return takeText(piece.text);
        case Kind::EndTag:
            if (drawing_.depth() == 0 || drawing_.openElement() != piece.name) {
                return SvgVerdict::NotSvg;
            }
            drawing_.end();
            return SvgVerdict::Harmless;
        case Kind::EmptyTag:
        case Kind::StartTag:
            break;
        }
        const auto verdict = takeElement(piece);
        if (piece.kind == Kind::EmptyTag && verdict == SvgVerdict::Harmless) {
            drawing_.end();
        }
        return verdict;
    }

    static SvgVerdict takeInstruction(std::string_view text) {
        auto rest = text;
        const auto target = takeName(rest);
        if (target == "xml-stylesheet") {
            return SvgVerdict::ExternalReference; // the renderer would read the file it names
        }
        return target != "xml" || declaresPlainEncoding(rest) ? SvgVerdict::Harmless : SvgVerdict::NotSvg;
    }

    SvgVerdict takeDocumentType(std::string_view text) {
        constexpr std::string_view opening = "<!ENTITY";
        for (auto found = text.find(opening); found != std::string_view::npos; found = text.find(opening)) {
            text.remove_prefix(found + opening.size());
            skipSpace(text);
            const auto name = takeName(text);
            skipSpace(text);
            const auto value = takeQuoted(text); // none for parameter entities and those read from elsewhere
            if (name.empty() || !value || value->size() > maximumEntityValue ||
                value->find_first_of("<&%") != std::string_view::npos ||
                entities_.size() >= maximumEntities) {
                return SvgVerdict::SuspectEntities;
            }
            entities_.emplace(name, *value);
        }
        return SvgVerdict::Harmless;
    }

    SvgVerdict takeText(std::string_view text) {
        if (drawing_.depth() == 0) {
            skipSpace(text);
            return text.empty() ? SvgVerdict::Harmless : SvgVerdict::NotSvg;
        }
        if (drawing_.openElement() == "style") {
            forEachUrl(text, [this](std::string_view id) { drawing_.addStyleUrl(id); });
            hasDashes_ = hasDashes_ || hasDashes(text);
        }
        return SvgVerdict::Harmless;
    }

    SvgVerdict takeElement(const MarkupScanner::Piece& piece) {
        if (drawing_.depth() == 0 && (drawing_.elements() > 0 || piece.name != "svg")) {
            return SvgVerdict::NotSvg;
        }
        if (drawing_.elements() >= maximumDrawn) {
            return SvgVerdict::TooMuchToDraw;
        }
        if (drawing_.depth() >= maximumDepth) {
            return SvgVerdict::TooDeep;
        }
        drawing_.begin(piece.name);
        for (const auto& [name, value] : piece.attributes) {
            if (const auto verdict = takeAttribute(name, value); verdict != SvgVerdict::Harmless) {
                return verdict;
            }
        }
        return SvgVerdict::Harmless;
    }

    SvgVerdict takeAttribute(std::string_view name, std::string_view value) {
        const auto element = drawing_.openElement();
        if (name == "href" && (element == "image" || element == "feImage")) {
            return takePicture(value);
        }
        const bool isGeometry = isOneOf(geometry, name);
        if (isGeometry || (isOneOf(naming, name) && element != "a")) {
            const auto meant = withoutEntities(value);
            if (!meant) {
                return SvgVerdict::SuspectEntities;
            }
            value = *meant;
        }
        if (isGeometry) {
            return hasHugeNumber(value) ? SvgVerdict::TooLarge : SvgVerdict::Harmless;
        }
        if (name == "id") {
            drawing_.setId(value);
        } else if (name == "href" && value.starts_with('#')) {
            drawing_.addUse(value.substr(1));
        } else {
            forEachUrl(value, [this](std::string_view id) { drawing_.addUrl(id); });
            hasDashes_ = hasDashes_ || (name == "stroke-dasharray" && value != "none") || hasDashes(value);
        }
        return SvgVerdict::Harmless;
    }

    // The value with the document's own entities written out. None: it has characters by number in it, or
    // what nobody declared, and so says something else than is written.
    std::optional<std::string_view> withoutEntities(std::string_view value) {
        if (value.find('&') == std::string_view::npos) {
            return value;
        }
        constexpr std::array<std::string_view, 5> harmless{"amp", "apos", "gt", "lt", "quot"};
        std::string text;
        while (!value.empty()) {
            const auto plain = value.substr(0, value.find('&'));
            text.append(plain);
            value.remove_prefix(plain.size());
            if (value.empty()) {
                break;
            }
            const auto name = value.substr(1, std::min(value.find(';'), value.size()) - 1);
            value.remove_prefix(std::min(name.size() + 2, value.size()));
            if (isOneOf(harmless, name)) {
                text.append(" ");
            } else if (const auto entity = entities_.find(name); entity != entities_.end()) {
                text.append(entity->second);
            } else {
                return std::nullopt;
            }
        }
        return written_.emplace_back(std::move(text));
    }

    // Pictures are the one thing that the renderer reads from elsewhere, so they must be in the file.
    SvgVerdict takePicture(std::string_view link) {
        constexpr std::string_view encoding = "base64,";
        const auto data = link.rfind(encoding);
        if (!link.starts_with("data:image/") || data == std::string_view::npos ||
            link.find('&') != std::string_view::npos) {
            return SvgVerdict::ExternalReference;
        }
        const auto encoded = link.substr(data + encoding.size());
        const auto picture =
            QByteArray::fromBase64(QByteArray(encoded.data(), static_cast<qsizetype>(encoded.size())));
        const auto size = embeddedPictureSize(picture);
        embeddedPixels_ += size ? std::int64_t{size->width()} * size->height() : 0;
        markup_ -= link.size();
        if (embeddedPixels_ > maximumEmbeddedPixels) {
            return SvgVerdict::TooLarge;
        }
        // What it cannot decode the renderer takes for a file's name.
        return size && !decodedRaster(picture, *iconFormat(picture)).isNull() ? SvgVerdict::Harmless
                                                                              : SvgVerdict::ExternalReference;
    }

    SvgVerdict judgeDrawing() {
        const auto drawn = drawing_.drawn();
        if (!drawn) {
            return SvgVerdict::TooDeep;
        }
        return *drawn > (hasDashes_ ? maximumDashed : maximumDrawn) ? SvgVerdict::TooMuchToDraw
                                                                    : SvgVerdict::Harmless;
    }

    SvgReferences drawing_{maximumDrawn};
    std::unordered_map<std::string_view, std::string_view> entities_;
    std::deque<std::string> written_; // values with their entities written out
    std::size_t markup_ = 0;
    std::int64_t embeddedPixels_ = 0;
    bool hasDashes_ = false;
};

} // namespace

SvgVerdict inspectSvg(std::string_view text) {
    return Inspector().inspect(text);
}

} // namespace amberquill::desktop
