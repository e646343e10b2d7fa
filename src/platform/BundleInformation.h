#pragma once

#include <QString>
#include <optional>

namespace amberquill {

// What an application bundle (a `*.app` folder) says of itself. Safe on any thread.
class BundleInformation {
public:
    BundleInformation() = default;
    BundleInformation(const BundleInformation&) = delete;
    BundleInformation& operator=(const BundleInformation&) = delete;
    virtual ~BundleInformation() = default;

    // The bundle's identifier, or none: not a bundle, no property list, an unreadable one, or no identifier
    // in it.
    [[nodiscard]] virtual std::optional<QString> bundleIdentifier(const QString& bundlePath) const = 0;
};

class NullBundleInformation final : public BundleInformation {
public:
    [[nodiscard]] std::optional<QString> bundleIdentifier(const QString&) const override {
        return std::nullopt;
    }
};

} // namespace amberquill
