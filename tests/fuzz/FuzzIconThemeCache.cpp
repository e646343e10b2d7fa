// icon-theme.cache of any bytes: opening and searching it end and keep the contract of its header.
#include "Require.h"
#include "platform/linux/applications/icons/lookup/IconThemeCache.h"

#include <array>
#include <cstdint>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace amberquill::desktop;

namespace {

// A temporary folder with the cache file.
class CacheFolder {
public:
    CacheFolder() {
        require(::mkdtemp(path_.data()) != nullptr);
        folder_ = FileDescriptor(::open(path_.data(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
        cache_ = FileDescriptor(::openat(folder_.get(), name, O_RDWR | O_CREAT | O_CLOEXEC, 0600));
        require(folder_.isOpen() && cache_.isOpen());
    }
    CacheFolder(const CacheFolder&) = delete;
    CacheFolder& operator=(const CacheFolder&) = delete;
    ~CacheFolder() {
        ::unlinkat(folder_.get(), name, 0);
        ::rmdir(path_.data());
    }

    int write(const std::uint8_t* data, std::size_t size) const {
        require(::ftruncate(cache_.get(), 0) == 0);
        require(::pwrite(cache_.get(), data, size, 0) == static_cast<ssize_t>(size));
        return folder_.get();
    }

private:
    static constexpr const char* name = "icon-theme.cache";

    std::array<char, 64> path_{"/tmp/amberquill-fuzz-XXXXXX"};
    FileDescriptor folder_;
    FileDescriptor cache_;
};

void requireGoodAnswer(const IconThemeCache& cache, std::string_view name) {
    const auto images = cache.find(name);
    require(images.size() <= 1024);
    for (const auto& image : images) {
        require(image.directory < cache.directories().size());
        require(!image.extensions.contains(IconExtension::Svgz));
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const CacheFolder folder;
    const auto cache = IconThemeCache::open(folder.write(data, size));
    if (!cache) {
        return 0;
    }
    require(cache->directories().size() <= 4096);
    for (const auto& directory : cache->directories()) {
        require(directory.size() <= 255 && directory.find('\0') == std::string::npos);
    }
    for (const std::string_view name : {"firefox", "text-editor", "a", "", "missing"}) {
        requireGoodAnswer(*cache, name);
    }
    if (!cache->directories().empty()) {
        requireGoodAnswer(*cache, cache->directories().front());
    }
    return 0;
}
