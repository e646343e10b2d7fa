#pragma once

#include "platform/linux/applications/icons/IconThemeCopy.h"

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace amberquill::desktop {

// An icon theme by the freedesktop icon theme standard: the folders of its name in all base folders together.
// Not safe on several threads at once.
class IconTheme {
public:
    // `baseFolders`: most wanted first, without trailing slashes. None of them has the theme, or none that
    // has it says what is in it: a theme without icons. The one theme that may lack its index is "hicolor",
    // where programs put their own icons: sizes are read off its folders' names as well.
    IconTheme(std::string_view name, const std::vector<std::string>& baseFolders);

    // The themes to ask next, most wanted first, as the theme says it.
    [[nodiscard]] const std::vector<std::string>& inherits() const { return inherits_; }

    // The regular file that suits `edge` device pixels best (see IconOrder), after `skip` that suit better
    // have been passed over; `skip` is counted down. None: no (more) such icon here.
    [[nodiscard]] std::optional<std::string> find(std::string_view name, int edge, int& skip);

private:
    [[nodiscard]] const IconOrder& orderFor(int edge);

    std::vector<IconThemeCopy> copies_;
    std::vector<IconDirectory> directories_; // of all copies together
    std::vector<std::string> inherits_;
    std::map<int, IconOrder> orders_;
};

} // namespace amberquill::desktop
