// A dconf database of any bytes: looking up a text ends and gives a text of limited length.
#include "Require.h"
#include "platform/linux/settings/DconfDatabase.h"

#include <cstdint>

using namespace amberquill::desktop;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    const auto text = dconfText(bytes, "/org/gnome/desktop/interface/icon-theme");
    require(!text || text->size() <= 1024);
    return 0;
}
