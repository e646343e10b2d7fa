// Property lists of any bytes: the guard and the library do not crash and keep the contract of the header.
#include "platform/linux/applications/bundles/BundlePropertyList.h"
#include "platform/linux/applications/bundles/PropertyListGuard.h"

#include <cstdint>
#include <cstdlib>

using namespace amberquill::desktop;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const QByteArrayView bytes(data, static_cast<qsizetype>(size));
    const auto list = parseBundlePropertyList(bytes);
    const bool isRefused = !isSafePropertyList(bytes);
    const bool leadsOut =
        list && (list->executable.contains(QLatin1Char('/')) || list->iconFile.contains(QLatin1Char('/')));
    if ((list && isRefused) || leadsOut) {
        std::abort();
    }
    return 0;
}
