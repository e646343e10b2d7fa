#include "platform/linux/dbus/BusSocketFolder.h"

#include <QFile>

namespace amberquill::desktop {

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
