#pragma once

#include <QString>
#include <optional>

namespace amberquill::desktop {

// The X server's time (milliseconds) of the user's click or key that a startup notification id ends in,
// "..._TIME1234", or none. By the Startup Notification Protocol.
[[nodiscard]] std::optional<quint32> startupTime(const QString& startupId);

} // namespace amberquill::desktop
