#pragma once

#include "data/LaunchItem.h"

#include <QString>
#include <optional>
#include <vector>

namespace amberquill {

class NameOrder;

namespace LayoutReconciler {

// Merges a saved layout with what is installed now: the arrangement is kept, applications that are gone are
// dropped, those that moved on disk are followed by their file name, a path stands only at its first place,
// and new applications come at the end in the order of their names. With `newAppsFolder`, two or more new
// ones are gathered in a new folder of that name. Folders stay however few applications they hold. A pure
// function but for the new folder's random id.
LaunchItems reconcile(const LaunchItems& saved, const std::vector<AppInfo>& installed,
                      const std::optional<QString>& newAppsFolder, const NameOrder& order);

} // namespace LayoutReconciler

} // namespace amberquill
