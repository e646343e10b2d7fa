#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace amberquill::desktop {

// The text that a dconf database holds under a key such as "/org/gnome/desktop/interface/icon-theme". None:
// it does not hold one, or `database` (the whole file) is not such a database. Reading the file takes a
// fiftieth of the time that asking through the settings service does.
[[nodiscard]] std::optional<std::string> dconfText(std::string_view database, std::string_view key);

// The same for a boolean.
[[nodiscard]] std::optional<bool> dconfBoolean(std::string_view database, std::string_view key);

} // namespace amberquill::desktop
