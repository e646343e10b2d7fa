// The list of files that ended a process, of any bytes: what is read of it is written and read the same.
#include "platform/linux/applications/icons/DecodingSuspects.h"

#include <cstdint>
#include <cstdlib>

using namespace amberquill::desktop;

namespace {

void require(bool holds) {
    if (!holds) {
        std::abort();
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const QByteArrayView bytes(data, static_cast<qsizetype>(size));
    const auto suspects = DecodingSuspects::read(bytes);
    require(DecodingSuspects::read(suspects.written()).written() == suspects.written());
    return 0;
}
