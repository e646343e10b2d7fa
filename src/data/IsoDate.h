#pragma once

#include <QString>
#include <QStringView>
#include <chrono>
#include <optional>

namespace amberquill {

// Dates and times as text by ISO 8601, in the form of RFC 3339: 2026-11-15T03:24:07Z. Years 1 to 9999.

QString isoText(std::chrono::sys_seconds date);

// Reads a date with the time of day to the second and its distance from UTC, "Z" or "+01:00". None: anything
// else, a fraction of a second and a day that is not in the calendar among it.
std::optional<std::chrono::sys_seconds> dateFromIsoText(QStringView text);

} // namespace amberquill
