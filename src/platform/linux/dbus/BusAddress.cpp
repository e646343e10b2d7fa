#include "platform/linux/dbus/BusAddress.h"

#include <QFile>
#include <QtGlobal>
#include <sys/stat.h>

namespace amberquill::desktop {

std::optional<QByteArray> sessionBusAddress(const Environment& environment) {
    if (auto address = environment("DBUS_SESSION_BUS_ADDRESS"); address && !address->isEmpty()) {
        return address;
    }
    const auto runtimeFolder = environment("XDG_RUNTIME_DIR");
    if (!runtimeFolder || !runtimeFolder->startsWith('/')) {
        return std::nullopt;
    }
    const QByteArray socket = *runtimeFolder + "/bus";
    struct stat status = {};
    if (::stat(socket.constData(), &status) != 0 || !S_ISSOCK(status.st_mode)) {
        return std::nullopt;
    }
    // D-Bus addresses percent-encode all other characters.
    return "unix:path=" + socket.toPercentEncoding("/*\\", "~");
}

void doNotLaunchSessionBus(const Environment& environment) {
    if (!sessionBusAddress(environment)) {
        // Without any address, the reference library launches a bus.
        disableSessionBus();
    }
}

void disableSessionBus() {
    // An invalid address: every connection to it fails.
    qputenv("DBUS_SESSION_BUS_ADDRESS", "disabled:");
}

QString busSocketFolder(const QByteArray& address) {
    const QByteArray transport = "unix:";
    const QByteArray path = "path=";
    const QByteArray first = address.split(';').front();
    if (!first.startsWith(transport)) {
        return {};
    }
    for (const QByteArray& pair : first.mid(transport.size()).split(',')) {
        if (pair.startsWith(path)) {
            const QByteArray socket = QByteArray::fromPercentEncoding(pair.mid(path.size()));
            return socket.startsWith('/') ? QFile::decodeName(socket.left(socket.lastIndexOf('/') + 1))
                                          : QString();
        }
    }
    return {};
}

} // namespace amberquill::desktop
