// SVG of any bytes: the inspection ends, and Qt's XML reader sees in what it let pass no more than it did.
#include "platform/linux/decoder/pictures/SvgInspection.h"

#include <QByteArray>
#include <QXmlStreamReader>
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
    const auto* const text = reinterpret_cast<const char*>(data);
    if (inspectSvg({text, size}) != SvgVerdict::Harmless) {
        return 0;
    }
    QXmlStreamReader reader(QByteArray(text, static_cast<qsizetype>(size)));
    int elements = 0;
    int depth = 0;
    while (!reader.atEnd()) {
        switch (reader.readNext()) {
        case QXmlStreamReader::StartElement:
            require(++elements <= 5'000 && ++depth <= 100);
            require(elements > 1 || reader.name() == QLatin1String("svg"));
            for (const auto& attribute : reader.attributes()) {
                const bool isPicture =
                    reader.name() == QLatin1String("image") || reader.name() == QLatin1String("feImage");
                require(!isPicture || attribute.name() != QLatin1String("href") ||
                        attribute.value().startsWith(QLatin1String("data:image/")));
            }
            break;
        case QXmlStreamReader::EndElement:
            --depth;
            break;
        case QXmlStreamReader::ProcessingInstruction:
            require(reader.processingInstructionTarget() != QLatin1String("xml-stylesheet"));
            break;
        default:
            break;
        }
    }
    return 0;
}
