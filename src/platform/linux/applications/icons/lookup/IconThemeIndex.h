#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace amberquill::desktop {

// One directory of icons in a theme, as the index.theme describes it. Sizes are in logical pixels: an icon
// here is drawn for size × scale device pixels.
struct IconDirectory {
    enum class Type { Fixed, Scalable, Threshold };

    std::string path; // below the theme's folder, such as "48x48/apps"
    Type type = Type::Threshold;
    int size = 0;
    int scale = 1;
    int minimumSize = 0;
    int maximumSize = 0;
    int threshold = 2;
    std::string context; // such as "Applications"; may be empty

    bool operator==(const IconDirectory&) const = default;
};

struct IconThemeIndex {
    std::vector<IconDirectory> directories; // in the theme's order
    std::vector<std::string> inherits;      // names of parent themes, most wanted first
};

// Reads an index.theme of the freedesktop icon theme standard. None: no [Icon Theme] group, or larger than a
// mebibyte. Directories with an invalid size, or a path that leads out of the theme, are left out.
[[nodiscard]] std::optional<IconThemeIndex> parseIconThemeIndex(std::string_view content);

// Whether the name is one plain folder name, as theme names must be.
[[nodiscard]] bool isIconThemeName(std::string_view name);

} // namespace amberquill::desktop
