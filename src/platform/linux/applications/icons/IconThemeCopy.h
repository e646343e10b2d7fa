#pragma once

#include "platform/linux/applications/icons/IconOrder.h"
#include "platform/linux/applications/icons/IconThemeCache.h"

#include <limits>
#include <map>
#include <memory>
#include <unordered_set>

namespace amberquill::desktop {

// One copy of a theme: the folder of the theme's name in one of the base folders. Its directories are looked
// up in the cache file beside them where that is at least as new as they are, and are read themselves,
// when they are needed, where it is not. Not safe on several threads at once: a search fills in what it
// learned.
class IconThemeCopy {
public:
    static constexpr std::size_t nowhere = std::numeric_limits<std::size_t>::max();

    // None: there is no such folder.
    [[nodiscard]] static std::optional<IconThemeCopy> open(const std::string& folder);

    // Without a trailing slash.
    [[nodiscard]] const std::string& folder() const { return folder_; }

    // The copy's own index.theme, if it has one that can be read.
    [[nodiscard]] std::optional<IconThemeIndex> readIndex() const;

    // The names that stand directly in the folder, plain files left out.
    [[nodiscard]] const std::unordered_set<std::string>& names() const { return names_; }

    // Finds out which of the theme's directories this copy has. Called once, before any search.
    void attach(const std::vector<IconDirectory>& directories);

    // The first place in `order`, from `begin` and before `end`, at which this copy has the icon; else
    // `nowhere`. `cached`: what `cachedImages` answered for the name.
    [[nodiscard]] std::size_t search(std::string_view name, const std::vector<IconThemeCache::Image>& cached,
                                     const IconOrder& order, std::size_t begin, std::size_t end);
    [[nodiscard]] std::vector<IconThemeCache::Image> cachedImages(std::string_view name) const;

    // The file of the icon that a search found in `place`.
    [[nodiscard]] std::string file(std::string_view name, const std::vector<IconThemeCache::Image>& cached,
                                   const IconOrder::Place& place);

private:
    enum class Source : std::uint8_t { Absent, Cache, Unopened, Folder };
    struct Directory {
        std::string path; // below `folder_`
        Source source = Source::Absent;
        std::shared_ptr<IconFolder> icons; // where `source` is the folder
    };

    IconThemeCopy() = default;
    [[nodiscard]] IconEndings endings(std::size_t index, std::string_view name,
                                      const std::vector<IconThemeCache::Image>& cached);
    void open(Directory& directory);

    std::string folder_;
    FileDescriptor descriptor_;
    std::unordered_set<std::string> names_;
    std::optional<IconThemeCache> cache_;
    std::vector<std::size_t> cacheDirectories_; // the theme's directory for each one of the cache's
    std::vector<Directory> directories_;        // as in the theme
    bool hasUncached_ = false;
    // Themes often have one folder under two names, by a symbolic link.
    std::map<std::pair<dev_t, ino_t>, std::shared_ptr<IconFolder>> opened_;
};

} // namespace amberquill::desktop
