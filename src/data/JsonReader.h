#pragma once

#include <QByteArrayView>
#include <QString>
#include <QStringView>
#include <optional>
#include <string>

namespace amberquill {

// Reads JSON (RFC 8259, in UTF-8, with or without a byte order mark) value by value, in order, without
// keeping what was read. Text that is not JSON, or is nested deeper than `maximumDepth`, ends the reading:
// from then on `failed` is true, nothing comes next and containers are at their ends.
class JsonReader {
public:
    static constexpr int maximumDepth = 256;

    enum class Kind { Object, Array, String, Number, Boolean, Null, Nothing };

    // `text` outlives the reader.
    explicit JsonReader(QByteArrayView text);

    // What comes next where a value is due.
    [[nodiscard]] Kind next();

    // Each of these reads one value, which is of that kind. Within an object, `nextKey` answers one key after
    // the other, each to be followed by the reading of its value; none: the object is over. `nextElement`
    // does the same for an array. The key is valid until the next call.
    void enterObject();
    std::optional<QStringView> nextKey();
    void enterArray();
    bool nextElement();

    // A surrogate without its partner, which only an escape can make, stays one.
    QString string();

    // None: the number is no integer, or none of 64 bits. 7.0 and 70e-1 are integers.
    std::optional<qint64> integer();

    // Reads one value of any kind.
    void skip();

    // Whether the text ends here, as it has to behind the outermost value.
    bool isAtEnd();

    [[nodiscard]] bool failed() const { return failed_; }

private:
    void fail();
    void skipWhiteSpace();
    bool take(char byte);
    bool takeWord(QByteArrayView word);
    bool continues(char end);
    bool enter();
    bool readString();
    bool readEscape();
    bool readCharacter();
    std::optional<char16_t> readHexDigits();
    std::optional<QByteArrayView> readNumber();

    QByteArrayView text_;
    qsizetype at_ = 0;
    int depth_ = 0;
    bool isFirst_ = false; // nothing has been read of the innermost container
    bool failed_ = false;
    std::u16string characters_; // of the string read last
};

} // namespace amberquill
