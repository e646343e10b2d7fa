#include "views/Brightness.h"

#include <QRgb>
#include <algorithm>
#include <cmath>

namespace amberquill {

QImage withBrightness(const QImage& image, double amount) {
    const int shift = static_cast<int>(std::lround(amount * 255));
    if (shift == 0 || image.isNull()) {
        return image;
    }
    QImage result = image.convertToFormat(QImage::Format_ARGB32_Premultiplied);
    for (int y = 0; y < result.height(); ++y) {
        auto* line = reinterpret_cast<QRgb*>(result.scanLine(y));
        for (int x = 0; x < result.width(); ++x) {
            // Premultiplied: a component is shifted by its share of the pixel and stays within its alpha.
            const int alpha = qAlpha(line[x]);
            const int share = shift * alpha / 255;
            line[x] = qRgba(std::clamp(qRed(line[x]) + share, 0, alpha),
                            std::clamp(qGreen(line[x]) + share, 0, alpha),
                            std::clamp(qBlue(line[x]) + share, 0, alpha), alpha);
        }
    }
    return result;
}

} // namespace amberquill
