#include "platform/linux/x11/StartupId.h"

namespace amberquill::desktop {

using namespace Qt::StringLiterals;

std::optional<quint32> startupTime(const QString& startupId) {
    const auto mark = u"_TIME"_s;
    const auto at = startupId.lastIndexOf(mark);
    if (at < 0) {
        return std::nullopt;
    }
    const auto digits = QStringView(startupId).sliced(at + mark.size());
    const auto isDigit = [](QChar c) { return c >= QLatin1Char('0') && c <= QLatin1Char('9'); };
    if (!std::all_of(digits.begin(), digits.end(), isDigit)) {
        return std::nullopt;
    }
    bool isNumber = false;
    const quint32 time = digits.toUInt(&isNumber);
    return isNumber && time != 0 ? std::optional(time) : std::nullopt;
}

} // namespace amberquill::desktop
