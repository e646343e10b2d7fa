#pragma once

#include "platform/BundleInformation.h"
#include "platform/RegisteredApplications.h"

#include <QHash>

namespace amberquill {

// Bundles whose identifiers are what a test says.
class FixedBundles final : public BundleInformation {
public:
    void setIdentifier(const QString& path, const QString& identifier) {
        identifiers_.insert(path, identifier);
    }

    [[nodiscard]] std::optional<QString> bundleIdentifier(const QString& bundlePath) const override {
        const auto found = identifiers_.constFind(bundlePath);
        return found == identifiers_.constEnd() ? std::nullopt : std::optional(*found);
    }

private:
    QHash<QString, QString> identifiers_;
};

// A desktop whose registered applications are what a test says.
class FixedApplications final : public RegisteredApplications {
public:
    std::vector<RegisteredApplication> applications;
    ScannedFolders folders; // that the list tells of

    using RegisteredApplications::list;

    [[nodiscard]] std::vector<RegisteredApplication> list(ScannedFolders& scanned) const override {
        scanned.roots += folders.roots;
        scanned.missing += folders.missing;
        scanned.unreadable += folders.unreadable;
        return applications;
    }
    [[nodiscard]] QStringList watchedFolders() const override { return {}; }
};

} // namespace amberquill
