// applications/bundles/: what application bundles (`*.app` folders) say of themselves.
#pragma once

#include "platform/BundleInformation.h"

namespace amberquill::desktop {

// Bundle information from the bundles' property lists.
class PropertyListBundles final : public BundleInformation {
public:
    [[nodiscard]] std::optional<QString> bundleIdentifier(const QString& bundlePath) const override;
};

} // namespace amberquill::desktop
