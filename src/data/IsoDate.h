#pragma once

#include <QDateTime>
#include <QString>
#include <chrono>
#include <optional>

namespace amberquill {

// Dates and times as ISO 8601 text in the form of RFC 3339: 2026-11-15T03:24:07Z. Years 1 to 9999 in UTC.

inline QString isoText(std::chrono::sys_seconds date) {
    return QDateTime::fromSecsSinceEpoch(date.time_since_epoch().count(), Qt::UTC).toString(Qt::ISODate);
}

// Reads a date, a time of day to the second and the distance from UTC, "Z" or "+01:00". None: any other form
// (such as a fraction of a second), or a day that is not in the calendar.
inline std::optional<std::chrono::sys_seconds> dateFromIsoText(const QString& text) {
    const bool hasNoDistance =
        text.endsWith(QLatin1String("+00:00")) || text.endsWith(QLatin1String("-00:00"));
    const QString exact = hasNoDistance ? text.chopped(6) + QLatin1Char('Z') : text;
    // Qt reads other forms too. It writes the exact one only.
    const QDateTime date = QDateTime::fromString(exact, Qt::ISODate);
    if (date.timeSpec() == Qt::LocalTime || date.toString(Qt::ISODate) != exact) {
        return std::nullopt;
    }
    const int year = date.toUTC().date().year();
    if (year < 1 || year > 9999) {
        return std::nullopt;
    }
    return std::chrono::sys_seconds(std::chrono::seconds(date.toSecsSinceEpoch()));
}

} // namespace amberquill
