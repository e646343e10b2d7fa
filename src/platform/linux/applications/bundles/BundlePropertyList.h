#pragma once

#include <QByteArrayView>
#include <QHash>
#include <QString>
#include <optional>

namespace amberquill::desktop {

// What an application bundle's information property list says, as far as the launcher asks.
struct BundlePropertyList {
    QString folder;       // the bundle's absolute path, as it was asked for, without a trailing slash
    bool gnustep = false; // Resources/Info-gnustep.plist; the executable stands in `folder` itself
    QString identifier;   // CFBundleIdentifier; empty: none
    QString executable;   // CFBundleExecutable or NSExecutable: a bare file name; empty: none
    QString iconFile; // CFBundleIconFile or NSIcon: a bare file name, often without an ending; empty: none

    bool operator==(const BundlePropertyList&) const = default;
};

// Reads `Contents/Info.plist` of the bundle or, where that cannot be read, `Resources/Info-gnustep.plist`;
// both as XML or binary property lists. None: not a bundle, or a list that is too large, nested too deep or
// broken. A value of another type than text, and a file name that has a slash in it, counts as not there. Any
// thread.
[[nodiscard]] std::optional<BundlePropertyList> readBundlePropertyList(const QString& bundlePath);

// The same of the list's bytes; `folder` stays empty and `gnustep` false.
[[nodiscard]] std::optional<BundlePropertyList> parseBundlePropertyList(QByteArrayView bytes);

// Everything in a list's bytes that is text, by its key. None: as above.
[[nodiscard]] std::optional<QHash<QString, QString>> propertyListTexts(QByteArrayView bytes);

} // namespace amberquill::desktop
