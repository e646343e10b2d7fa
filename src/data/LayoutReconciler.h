#pragma once

#include "data/LaunchItem.h"

#include <QString>
#include <optional>
#include <vector>

namespace amberquill {

class NameOrder;

namespace LayoutReconciler {

// Merges a saved layout with the installed applications. Keeps the arrangement and all folders, even empty
// ones. Drops applications that are not installed, unless their file name is now installed elsewhere: then
// the item gets the new path. A path stays at its first place only. New applications are appended in the
// order of their names; with `newAppsFolder`, two or more are put into a new folder of that name. A pure
// function, apart from the random id of the new folder.
LaunchItems reconcile(const LaunchItems& saved, const std::vector<AppInfo>& installed,
                      const std::optional<QString>& newAppsFolder, const NameOrder& order);

} // namespace LayoutReconciler

} // namespace amberquill
