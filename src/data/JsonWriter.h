#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QStringView>

namespace amberquill {

// Appends `text` as a JSON string (RFC 8259): UTF-8 as it is, control characters, quotes, backslashes and
// every "/" escaped. A surrogate without its partner is written as an escape, so that any text can be read
// back unchanged.
void appendJsonString(QByteArray& json, QStringView text);

// Writes JSON (RFC 8259) for people to read: two spaces for each level, " : " between a key and its value, a
// line for each member. The caller writes the keys of an object in the order they are to have.
class PrettyJsonWriter {
public:
    void beginObject() { begin('{'); }
    void endObject() { end('}'); }
    void beginArray() { begin('['); }
    void endArray() { end(']'); }

    // What is written next is the value of this key.
    void key(QByteArrayView key);
    void string(QStringView text);
    void integer(qint64 value);

    [[nodiscard]] const QByteArray& text() const { return text_; }

private:
    void begin(char bracket);
    void end(char bracket);
    void startValue();
    void startLine();

    QByteArray text_;
    int depth_ = 0;
    bool isFirst_ = true;   // nothing has been written in the innermost container
    bool afterKey_ = false; // the value stands on its key's line
};

} // namespace amberquill
