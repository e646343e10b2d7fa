#pragma once

#include "data/AppScanner.h"
#include "data/LaunchItem.h"

#include <QHash>
#include <QString>
#include <QStringList>
#include <optional>

namespace amberquill {

// How long applications of the layout stay that a scan does not find: a package that is being upgraded is
// away for a second, a mount for longer. Times are in seconds of the main queue's clock.
//
// In the first scan of a process all are gone at once, but for those below a folder that could not be read.
// From then on they stay for a moment; those of a root that is not there although it had applications stay
// until it is; and a root that is there and empty has to be found so twice.
class MissingApplications {
public:
    static constexpr double gracePeriod = 5;
    // So far apart two scans find a root empty before that is believed.
    static constexpr double emptyRootDelay = 10;

    // The paths of the layout's applications that the scan lacks and that stay, in the layout's order. An
    // application whose file name the scan has in a new place has moved, and does not stay.
    [[nodiscard]] QStringList staying(const LaunchItems& items, const ScanResult& scan, double now);

    // When another scan can decide about some that stay; none: nothing is to be decided by then.
    [[nodiscard]] std::optional<double> nextDecision() const { return nextDecision_; }

private:
    // Whether something that was first seen so at `since`, and is still so, stays.
    bool isWithin(double since, double span, double now);

    bool hasScanned_ = false;
    QHash<QString, double> missingSince_; // applications
    QHash<QString, double> emptySince_;   // roots
    std::optional<double> nextDecision_;
};

} // namespace amberquill
