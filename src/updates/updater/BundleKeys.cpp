#include "updates/updater/BundleKeys.h"

#include "platform/MainBundle.h"

namespace amberquill {
namespace {

std::optional<QUrl> addressOf(const std::optional<QString>& text) {
    const QUrl address(text.value_or(QString()).trimmed(), QUrl::StrictMode);
    return address.isValid() && !address.isRelative() ? std::optional(address) : std::nullopt;
}

} // namespace

BundleKeys readBundleKeys(const MainBundle& bundle) {
    const QString shown = shownVersion(bundle);
    const auto key = bundle.text(QStringLiteral("SUPublicEDKey"));
    return {
        .version = bundle.text(QStringLiteral("CFBundleVersion")).value_or(shown),
        .shownVersion = shown,
        .feedAddress = addressOf(bundle.text(QStringLiteral("SUFeedURL"))),
        .publicKey = key ? readPublicKey(*key) : std::nullopt,
    };
}

} // namespace amberquill
