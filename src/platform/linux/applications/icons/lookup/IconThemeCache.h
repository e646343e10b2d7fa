#pragma once

#include "platform/linux/applications/icons/lookup/IconFolder.h"
#include "platform/linux/files/FileDescriptor.h"

#include <cstdint>
#include <ctime>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace amberquill::desktop {

// The icon-theme.cache beside a theme's index.theme (format 1.0): a hash table from icon names to the
// directories that have them. A lookup takes a few small reads, while a large theme has a hundred thousand
// names. The file is read, not mapped: a mapped file that shrinks would crash the process. Offsets are
// checked by reading: one that leads out of the file reads nothing.
class IconThemeCache {
public:
    struct Image {
        std::size_t directory = 0; // index in `directories`
        IconExtensions extensions; // never Svgz: cache files do not record it
    };

    // The cache in an open theme folder. None: missing or invalid.
    [[nodiscard]] static std::optional<IconThemeCache> open(int themeFolder);

    // When it was written. The cache is out of date for directories that changed later.
    [[nodiscard]] timespec modified() const { return modified_; }

    // The directories it covers, as paths below the theme's folder.
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
