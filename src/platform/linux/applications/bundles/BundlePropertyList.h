// applications/bundles/: application bundles (`*.app` folders) and their property lists. Answers a bundle's
// identifier, its executable and its icon's file name, and the values of the launcher's own Info.plist.
//
// - BundlePropertyList reads a bundle's Info.plist, by libplist: begin reading here.
// - PropertyListGuard refuses a list that is too large, too deep or too much unfolded, before libplist sees
//   it.
// - PropertyListMainBundle has the launcher's own values, such as its version and the address of the feed.
//
// A list has at most 1 MiB, 64 levels and 20,000 values. File names from a list are bare names, so that none
// leads out of the bundle. Whatever cannot be read counts as absent; the log category amberquill.bundles
// names each list that was refused. Which folders are bundles, and their order, is decided by the scanner in
// data/.
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
