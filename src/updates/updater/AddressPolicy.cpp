#include "updates/updater/AddressPolicy.h"

#include <QHostAddress>

namespace amberquill {

bool isLoopback(const QUrl& address) {
    const QString host = address.host();
    return host == QLatin1String("localhost") || QHostAddress(host).isLoopback();
}

bool mayFetch(const QUrl& address) {
    if (!address.isValid() || address.host().isEmpty() || !address.userInfo().isEmpty()) {
        return false;
    }
    return address.scheme() == QLatin1String("https") ||
           (address.scheme() == QLatin1String("http") && isLoopback(address));
}

bool mayLeadTo(const QUrl& from, const QUrl& to) {
    return mayFetch(to) && (!isLoopback(to) || isLoopback(from));
}

} // namespace amberquill
