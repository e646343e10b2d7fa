#include "data/PrettyJson.h"

#include "data/JsonText.h"

#include <utility>

namespace amberquill {

void PrettyJson::startLine() {
    text_ += '\n';
    text_.append(static_cast<qsizetype>(depth_) * 2, ' ');
}

void PrettyJson::startValue() {
    const bool isFirst = std::exchange(isFirst_, false);
    if (std::exchange(afterKey_, false) || depth_ == 0) {
        return;
    }
    if (!isFirst) {
        text_ += ',';
    }
    startLine();
}

void PrettyJson::begin(char bracket) {
    startValue();
    text_ += bracket;
    ++depth_;
    isFirst_ = true;
}

void PrettyJson::end(char bracket) {
    --depth_;
    if (!std::exchange(isFirst_, false)) {
        startLine();
    }
    text_ += bracket;
}

void PrettyJson::key(QByteArrayView key) {
    startValue();
    text_ += '"';
    text_ += key;
    text_ += "\" : ";
    afterKey_ = true;
}

void PrettyJson::string(QStringView text) {
    startValue();
    appendJsonString(text_, text);
}

void PrettyJson::integer(qint64 value) {
    startValue();
    text_ += QByteArray::number(value);
}

} // namespace amberquill
