#include "platform/linux/applications/bundles/PropertyListGuard.h"

#include <algorithm>
#include <cstdint>
#include <optional>

namespace amberquill::desktop {
namespace {

constexpr int maximumDepth = 64;
constexpr qsizetype maximumValues = 20'000;                            // each copy counted
constexpr qsizetype maximumUnfoldedBytes = qsizetype{4} * 1024 * 1024; // of texts and data, each copy counted
constexpr int maximumXmlContainers = 4096;
constexpr qsizetype maximumXmlEntities = 2000; // the parser moves the rest of a text for each

constexpr QByteArrayView binaryHeader("bplist00");
constexpr qsizetype trailerSize = 32;

// Walks a binary list as its parser does, visiting shared values each time, and stops over a bound.
class BinaryList {
public:
    explicit BinaryList(QByteArrayView bytes)
        : bytes_(bytes) {}

    bool isSafe() {
        if (bytes_.size() < binaryHeader.size() + trailerSize) {
            return false;
        }
        const qsizetype trailer = bytes_.size() - trailerSize;
        offsetSize_ = number(trailer + 6, 1).value_or(0);
        referenceSize_ = number(trailer + 7, 1).value_or(0);
        const auto objects = number(trailer + 8, 8);
        const auto top = number(trailer + 16, 8);
        const auto table = number(trailer + 24, 8);
        constexpr qsizetype maximumIntegerSize = 8;
        if (!objects || !top || !table || offsetSize_ < 1 || offsetSize_ > maximumIntegerSize ||
            referenceSize_ < 1 || referenceSize_ > maximumIntegerSize || *objects > maximumValues ||
            *table < binaryHeader.size() || *table + *objects * offsetSize_ > trailer) {
            return false;
        }
        objects_ = *objects;
        table_ = *table;
        return unfold(*top, 0);
    }

private:
    // A big-endian number. None: outside of the list, or larger than any offset.
    [[nodiscard]] std::optional<qsizetype> number(qsizetype at, qsizetype size) const {
        if (at < 0 || at > bytes_.size() - size) {
            return std::nullopt;
        }
        std::uint64_t value = 0;
        for (const char byte : bytes_.sliced(at, size)) {
            value = (value << 8U) | static_cast<unsigned char>(byte);
        }
        if (value > static_cast<std::uint64_t>(maximumPropertyListBytes)) {
            return std::nullopt;
        }
        return static_cast<qsizetype>(value);
    }

    // The number of bytes, letters or values that follow. Moves `at` to the first one.
    [[nodiscard]] std::optional<qsizetype> count(unsigned low, qsizetype& at) const {
        constexpr unsigned countFollows = 0x0F;
        ++at;
        if (low != countFollows) {
            return low;
        }
        const auto marker = number(at, 1);
        constexpr qsizetype smallestInteger = 0x10;
        constexpr qsizetype largestInteger = 0x13;
        if (!marker || *marker < smallestInteger || *marker > largestInteger) {
            return std::nullopt;
        }
        const qsizetype size = qsizetype{1} << (*marker - smallestInteger);
        const auto value = number(at + 1, size);
        at += 1 + size;
        return value;
    }

    bool unfold(qsizetype object, int depth) {
        if (object >= objects_ || depth > maximumDepth || --valuesLeft_ < 0) {
            return false;
        }
        qsizetype at = number(table_ + object * offsetSize_, offsetSize_).value_or(table_);
        if (at < binaryHeader.size() || at >= table_) {
            return false;
        }
        const auto marker = static_cast<unsigned char>(bytes_[at]);
        const unsigned kind = marker >> 4U;
        const unsigned low = marker & 0x0FU;
        switch (kind) {
        case 0x0: // true, false
            return true;
        case 0x1: // integer
        case 0x2: // real
        case 0x3: // date
            return low <= 4 && at + 1 + (qsizetype{1} << low) <= table_;
        case 0x8: // reference of a keyed archive
            return at + 2 + low <= table_;
        case 0x4: // data
        case 0x5: // text, a byte a letter
        case 0x6: // text, two bytes a letter
            return unfoldBytes(low, at, kind == 0x6 ? 2 : 1);
        case 0xA: // array
        case 0xC: // set
            return unfoldValues(low, at, 1, depth);
        case 0xD: // dictionary: all keys, then all values
            return unfoldValues(low, at, 2, depth);
        default:
            return false;
        }
    }

    bool unfoldBytes(unsigned low, qsizetype at, qsizetype width) {
        const auto length = count(low, at);
        if (!length || at + *length * width > table_) {
            return false;
        }
        bytesLeft_ -= *length * width;
        return bytesLeft_ >= 0;
    }

    bool unfoldValues(unsigned low, qsizetype at, qsizetype each, int depth) {
        const auto values = count(low, at);
        if (!values || at + *values * each * referenceSize_ > table_) {
            return false;
        }
        for (qsizetype index = 0; index < *values * each; ++index) {
            const auto reference = number(at + index * referenceSize_, referenceSize_);
            if (!reference || !unfold(*reference, depth + 1)) {
                return false;
            }
        }
        return true;
    }

    QByteArrayView bytes_;
    qsizetype offsetSize_ = 0;
    qsizetype referenceSize_ = 0;
    qsizetype objects_ = 0;
    qsizetype table_ = 0;
    qsizetype valuesLeft_ = maximumValues;
    qsizetype bytesLeft_ = maximumUnfoldedBytes;
};

// The depth is at most the number of opening tags of dictionaries and arrays. Counting tags needs no parsing
// of comments or quoted text, in which this code and the parser could differ. Other tags with the same first
// letters are counted too.
bool isSafeXml(QByteArrayView bytes) {
    if (std::count(bytes.begin(), bytes.end(), '&') > maximumXmlEntities) {
        return false;
    }
    int containers = 0;
    qsizetype values = 0;
    for (qsizetype at = bytes.indexOf('<'); at >= 0 && at + 1 < bytes.size();
         at = bytes.indexOf('<', at + 1)) {
        const char letter = bytes[at + 1];
        containers += letter == 'd' || letter == 'a' ? 1 : 0;
        values += letter == '/' ? 0 : 1;
        if (containers > maximumXmlContainers || values > maximumValues) {
            return false;
        }
    }
    return true;
}

} // namespace

bool isBinaryPropertyList(QByteArrayView bytes) {
    return bytes.startsWith(binaryHeader);
}

bool isSafePropertyList(QByteArrayView bytes) {
    if (bytes.isEmpty() || bytes.size() > maximumPropertyListBytes) {
        return false;
    }
    return isBinaryPropertyList(bytes) ? BinaryList(bytes).isSafe() : isSafeXml(bytes);
}

} // namespace amberquill::desktop
