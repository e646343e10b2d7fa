#pragma once

#include <QByteArray>
#include <functional>
#include <optional>

namespace amberquill::desktop {

// Looks an environment variable up: none where it is not set.
using Environment = std::function<std::optional<QByteArray>(const char* name)>;

// The environment this program runs in.
[[nodiscard]] Environment processEnvironment();

} // namespace amberquill::desktop
