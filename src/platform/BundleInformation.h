#pragma once

#include <QString>
#include <optional>

namespace amberquill {

// Information about application bundles (`*.app` folders). Safe on any thread.
class BundleInformation {
public:
    BundleInformation() = default;
    BundleInformation(const BundleInformation&) = delete;
    BundleInformation& operator=(const BundleInformation&) = delete;
    virtual ~BundleInformation() = default;

    // The bundle's identifier. None: not a bundle, or a property list that is missing, unreadable or without
    // an identifier.
    [[nodiscard]] virtual std::optional<QString> bundleIdentifier(const QString& bundlePath) const = 0;
};

} // namespace amberquill
