#pragma once

#include <QString>
#include <optional>
#include <string>
#include <string_view>

namespace amberquill::desktop {

// The whole of a settings file. None: missing, not a regular file, unreadable, or over four mebibytes.
[[nodiscard]] std::optional<std::string> settingsContent(const QString& path);

// The value of the first line "key = value" in the group "[group]" of a settings file's text, without the
// space around it. A mark between key and sign, as in "key[$i]", does not matter.
[[nodiscard]] std::optional<std::string_view> settingsValue(std::string_view content, std::string_view group,
                                                            std::string_view key);

} // namespace amberquill::desktop
