#pragma once

#include "updates/updater/Signature.h"

#include <QString>
#include <QUrl>
#include <optional>

namespace amberquill {

class MainBundle;

// What the launcher's own bundle says that concerns updates.
struct BundleKeys {
    QString version;                    // what versions are compared with; as shown where it has no other
    QString shownVersion;               // what people are shown; "0" where it says none
    std::optional<QUrl> feedAddress;    // none: not there, or no absolute URL
    std::optional<PublicKey> publicKey; // none: not there, or no key
};

[[nodiscard]] BundleKeys readBundleKeys(const MainBundle& bundle);

} // namespace amberquill
