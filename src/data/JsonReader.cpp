#include "data/JsonReader.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <utility>

namespace amberquill {

namespace {

constexpr auto byteOrderMark = QByteArrayView("\xEF\xBB\xBF");

bool isDigit(char byte) {
    return byte >= '0' && byte <= '9';
}

// Bytes that need no decoding in a string: ASCII without quotes, backslashes and control characters.
constexpr std::array<bool, 256> plainBytes = [] {
    std::array<bool, 256> plain = {};
    for (std::size_t byte = 0x20; byte < 0x80; ++byte) {
        plain.at(byte) = byte != '"' && byte != '\\';
    }
    return plain;
}();

bool isPlain(char byte) {
    return plainBytes[static_cast<unsigned char>(byte)];
}

// The first byte of a character of several bytes in UTF-8.
struct Lead {
    int following = 0; // bytes; 0: not a lead byte
    char32_t bits = 0;
    char32_t least = 0; // smaller characters have a shorter form
};

Lead leadOf(unsigned char byte) {
    if ((byte & 0xE0U) == 0xC0U) {
        return {1, byte & 0x1FU, 0x80};
    }
    if ((byte & 0xF0U) == 0xE0U) {
        return {2, byte & 0x0FU, 0x800};
    }
    if ((byte & 0xF8U) == 0xF0U) {
        return {3, byte & 0x07U, 0x10000};
    }
    return {};
}

} // namespace

JsonReader::JsonReader(QByteArrayView text)
    : text_(text.startsWith(byteOrderMark) ? text.sliced(byteOrderMark.size()) : text) {}

void JsonReader::fail() {
    failed_ = true;
    at_ = text_.size();
}

void JsonReader::skipWhiteSpace() {
    while (at_ < text_.size()) {
        const char byte = text_[at_];
        if (byte != ' ' && byte != '\n' && byte != '\t' && byte != '\r') {
            return;
        }
        ++at_;
    }
}

bool JsonReader::take(char byte) {
    skipWhiteSpace();
    if (at_ < text_.size() && text_[at_] == byte) {
        ++at_;
        return true;
    }
    return false;
}

bool JsonReader::takeWord(QByteArrayView word) {
    if (!text_.sliced(at_).startsWith(word)) {
        return false;
    }
    at_ += word.size();
    return true;
}

JsonReader::Kind JsonReader::next() {
    skipWhiteSpace();
    if (at_ >= text_.size()) {
        return Kind::Nothing;
    }
    switch (const char byte = text_[at_]) {
    case '{':
        return Kind::Object;
    case '[':
        return Kind::Array;
    case '"':
        return Kind::String;
    case 't':
    case 'f':
        return Kind::Boolean;
    case 'n':
        return Kind::Null;
    default:
        return byte == '-' || isDigit(byte) ? Kind::Number : Kind::Nothing;
    }
}

bool JsonReader::enter() {
    if (++depth_ > maximumDepth) {
        fail();
        return false;
    }
    isFirst_ = true;
    return true;
}

void JsonReader::enterObject() {
    if (!take('{')) {
        return fail();
    }
    enter();
}

void JsonReader::enterArray() {
    if (!take('[')) {
        return fail();
    }
    enter();
}

// Whether the innermost container has another member. Leaves the container if not.
bool JsonReader::continues(char end) {
    if (failed_) {
        return false;
    }
    if (take(end)) {
        --depth_;
        isFirst_ = false; // the outer container has at least this member
        return false;
    }
    if (!std::exchange(isFirst_, false) && !take(',')) {
        fail();
        return false;
    }
    return true;
}

std::optional<QStringView> JsonReader::nextKey() {
    if (!continues('}')) {
        return std::nullopt;
    }
    skipWhiteSpace();
    if (!readString() || !take(':')) {
        fail();
        return std::nullopt;
    }
    return QStringView(characters_);
}

bool JsonReader::nextElement() {
    return continues(']');
}

QString JsonReader::string() {
    skipWhiteSpace();
    if (!readString()) {
        fail();
        return {};
    }
    // Not fromUtf16: it drops a byte order mark at the start.
    return QStringView(characters_).toString();
}

bool JsonReader::readString() {
    characters_.clear();
    if (at_ >= text_.size() || text_[at_] != '"') {
        return false;
    }
    ++at_;
    while (at_ < text_.size()) {
        const qsizetype start = at_;
        while (at_ < text_.size() && isPlain(text_[at_])) {
            ++at_;
        }
        const std::size_t length = characters_.size();
        characters_.resize(length + static_cast<std::size_t>(at_ - start));
        std::copy(text_.begin() + start, text_.begin() + at_, characters_.data() + length);
        if (at_ >= text_.size()) {
            return false;
        }
        if (text_[at_] == '"') {
            ++at_;
            return true;
        }
        if (text_[at_] == '\\' ? !readEscape() : !readCharacter()) {
            return false;
        }
    }
    return false;
}

bool JsonReader::readEscape() {
    ++at_;
    if (at_ >= text_.size()) {
        return false;
    }
    switch (const char escape = text_[at_++]) {
    case '"':
    case '\\':
    case '/':
        characters_ += static_cast<char16_t>(escape);
        return true;
    case 'b':
        characters_ += u'\b';
        return true;
    case 'f':
        characters_ += u'\f';
        return true;
    case 'n':
        characters_ += u'\n';
        return true;
    case 'r':
        characters_ += u'\r';
        return true;
    case 't':
        characters_ += u'\t';
        return true;
    case 'u':
        if (const auto unit = readHexDigits()) {
            characters_ += *unit;
            return true;
        }
        return false;
    default:
        return false;
    }
}

std::optional<char16_t> JsonReader::readHexDigits() {
    constexpr qsizetype digits = 4;
    if (text_.size() - at_ < digits) {
        return std::nullopt;
    }
    const char* const start = text_.data() + at_;
    std::uint16_t unit = 0;
    const auto [end, error] = std::from_chars(start, start + digits, unit, 16);
    if (error != std::errc() || end != start + digits) {
        return std::nullopt;
    }
    at_ += digits;
    return static_cast<char16_t>(unit);
}

// Reads one character beyond ASCII in its only valid form. Control characters are refused.
bool JsonReader::readCharacter() {
    const Lead lead = leadOf(static_cast<unsigned char>(text_[at_]));
    if (lead.following == 0 || text_.size() - at_ <= lead.following) {
        return false;
    }
    char32_t character = lead.bits;
    for (int i = 1; i <= lead.following; ++i) {
        const auto byte = static_cast<unsigned char>(text_[at_ + i]);
        if ((byte & 0xC0U) != 0x80U) {
            return false;
        }
        character = (character << 6U) | (byte & 0x3FU);
    }
    if (character < lead.least || character > QChar::LastValidCodePoint || QChar::isSurrogate(character)) {
        return false;
    }
    at_ += lead.following + 1;
    if (QChar::requiresSurrogates(character)) {
        characters_ += QChar::highSurrogate(character);
        characters_ += QChar::lowSurrogate(character);
    } else {
        characters_ += static_cast<char16_t>(character);
    }
    return true;
}

std::optional<QByteArrayView> JsonReader::readNumber() {
    const qsizetype start = at_;
    const auto takeDigits = [this] {
        const qsizetype first = at_;
        while (at_ < text_.size() && isDigit(text_[at_])) {
            ++at_;
        }
        return at_ > first;
    };
    takeWord("-");
    // No digit may follow a leading zero.
    if (!takeWord("0") && !takeDigits()) {
        return std::nullopt;
    }
    if (takeWord(".") && !takeDigits()) {
        return std::nullopt;
    }
    if (takeWord("e") || takeWord("E")) {
        if (!takeWord("+")) {
            takeWord("-");
        }
        if (!takeDigits()) {
            return std::nullopt;
        }
    }
    return text_.sliced(start, at_ - start);
}

std::optional<qint64> JsonReader::integer() {
    skipWhiteSpace();
    const auto number = readNumber();
    if (!number) {
        fail();
        return std::nullopt;
    }
    qint64 integer = 0;
    if (const auto [end, error] = std::from_chars(number->begin(), number->end(), integer);
        end == number->end()) {
        return error == std::errc() ? std::optional(integer) : std::nullopt;
    }
    // With a fraction or an exponent. Up to this limit a double holds every integer exactly.
    constexpr double largest = 9007199254740992.0;
    double value = 0;
    const auto [end, error] = std::from_chars(number->begin(), number->end(), value);
    if (error != std::errc() || value != std::trunc(value) || std::abs(value) > largest) {
        return std::nullopt;
    }
    return static_cast<qint64>(value);
}

void JsonReader::skip() {
    switch (next()) {
    case Kind::Object:
        enterObject();
        while (nextKey()) {
            skip();
        }
        return;
    case Kind::Array:
        enterArray();
        while (nextElement()) {
            skip();
        }
        return;
    case Kind::String:
        if (!readString()) {
            fail();
        }
        return;
    case Kind::Number:
        if (!readNumber()) {
            fail();
        }
        return;
    case Kind::Boolean:
        if (!takeWord("true") && !takeWord("false")) {
            fail();
        }
        return;
    case Kind::Null:
        if (!takeWord("null")) {
            fail();
        }
        return;
    case Kind::Nothing:
        fail();
        return;
    }
}

std::optional<QString> JsonReader::stringOrSkip() {
    if (next() == Kind::String) {
        return string();
    }
    skip();
    return std::nullopt;
}

std::optional<qint64> JsonReader::integerOrSkip() {
    if (next() == Kind::Number) {
        return integer();
    }
    skip();
    return std::nullopt;
}

bool JsonReader::isAtEnd() {
    skipWhiteSpace();
    return !failed_ && at_ >= text_.size();
}

} // namespace amberquill
