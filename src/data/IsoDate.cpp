#include "data/IsoDate.h"

namespace amberquill {

namespace {

using namespace std::chrono;

// Takes numbers and signs from the front of a text, each in its full width.
class Scanner {
public:
    explicit Scanner(QStringView text)
        : rest_(text) {}

    std::optional<int> number(qsizetype digits, int largest) {
        int value = 0;
        for (qsizetype i = 0; i < digits; ++i) {
            const char16_t unit = i < rest_.size() ? rest_[i].unicode() : u' ';
            if (unit < u'0' || unit > u'9') {
                return std::nullopt;
            }
            value = value * 10 + (unit - u'0');
        }
        rest_ = rest_.sliced(digits);
        return value <= largest ? std::optional(value) : std::nullopt;
    }

    bool take(char16_t sign) {
        if (!rest_.startsWith(QChar(sign))) {
            return false;
        }
        rest_ = rest_.sliced(1);
        return true;
    }

    [[nodiscard]] bool isAtEnd() const { return rest_.isEmpty(); }

private:
    QStringView rest_;
};

std::optional<sys_days> takeDay(Scanner& scanner) {
    const auto year = scanner.number(4, 9999);
    if (!year || *year == 0 || !scanner.take(u'-')) {
        return std::nullopt;
    }
    const auto month = scanner.number(2, 12);
    if (!month || !scanner.take(u'-')) {
        return std::nullopt;
    }
    const auto day = scanner.number(2, 31);
    if (!day) {
        return std::nullopt;
    }
    const year_month_day date(std::chrono::year(*year), std::chrono::month(static_cast<unsigned>(*month)),
                              std::chrono::day(static_cast<unsigned>(*day)));
    return date.ok() ? std::optional(sys_days(date)) : std::nullopt;
}

std::optional<seconds> takeHoursAndMinutes(Scanner& scanner) {
    const auto hour = scanner.number(2, 23);
    if (!hour || !scanner.take(u':')) {
        return std::nullopt;
    }
    const auto minute = scanner.number(2, 59);
    return minute ? std::optional(hours(*hour) + minutes(*minute)) : std::nullopt;
}

std::optional<seconds> takeTime(Scanner& scanner) {
    const auto time = takeHoursAndMinutes(scanner);
    if (!time || !scanner.take(u':')) {
        return std::nullopt;
    }
    const auto second = scanner.number(2, 59);
    return second ? std::optional(*time + seconds(*second)) : std::nullopt;
}

std::optional<seconds> takeZone(Scanner& scanner) {
    if (scanner.take(u'Z')) {
        return seconds(0);
    }
    const bool isEast = scanner.take(u'+');
    if (!isEast && !scanner.take(u'-')) {
        return std::nullopt;
    }
    const auto distance = takeHoursAndMinutes(scanner);
    return distance ? std::optional(isEast ? *distance : -*distance) : std::nullopt;
}

} // namespace

QString isoText(sys_seconds date) {
    const auto day = floor<days>(date);
    const year_month_day ymd(day);
    const hh_mm_ss time(date - day);
    const auto two = [](long number) { return QString::number(number).rightJustified(2, QLatin1Char('0')); };
    return QString::number(static_cast<int>(ymd.year())).rightJustified(4, QLatin1Char('0')) +
           QLatin1Char('-') + two(static_cast<unsigned>(ymd.month())) + QLatin1Char('-') +
           two(static_cast<unsigned>(ymd.day())) + QLatin1Char('T') + two(time.hours().count()) +
           QLatin1Char(':') + two(time.minutes().count()) + QLatin1Char(':') + two(time.seconds().count()) +
           QLatin1Char('Z');
}

std::optional<sys_seconds> dateFromIsoText(QStringView text) {
    Scanner scanner(text);
    const auto day = takeDay(scanner);
    if (!day || !scanner.take(u'T')) {
        return std::nullopt;
    }
    const auto time = takeTime(scanner);
    if (!time) {
        return std::nullopt;
    }
    const auto zone = takeZone(scanner);
    return zone && scanner.isAtEnd() ? std::optional(sys_seconds(*day) + *time - *zone) : std::nullopt;
}

} // namespace amberquill
