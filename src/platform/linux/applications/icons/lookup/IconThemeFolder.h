#pragma once

#include "platform/linux/applications/icons/lookup/IconOrder.h"
#include "platform/linux/applications/icons/lookup/IconThemeCache.h"

#include <limits>
#include <map>
#include <memory>
#include <unordered_set>

namespace amberquill::desktop {

// One folder of a theme: themes may have a folder in each base folder. Its directories are looked up in the
// folder's cache file if the cache is at least as new as the directory; otherwise a directory is read when it
// is first needed. Not thread-safe: a search remembers what it read.
class IconThemeFolder {
public:
    static constexpr std::size_t notFound = std::numeric_limits<std::size_t>::max();

    // None: there is no such folder.
    [[nodiscard]] static std::optional<IconThemeFolder> open(const std::string& folder);

    // Without a trailing slash.
    [[nodiscard]] const std::string& folder() const { return folder_; }

    // The folder's own index.theme. None: missing or unreadable.
    [[nodiscard]] std::optional<IconThemeIndex> readIndex() const;

    // The names in the folder itself, without plain files.
    [[nodiscard]] const std::unordered_set<std::string>& names() const { return names_; }

    // Finds out which of the theme's directories this folder has. Called once, before any search.
    void attach(const std::vector<IconDirectory>& directories);

    // The index of the first candidate in `order`, from `begin` and before `end`, for which this folder has
    // the icon, or `notFound`. `cached`: cachedImages() for the name.
    [[nodiscard]] std::size_t search(std::string_view name, const std::vector<IconThemeCache::Image>& cached,
                                     const IconOrder& order, std::size_t begin, std::size_t end);
    [[nodiscard]] std::vector<IconThemeCache::Image> cachedImages(std::string_view name) const;

    // The file of the icon that a search found for `candidate`.
    [[nodiscard]] std::string file(std::string_view name, const std::vector<IconThemeCache::Image>& cached,
                                   const IconOrder::Candidate& candidate);

private:
    enum class Source : std::uint8_t { Absent, Cache, Unopened, Folder };
    struct Directory {
        std::string path; // below `folder_`
        Source source = Source::Absent;
        std::shared_ptr<IconFolder> icons; // if `source` is Folder
    };

    IconThemeFolder() = default;
    [[nodiscard]] IconExtensions extensions(std::size_t index, std::string_view name,
                                            const std::vector<IconThemeCache::Image>& cached);
    void open(Directory& directory);

    std::string folder_;
    FileDescriptor descriptor_;
    std::unordered_set<std::string> names_;
    std::optional<IconThemeCache> cache_;
    std::vector<std::size_t> cacheDirectories_; // the theme's directory for each one of the cache's
    std::vector<Directory> directories_;        // as in the theme
    bool hasUncached_ = false;
    // Shared, because themes often have one directory under two names, by a symbolic link.
    std::map<std::pair<dev_t, ino_t>, std::shared_ptr<IconFolder>> opened_;
};

} // namespace amberquill::desktop
