#pragma once

#include "platform/linux/applications/icons/lookup/IconThemeFolder.h"

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace amberquill::desktop {

// An icon theme by the freedesktop icon theme standard: the folders of its name in all base folders together.
// Not thread-safe.
class IconTheme {
public:
    // `baseFolders`: most wanted first, without trailing slashes. A theme without a folder or an index has no
    // icons. The exception is "hicolor", where programs put their own icons: sizes are also read off its
    // directories' names.
    IconTheme(std::string_view name, const std::vector<std::string>& baseFolders);

    // The themes that the index names as parents, most wanted first.
    [[nodiscard]] const std::vector<std::string>& inherits() const { return inherits_; }

    // The best regular file for `edge` device pixels (see IconOrder) after `skip` better ones, by which
    // `skip` is counted down. None: no (more) such icon here.
    [[nodiscard]] std::optional<std::string> find(std::string_view name, int edge, int& skip);

private:
    [[nodiscard]] const IconOrder& orderFor(int edge);

    std::vector<IconThemeFolder> folders_;
    std::vector<IconDirectory> directories_; // of all folders together
    std::vector<std::string> inherits_;
    std::map<int, IconOrder> orders_;
};

} // namespace amberquill::desktop
