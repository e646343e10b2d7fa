#pragma once

#include "platform/linux/applications/launching/StartupNotifications.h"

#include <QByteArray>
#include <QString>
#include <array>
#include <cstdint>
#include <vector>

// The words of the Startup Notification Protocol.
namespace amberquill::desktop {

// An id that no other start on any machine has: by this launcher, for the application of this name, asked for
// by the user at `time` (the X server's, in milliseconds).
struct StartupIdParts {
    QString host;
    qint64 process = 0; // the launcher's
    int start = 0;      // its how-manieth
    QString application;
    quint32 time = 0;
};
[[nodiscard]] QString startupId(const StartupIdParts& parts);

// "new: ..." and "remove: ...", as they are broadcast.
[[nodiscard]] QByteArray startupBeginning(const StartupNotice& notice, int screen);
[[nodiscard]] QByteArray startupEnd(const QString& id);

// A message with its ending null character, cut into what single events carry.
using StartupChunk = std::array<std::uint8_t, 20>;
[[nodiscard]] std::vector<StartupChunk> startupChunks(const QByteArray& message);

} // namespace amberquill::desktop
