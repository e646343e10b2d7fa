#include "data/LayoutCoding.h"

#include <cstdint>
#include <cstdlib>

using namespace amberquill;

// Any bytes are either no layout or one that is written and read back unchanged.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const QByteArray text(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
    const auto decoded = decodeItems(text);
    if (const auto* items = std::get_if<LaunchItems>(&decoded)) {
        const auto again = decodeItems(encodeItems(*items));
        if (!std::holds_alternative<LaunchItems>(again) || std::get<LaunchItems>(again) != *items) {
            std::abort();
        }
    }
    return 0;
}
