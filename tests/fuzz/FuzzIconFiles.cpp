// The binary files that icons are looked up and kept in, of any bytes: ICNS containers, dconf databases, and
// the list of files that ended a process. Reading ends, and answers what the headers promise.
#include "platform/linux/applications/icons/DecodingSuspects.h"
#include "platform/linux/decoder/pictures/IcnsContainer.h"
#include "platform/linux/settings/DconfDatabase.h"

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
    for (const auto& picture : icnsPictures(bytes)) {
        require(picture.data.begin() >= bytes.begin() && picture.data.end() <= bytes.end());
        if (picture.kind != IcnsPicture::Kind::Png) {
            const auto image = unpackedIcnsPicture(picture);
            require(image.isNull() || image.size() == QSize(picture.edge, picture.edge));
        }
    }
    const auto text = dconfText({bytes.data(), size}, "/org/gnome/desktop/interface/icon-theme");
    require(!text || text->size() <= 1024);
    const auto suspects = DecodingSuspects::read(bytes);
    require(DecodingSuspects::read(suspects.written()).written() == suspects.written());
    return 0;
}
