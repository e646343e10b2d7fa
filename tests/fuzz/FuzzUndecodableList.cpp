// The list of undecodable files, with lines of any bytes: the read entries are written and read back
// unchanged.
#include "Require.h"
#include "platform/linux/applications/icons/UndecodableFiles.h"

#include <cstdint>

using namespace amberquill::desktop;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const QByteArrayView bytes(data, static_cast<qsizetype>(size));
    const auto list = UndecodableList::read(UndecodableList().written("1") + bytes.toByteArray(), "1");
    require(UndecodableList::read(list.written("1"), "1").written("1") == list.written("1"));
    return 0;
}
