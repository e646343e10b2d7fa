#include "platform/linux/applications/icons/lookup/IconThemeCache.h"

#include <algorithm>
#include <array>
#include <fcntl.h>
#include <span>
#include <sys/stat.h>
#include <unistd.h>

namespace amberquill::desktop {

namespace {

constexpr std::uint32_t maximumCachedDirectories = 4096;
constexpr std::uint32_t maximumImages = 1024;
constexpr int maximumChain = 1024;
constexpr std::size_t maximumCachedName = 255;
constexpr std::uint32_t none = 0xFFFFFFFFU;

// The flags of an image in the file.
constexpr std::uint32_t hasXpm = 1;
constexpr std::uint32_t hasSvg = 2;
constexpr std::uint32_t hasPng = 4;

bool readAt(int file, std::uint32_t offset, std::span<unsigned char> to) {
    return ::pread(file, to.data(), to.size(), offset) == static_cast<ssize_t>(to.size());
}

std::uint32_t wordAt(std::span<const unsigned char> bytes, std::size_t offset) {
    return (std::uint32_t{bytes[offset]} << 24U) | (std::uint32_t{bytes[offset + 1]} << 16U) |
           (std::uint32_t{bytes[offset + 2]} << 8U) | std::uint32_t{bytes[offset + 3]};
}

std::optional<std::uint32_t> readWord(int file, std::uint32_t offset) {
    std::array<unsigned char, 4> bytes{};
    if (!readAt(file, offset, bytes)) {
        return std::nullopt;
    }
    return wordAt(bytes, 0);
}

// The NUL-terminated text at `offset`. None: longer than a file name.
std::optional<std::string> readText(int file, std::uint32_t offset) {
    std::array<char, maximumCachedName + 1> bytes{};
    const ssize_t got = ::pread(file, bytes.data(), bytes.size(), offset);
    if (got <= 0) {
        return std::nullopt;
    }
    const std::string_view text(bytes.data(), static_cast<std::size_t>(got));
    const auto end = text.find('\0');
    if (end == std::string_view::npos) {
        return std::nullopt;
    }
    return std::string(text.substr(0, end));
}

// The hash function of the file format. Characters count as signed.
std::uint32_t hashOf(std::string_view name) {
    std::uint32_t hash = 0;
    for (const char character : name) {
        hash = (hash << 5U) - hash + static_cast<std::uint32_t>(static_cast<signed char>(character));
    }
    return hash;
}

} // namespace

std::optional<IconThemeCache> IconThemeCache::open(int themeFolder) {
    IconThemeCache cache;
    cache.file_ = FileDescriptor(
        ::openat(themeFolder, "icon-theme.cache", O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC));
    struct stat status = {};
    if (!cache.file_.isOpen() || ::fstat(cache.file_.get(), &status) != 0 || !S_ISREG(status.st_mode)) {
        return std::nullopt;
    }
    cache.modified_ = status.st_mtim;
    std::array<unsigned char, 12> header{}; // version 1.0, the hash table's offset, the directories' offset
    if (!readAt(cache.file_.get(), 0, header) || wordAt(header, 0) != 0x00010000U) {
        return std::nullopt;
    }
    cache.hash_ = wordAt(header, 4);
    const auto buckets = readWord(cache.file_.get(), cache.hash_);
    if (!buckets || *buckets == 0 || !cache.readDirectories(wordAt(header, 8))) {
        return std::nullopt;
    }
    cache.buckets_ = *buckets;
    return cache;
}

bool IconThemeCache::readDirectories(std::uint32_t offset) {
    const auto count = readWord(file_.get(), offset);
    if (!count || *count > maximumCachedDirectories) {
        return false;
    }
    std::vector<unsigned char> offsets(std::size_t{*count} * 4);
    if (!readAt(file_.get(), offset + 4, offsets)) {
        return false;
    }
    directories_.reserve(*count);
    for (std::size_t i = 0; i < *count; ++i) {
        auto path = readText(file_.get(), wordAt(offsets, i * 4));
        if (!path) {
            return false;
        }
        directories_.push_back(*std::move(path));
    }
    return true;
}

std::vector<IconThemeCache::Image> IconThemeCache::find(std::string_view name) const {
    const auto bucket = hash_ + 4 + 4 * (hashOf(name) % buckets_);
    auto entry = readWord(file_.get(), bucket);
    for (int steps = 0; entry && *entry != none && steps < maximumChain; ++steps) {
        std::array<unsigned char, 12> icon{}; // the next one's offset, the name's, the images'
        if (!readAt(file_.get(), *entry, icon)) {
            break;
        }
        if (readText(file_.get(), wordAt(icon, 4)) != name) {
            entry = wordAt(icon, 0);
            continue;
        }
        const auto list = wordAt(icon, 8);
        const auto count = std::min(readWord(file_.get(), list).value_or(0), maximumImages);
        std::vector<unsigned char> bytes(std::size_t{count} * 8);
        if (!readAt(file_.get(), list + 4, bytes)) {
            break;
        }
        std::vector<Image> images;
        images.reserve(count);
        for (std::size_t i = 0; i < count; ++i) {
            const auto word = wordAt(bytes, i * 8);
            Image image{.directory = word >> 16U, .extensions = {}};
            if ((word & hasPng) != 0) {
                image.extensions.insert(IconExtension::Png);
            }
            if ((word & hasSvg) != 0) {
                image.extensions.insert(IconExtension::Svg);
            }
            if ((word & hasXpm) != 0) {
                image.extensions.insert(IconExtension::Xpm);
            }
            if (image.directory < directories_.size()) {
                images.push_back(image);
            }
        }
        return images;
    }
    return {};
}

} // namespace amberquill::desktop
