#include "platform/linux/applications/icons/lookup/IconThemeFolder.h"

#include "platform/linux/files/FolderReader.h"
#include "platform/linux/files/RegularFile.h"

#include <algorithm>
#include <fcntl.h>
#include <sys/stat.h>
#include <tuple>

namespace amberquill::desktop {

namespace {

constexpr std::size_t maximumThemeFolderNames = 4096;
constexpr qsizetype maximumIndexBytes = qsizetype{1024} * 1024;

bool isNewer(const timespec& one, const timespec& other) {
    return std::tie(one.tv_sec, one.tv_nsec) > std::tie(other.tv_sec, other.tv_nsec);
}

// Compressed SVG is in use only among programs' own drawings. Cache files do not record it.
bool mayHoldCompressedDrawings(std::string_view path) {
    return path == "scalable/apps";
}

} // namespace

std::optional<IconThemeFolder> IconThemeFolder::open(const std::string& folder) {
    IconThemeFolder result;
    result.folder_ = folder;
    FolderReader reader(openFolder(AT_FDCWD, folder.c_str()));
    if (!reader.isOpen()) {
        return std::nullopt;
    }
    while (const auto child = reader.next()) {
        const auto type = reader.typeOf(*child);
        if ((type == DT_DIR || type == DT_LNK) && result.names_.size() < maximumThemeFolderNames) {
            result.names_.emplace(child->nameView());
        }
    }
    result.descriptor_ = FileDescriptor(::fcntl(reader.descriptor(), F_DUPFD_CLOEXEC, 0));
    result.cache_ = IconThemeCache::open(result.descriptor_.get());
    return result;
}

std::optional<IconThemeIndex> IconThemeFolder::readIndex() const {
    QByteArray buffer;
    const auto content = readRegularFile(descriptor_.get(), "index.theme", maximumIndexBytes, buffer);
    if (!content) {
        return std::nullopt;
    }
    return parseIconThemeIndex({content->data(), static_cast<std::size_t>(content->size())});
}

void IconThemeFolder::attach(const std::vector<IconDirectory>& directories) {
    std::unordered_map<std::string_view, std::size_t> cached;
    if (cache_) {
        for (std::size_t i = 0; i < cache_->directories().size(); ++i) {
            cached.emplace(cache_->directories()[i], i);
        }
        cacheDirectories_.assign(cache_->directories().size(), notFound);
    }
    directories_.resize(directories.size());
    std::string top;
    for (std::size_t i = 0; i < directories.size(); ++i) {
        auto& directory = directories_[i];
        directory.path = directories[i].path;
        top.assign(directory.path, 0, directory.path.find('/'));
        if (!names_.contains(top)) {
            continue;
        }
        directory.source = Source::Unopened;
        struct stat status = {};
        if (cache_ && !mayHoldCompressedDrawings(directory.path)) {
            if (::fstatat(descriptor_.get(), directory.path.c_str(), &status, 0) != 0) {
                directory.source = Source::Absent;
            } else if (!isNewer(status.st_mtim, cache_->modified())) {
                directory.source = Source::Cache;
                if (const auto found = cached.find(directory.path); found != cached.end()) {
                    cacheDirectories_[found->second] = i;
                }
            }
        }
        hasUncached_ = hasUncached_ || directory.source == Source::Unopened;
    }
}

std::vector<IconThemeCache::Image> IconThemeFolder::cachedImages(std::string_view name) const {
    if (!cache_) {
        return {};
    }
    auto images = cache_->find(name);
    for (auto& image : images) {
        image.directory = cacheDirectories_[image.directory];
    }
    std::erase_if(images, [](const auto& image) { return image.directory == notFound; });
    return images;
}

std::size_t IconThemeFolder::search(std::string_view name, const std::vector<IconThemeCache::Image>& cached,
                                    const IconOrder& order, std::size_t begin, std::size_t end) {
    auto best = end;
    const auto consider = [&](std::size_t position) {
        if (position >= begin) {
            best = std::min(best, position);
        }
    };
    for (const auto& image : cached) {
        for (std::size_t kind = 0; kind < iconKinds.size(); ++kind) {
            if (!image.extensions.intersected(iconKinds.at(kind)).isEmpty()) {
                consider(order.position(image.directory, kind));
            }
        }
    }
    for (auto position = begin; hasUncached_ && position < best; ++position) {
        const auto& candidate = order.candidates()[position];
        const auto source = directories_[candidate.directory].source;
        if ((source == Source::Unopened || source == Source::Folder) &&
            !extensions(candidate.directory, name, cached).intersected(candidate.extensions).isEmpty()) {
            best = position;
        }
    }
    return best == end ? notFound : best;
}

std::string IconThemeFolder::file(std::string_view name, const std::vector<IconThemeCache::Image>& cached,
                                  const IconOrder::Candidate& candidate) {
    const auto found = extensions(candidate.directory, name, cached).intersected(candidate.extensions);
    std::string path = folder_;
    path.append("/").append(directories_[candidate.directory].path).append("/");
    return path.append(name).append(extensionText(found.first()));
}

IconExtensions IconThemeFolder::extensions(std::size_t index, std::string_view name,
                                           const std::vector<IconThemeCache::Image>& cached) {
    auto& directory = directories_[index];
    if (directory.source == Source::Unopened) {
        open(directory);
    }
    if (directory.source == Source::Folder) {
        return directory.icons->extensions(name);
    }
    const auto found = std::find_if(cached.begin(), cached.end(),
                                    [index](const auto& image) { return image.directory == index; });
    return found == cached.end() ? IconExtensions() : found->extensions;
}

void IconThemeFolder::open(Directory& directory) {
    struct stat status = {};
    if (::fstatat(descriptor_.get(), directory.path.c_str(), &status, 0) != 0 || !S_ISDIR(status.st_mode)) {
        directory.source = Source::Absent;
        return;
    }
    auto& opened = opened_[{status.st_dev, status.st_ino}];
    if (!opened) {
        opened = std::make_shared<IconFolder>(folder_ + '/' + directory.path, status.st_size);
    }
    directory.icons = opened;
    directory.source = Source::Folder;
}

} // namespace amberquill::desktop
