#include "data/JsonWriter.h"

#include <QChar>
#include <algorithm>
#include <array>
#include <utility>

namespace amberquill {

namespace {

constexpr char32_t firstUnescaped = 0x20;

void appendEscape(QByteArray& json, char16_t unit) {
    static constexpr std::array<char, 16> digits = {'0', '1', '2', '3', '4', '5', '6', '7',
                                                    '8', '9', 'a', 'b', 'c', 'd', 'e', 'f'};
    json += "\\u";
    for (int shift = 12; shift >= 0; shift -= 4) {
        json += digits.at((static_cast<unsigned>(unit) >> static_cast<unsigned>(shift)) & 0xFU);
    }
}

// Whether the character is written as it is, in one byte.
bool isPlain(QChar character) {
    const char16_t unit = character.unicode();
    return unit >= firstUnescaped && unit < 0x80 && unit != u'"' && unit != u'\\' && unit != u'/';
}

void appendPlain(QByteArray& json, QStringView text) {
    const qsizetype size = json.size();
    json.resize(size + text.size());
    std::transform(text.begin(), text.end(), json.begin() + size,
                   [](QChar character) { return static_cast<char>(character.unicode()); });
}

void appendAscii(QByteArray& json, char16_t unit) {
    switch (unit) {
    case u'"':
        json += "\\\"";
        return;
    case u'\\':
        json += "\\\\";
        return;
    case u'/':
        json += "\\/";
        return;
    case u'\b':
        json += "\\b";
        return;
    case u'\f':
        json += "\\f";
        return;
    case u'\n':
        json += "\\n";
        return;
    case u'\r':
        json += "\\r";
        return;
    case u'\t':
        json += "\\t";
        return;
    default:
        if (unit < firstUnescaped) {
            appendEscape(json, unit);
        } else {
            json += static_cast<char>(unit);
        }
    }
}

} // namespace

void appendJsonString(QByteArray& json, QStringView text) {
    json += '"';
    for (qsizetype i = 0; i < text.size();) {
        const qsizetype start = i;
        while (i < text.size() && isPlain(text[i])) {
            ++i;
        }
        if (i > start) {
            appendPlain(json, text.sliced(start, i - start));
            continue;
        }
        const QChar unit = text[i];
        if (unit.unicode() < 0x80) {
            appendAscii(json, unit.unicode());
        } else if (unit.isHighSurrogate() && i + 1 < text.size() && text[i + 1].isLowSurrogate()) {
            json += text.mid(i, 2).toUtf8();
            ++i;
        } else if (unit.isSurrogate()) {
            appendEscape(json, unit.unicode());
        } else {
            json += text.mid(i, 1).toUtf8();
        }
        ++i;
    }
    json += '"';
}

void PrettyJsonWriter::startLine() {
    text_ += '\n';
    text_.append(static_cast<qsizetype>(depth_) * 2, ' ');
}

void PrettyJsonWriter::startValue() {
    const bool isFirst = std::exchange(isFirst_, false);
    if (std::exchange(afterKey_, false) || depth_ == 0) {
        return;
    }
    if (!isFirst) {
        text_ += ',';
    }
    startLine();
}

void PrettyJsonWriter::begin(char bracket) {
    startValue();
    text_ += bracket;
    ++depth_;
    isFirst_ = true;
}

void PrettyJsonWriter::end(char bracket) {
    --depth_;
    if (!std::exchange(isFirst_, false)) {
        startLine();
    }
    text_ += bracket;
}

void PrettyJsonWriter::key(QByteArrayView key) {
    startValue();
    text_ += '"';
    text_ += key;
    text_ += "\" : ";
    afterKey_ = true;
}

void PrettyJsonWriter::string(QStringView text) {
    startValue();
    appendJsonString(text_, text);
}

void PrettyJsonWriter::integer(qint64 value) {
    startValue();
    text_ += QByteArray::number(value);
}

} // namespace amberquill
