#pragma once

#include <QStringView>
#include <compare>

namespace amberquill {

// Which of two versions is newer, part by part. A part is a run of digits or a run of letters; anything else
// only separates. Numbers compare as numbers, however long, and letters as letters, whatever their case. A
// part that is missing counts as zero, and letters come before every number, for they mark what comes before
// a release:
//
//     1.0a < 1.0b1 < 1.0b2 < 1.0rc < 1.0 = 1.0.0 < 1.0.1 < 1.9 < 1.10
[[nodiscard]] std::weak_ordering compareVersions(QStringView a, QStringView b);

[[nodiscard]] inline bool isNewer(QStringView version, QStringView other) {
    return std::is_gt(compareVersions(version, other));
}

} // namespace amberquill
