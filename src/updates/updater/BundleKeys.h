#pragma once

#include "updates/updater/Signature.h"

#include <QString>
#include <QUrl>
#include <optional>

namespace amberquill {

class MainBundle;

// The keys of the program's own bundle that concern updates.
struct BundleKeys {
    QString version;                    // to compare with others; the shown one if there is no other
    QString shownVersion;               // "0" if there is none
    std::optional<QUrl> feedAddress;    // none: missing, or not an absolute URL
    std::optional<PublicKey> publicKey; // none: missing, or invalid
};

[[nodiscard]] BundleKeys readBundleKeys(const MainBundle& bundle);

} // namespace amberquill
