#include "platform/linux/applications/icons/IconTheme.h"

#include <charconv>

namespace amberquill::desktop {

namespace {

constexpr std::size_t rememberedEdges = 8;
constexpr std::size_t maximumThemeDirectories = 16'384; // of all copies of one theme
// What indexes, caches and links promise and is not there is passed over this often.
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

// What a folder named "scalable", "48x48" or "48x48@2" holds below "apps"; none for any other name.
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
        auto copy = IconThemeCopy::open(base + '/' + std::string(name));
        if (!copy) {
            continue;
        }
        if (auto index = copy->readIndex()) {
            for (auto& directory : index->directories) {
                add(std::move(directory));
            }
            if (!hasIndex) {
                inherits_ = std::move(index->inherits);
                hasIndex = true;
            }
        }
        copies_.push_back(*std::move(copy));
    }
    if (name == "hicolor") {
        for (const auto& copy : copies_) {
            for (const auto& folder : copy.names()) {
                if (auto directory = directoryByName(folder)) {
                    add(*std::move(directory));
                }
            }
        }
    }
    for (auto& copy : copies_) {
        copy.attach(directories_);
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
    cached.reserve(copies_.size());
    for (const auto& copy : copies_) {
        cached.push_back(copy.cachedImages(name));
    }
    // From place to place, and at one place from the most wanted base folder's copy to the next.
    std::size_t position = 0;
    std::size_t firstCopy = 0;
    for (int missing = 0; missing < maximumMissingFiles;) {
        auto found = order.places().size();
        auto foundIn = copies_.size();
        for (std::size_t i = 0; i < copies_.size(); ++i) {
            const auto begin = i < firstCopy ? position + 1 : position;
            const auto place = copies_[i].search(name, cached[i], order, begin, found);
            if (place != IconThemeCopy::nowhere) {
                found = place;
                foundIn = i;
            }
        }
        if (foundIn == copies_.size()) {
            return std::nullopt;
        }
        position = found;
        firstCopy = foundIn + 1;
        auto file = copies_[foundIn].file(name, cached[foundIn], order.places()[found]);
        // Links that lead nowhere are common where exported icons were removed.
        if (!isRegularFile(file)) {
            ++missing;
        } else if (skip-- == 0) {
            return file;
        }
    }
    return std::nullopt;
}

} // namespace amberquill::desktop
