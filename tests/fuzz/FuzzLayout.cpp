#include "Require.h"
#include "data/LayoutCoding.h"

#include <cstdint>

using namespace amberquill;

// Layouts of any bytes: each is refused, or is written and read back unchanged.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const QByteArray text(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
    const auto decoded = decodeItems(text);
    if (const auto* items = std::get_if<LaunchItems>(&decoded)) {
        const auto again = decodeItems(encodeItems(*items));
        require(std::holds_alternative<LaunchItems>(again) && std::get<LaunchItems>(again) == *items);
    }
    return 0;
}
