#pragma once

#include "platform/linux/applications/icons/IconFolder.h"
#include "platform/linux/files/FileDescriptor.h"

#include <cstdint>
#include <ctime>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace amberquill::desktop {

// The icon-theme.cache that desktops keep beside a theme's index.theme (format 1.0): a hash table on the disk
// from an icon's name to the directories that have it. One answer costs a handful of small reads, where a
// large theme's folders hold a hundred thousand names. The file is read, not mapped: one that shrinks while
// it is in use must not end the process, and what its offsets say is not believed.
class IconThemeCache {
public:
    struct Image {
        std::size_t directory = 0; // in `directories`
        IconEndings endings;       // compressed SVG is not recorded by such caches
    };

    // The cache in an open theme folder. None: there is none, or it is not one.
    [[nodiscard]] static std::optional<IconThemeCache> open(int themeFolder);

    // When it was written: says nothing about a directory that was changed later.
    [[nodiscard]] timespec modified() const { return modified_; }

    // The directories it knows, as paths below the theme's folder.
    [[nodiscard]] const std::vector<std::string>& directories() const { return directories_; }

    [[nodiscard]] std::vector<Image> find(std::string_view name) const;

private:
    IconThemeCache() = default;

    [[nodiscard]] bool readDirectories(std::uint32_t offset);

    FileDescriptor file_;
    timespec modified_ = {};
    std::uint32_t hash_ = 0;
    std::uint32_t buckets_ = 0;
    std::vector<std::string> directories_;
};

} // namespace amberquill::desktop
