#include "platform/linux/applications/bundles/PropertyListBundles.h"

#include "platform/linux/applications/bundles/BundlePropertyList.h"

namespace amberquill::desktop {

std::optional<QString> PropertyListBundles::bundleIdentifier(const QString& bundlePath) const {
    auto list = readBundlePropertyList(bundlePath);
    if (!list || list->identifier.isEmpty()) {
        return std::nullopt;
    }
    return std::move(list->identifier);
}

} // namespace amberquill::desktop
