#pragma once

#include "platform/BundleInformation.h"

#include <QByteArrayView>
#include <QHash>
#include <QString>
#include <optional>

namespace amberquill::desktop {

// The values of an application bundle's Info.plist that the launcher uses.
struct BundlePropertyList {
    QString folder;       // the bundle's absolute path, as it was asked for, without a trailing slash
    bool gnustep = false; // Resources/Info-gnustep.plist; the executable stands in `folder` itself
    QString identifier;   // CFBundleIdentifier; empty: none
    QString executable;   // CFBundleExecutable or NSExecutable: a bare file name; empty: none
    QString iconFile; // CFBundleIconFile or NSIcon: a bare file name, often without extension; empty: none

    bool operator==(const BundlePropertyList&) const = default;
};

// Reads `Contents/Info.plist` of the bundle or, when that cannot be read, `Resources/Info-gnustep.plist`;
// both as XML or binary property lists. None: not a bundle, or a list that is too large, nested too deep or
// broken. A value of another type than text, and a file name with a slash in it, count as absent. Any thread.
[[nodiscard]] std::optional<BundlePropertyList> readBundlePropertyList(const QString& bundlePath);

// The same of the list's bytes; `folder` stays empty and `gnustep` false.
[[nodiscard]] std::optional<BundlePropertyList> parseBundlePropertyList(QByteArrayView bytes);

// All values of a list that are texts, by their keys. None: as above.
[[nodiscard]] std::optional<QHash<QString, QString>> propertyListTexts(QByteArrayView bytes);

// Bundles' identifiers, from their property lists.
class PropertyListBundles final : public BundleInformation {
public:
    [[nodiscard]] std::optional<QString> bundleIdentifier(const QString& bundlePath) const override;
};

} // namespace amberquill::desktop
