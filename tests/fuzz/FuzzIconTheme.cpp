// index.theme of any bytes: the reader ends and keeps the contract of its header.
#include "Require.h"
#include "platform/linux/applications/icons/lookup/IconOrder.h"
#include "platform/linux/applications/icons/lookup/IconThemeIndex.h"

#include <cstdint>
#include <set>

using namespace amberquill::desktop;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const auto index = parseIconThemeIndex({reinterpret_cast<const char*>(data), size});
    if (!index) {
        return 0;
    }
    require(index->directories.size() <= 4096 && index->inherits.size() <= 64);
    std::set<std::string> paths;
    for (const auto& directory : index->directories) {
        require(paths.insert(directory.path).second);
        require(!directory.path.empty() && directory.path.front() != '/' && !directory.path.ends_with('/'));
        require(('/' + directory.path).find("/.") == std::string::npos);
        require(directory.size >= 1 && directory.scale >= 1 && directory.minimumSize >= 1);
        require(directory.size <= 4096 && directory.scale <= 16 && directory.maximumSize <= 4096);
    }
    for (const auto& name : index->inherits) {
        require(isIconThemeName(name));
    }
    constexpr int edge = 96;
    const IconOrder order(index->directories, edge);
    require(order.candidates().size() == index->directories.size() * iconKinds.size());
    for (std::size_t i = 0; i < index->directories.size(); ++i) {
        for (std::size_t kind = 0; kind < iconKinds.size(); ++kind) {
            require(order.candidates()[order.position(i, kind)].directory == i);
        }
    }
    return 0;
}
