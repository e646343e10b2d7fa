#pragma once

#include "data/AppScanner.h"
#include "data/LaunchItem.h"

#include <QHash>
#include <QString>
#include <QStringList>
#include <optional>

namespace amberquill {

// How long applications stay in the layout that a scan does not find: a package that is being upgraded is
// missing for a second, a mounted folder for longer. Times are seconds of the main queue's clock.
//
// An application below a folder that cannot be read stays as long as that is so. Apart from these, the first
// scan of a process removes all missing applications at once. After that
// - an application below a missing root stays until the root is back;
// - applications of an empty root leave when a second scan finds the root empty, `emptyRootDelay` later;
// - any other one leaves when it has been missing for `gracePeriod`.
class MissingApplications {
public:
    static constexpr double gracePeriod = 5;
    // Between the two scans that find a root empty.
    static constexpr double emptyRootDelay = 10;

    // The paths of missing applications that stay, in the layout's order. An application whose file name the
    // scan has found at a new path has moved and does not stay.
    [[nodiscard]] QStringList staying(const LaunchItems& items, const ScanResult& scan, double now);

    // The time of the next scan that may remove some of them; none: no such scan is needed.
    [[nodiscard]] std::optional<double> nextDecision() const { return nextDecision_; }

private:
    // Whether the delay that began at `since` is still running.
    bool isWithin(double since, double span, double now);

    bool hasScanned_ = false;
    QHash<QString, double> missingSince_; // applications
    QHash<QString, double> emptySince_;   // roots
    std::optional<double> nextDecision_;
};

} // namespace amberquill
