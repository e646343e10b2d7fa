#include "platform/linux/applications/icons/lookup/IconTheme.h"

#include <charconv>

namespace amberquill::desktop {

namespace {

constexpr std::size_t rememberedEdges = 8;
constexpr std::size_t maximumThemeDirectories = 16'384; // of all folders of one theme
// So many files that an index, a cache or a link names may be missing before a search gives up.
constexpr int maximumMissingFiles = 256;

std::optional<int> takeNumber(std::string_view& text) {
    int value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error != std::errc() || value < 1 || value > 4096) {
        return std::nullopt;
    }
    text.remove_prefix(static_cast<std::size_t>(end - text.data()));
    return value;
}

// The directory "apps" in a folder named "scalable", "48x48" or "48x48@2"; none for any other name.
std::optional<IconDirectory> directoryByName(const std::string& name) {
    IconDirectory directory{.path = name + "/apps", .context = "Applications"};
    if (name == "scalable") {
        directory.type = IconDirectory::Type::Scalable;
        directory.size = 128;
        directory.minimumSize = 1;
        directory.maximumSize = 4096;
        return directory;
    }
    std::string_view rest = name;
    const auto width = takeNumber(rest);
    if (!width || !rest.starts_with('x')) {
        return std::nullopt;
    }
    rest.remove_prefix(1);
    if (takeNumber(rest) != width) {
        return std::nullopt;
    }
    if (rest.starts_with('@')) {
        rest.remove_prefix(1);
        const auto scale = takeNumber(rest);
        if (!scale || *scale > 16) {
            return std::nullopt;
        }
        directory.scale = *scale;
    }
    if (!rest.empty()) {
        return std::nullopt;
    }
    directory.type = IconDirectory::Type::Fixed;
    directory.size = directory.minimumSize = directory.maximumSize = *width;
    return directory;
}

} // namespace

IconTheme::IconTheme(std::string_view name, const std::vector<std::string>& baseFolders) {
    std::unordered_set<std::string> known;
    const auto add = [&](IconDirectory directory) {
        if (directories_.size() < maximumThemeDirectories && known.insert(directory.path).second) {
            directories_.push_back(std::move(directory));
        }
    };
    bool hasIndex = false;
    for (const auto& base : baseFolders) {
        auto folder = IconThemeFolder::open(base + '/' + std::string(name));
        if (!folder) {
            continue;
        }
        if (auto index = folder->readIndex()) {
            for (auto& directory : index->directories) {
                add(std::move(directory));
            }
            if (!hasIndex) {
                inherits_ = std::move(index->inherits);
                hasIndex = true;
            }
        }
        folders_.push_back(*std::move(folder));
    }
    if (name == "hicolor") {
        for (const auto& folder : folders_) {
            for (const auto& subfolder : folder.names()) {
                if (auto directory = directoryByName(subfolder)) {
                    add(*std::move(directory));
                }
            }
        }
    }
    for (auto& folder : folders_) {
        folder.attach(directories_);
    }
}

const IconOrder& IconTheme::orderFor(int edge) {
    if (const auto known = orders_.find(edge); known != orders_.end()) {
        return known->second;
    }
    if (orders_.size() >= rememberedEdges) {
        orders_.clear();
    }
    return orders_.emplace(edge, IconOrder(directories_, edge)).first->second;
}

std::optional<std::string> IconTheme::find(std::string_view name, int edge, int& skip) {
    const auto& order = orderFor(edge);
    std::vector<std::vector<IconThemeCache::Image>> cached;
    cached.reserve(folders_.size());
    for (const auto& folder : folders_) {
        cached.push_back(folder.cachedImages(name));
    }
    // From candidate to candidate, and for each candidate from the most wanted base folder to the next.
    std::size_t position = 0;
    std::size_t firstFolder = 0;
    for (int missing = 0; missing < maximumMissingFiles;) {
        auto found = order.candidates().size();
        auto foundIn = folders_.size();
        for (std::size_t i = 0; i < folders_.size(); ++i) {
            const auto begin = i < firstFolder ? position + 1 : position;
            const auto candidate = folders_[i].search(name, cached[i], order, begin, found);
            if (candidate != IconThemeFolder::notFound) {
                found = candidate;
                foundIn = i;
            }
        }
        if (foundIn == folders_.size()) {
            return std::nullopt;
        }
        position = found;
        firstFolder = foundIn + 1;
        auto file = folders_[foundIn].file(name, cached[foundIn], order.candidates()[found]);
        // Dangling links are common where exported icons were removed.
        if (!isRegularFile(file)) {
            ++missing;
        } else if (skip-- == 0) {
            return file;
        }
    }
    return std::nullopt;
}

} // namespace amberquill::desktop
