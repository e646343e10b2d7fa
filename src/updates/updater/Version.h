#pragma once

#include <QStringView>
#include <compare>

namespace amberquill {

// Compares versions part by part. A part is a run of digits or a run of letters; other characters separate
// parts. Digits compare as numbers of any length, letters without case. A missing part counts as zero.
// Letters are older than every number, because they mark prereleases:
//
//     1.0a < 1.0b1 < 1.0b2 < 1.0rc < 1.0 = 1.0.0 < 1.0.1 < 1.9 < 1.10
[[nodiscard]] std::weak_ordering compareVersions(QStringView a, QStringView b);

[[nodiscard]] inline bool isNewer(QStringView version, QStringView other) {
    return std::is_gt(compareVersions(version, other));
}

} // namespace amberquill
