// icons/: finds the pictures of applications and has them drawn. A name becomes a file by the rules of the
// freedesktop icon theme standard (IconLookup), a file becomes pixels in a process of its own (IconWorkers),
// and a file that ends that process or keeps it busy is not tried again (UndecodableFiles). All of it works
// on any thread and trusts no file.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace amberquill::desktop {

// One folder of icons inside a theme, as the theme's index.theme describes it. Sizes are in logical pixels:
// an icon here is drawn for size × scale device pixels.
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
    std::vector<std::string> inherits;      // names of themes, most wanted first
};

// Reads an index.theme of the freedesktop icon theme standard. None: no [Icon Theme] group, or larger than a
// mebibyte. A directory without a sensible size, or whose path would lead out of the theme, is left out.
[[nodiscard]] std::optional<IconThemeIndex> parseIconThemeIndex(std::string_view content);

// Whether a theme of this name can stand in a folder of themes: one plain folder name.
[[nodiscard]] bool isIconThemeName(std::string_view name);

} // namespace amberquill::desktop
