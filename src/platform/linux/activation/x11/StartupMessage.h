#pragma once

#include "platform/linux/applications/launching/StartupNotifications.h"

#include <QByteArray>
#include <QString>
#include <array>
#include <cstdint>
#include <vector>

// Message texts of the Startup Notification Protocol.
namespace amberquill::desktop {

// The parts of a startup id that is unique among all starts on all machines. `time`: when the user asked for
// the start, in the X server's milliseconds.
struct StartupIdParts {
    QString host;
    qint64 process = 0; // the launcher's
    int start = 0;      // counts the launcher's starts
    QString application;
    quint32 time = 0;
};
[[nodiscard]] QString startupId(const StartupIdParts& parts);

// The messages "new: ..." and "remove: ...".
[[nodiscard]] QByteArray startupBeginning(const StartupNotice& notice, int screen);
[[nodiscard]] QByteArray startupEnd(const QString& id);

// A message with its terminating NUL, cut into the pieces that single events carry.
using StartupChunk = std::array<std::uint8_t, 20>;
[[nodiscard]] std::vector<StartupChunk> startupChunks(const QByteArray& message);

} // namespace amberquill::desktop
