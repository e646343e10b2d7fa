#pragma once

#include "platform/ApplicationIcons.h"

#include <QColor>

namespace amberquill {

// Icons of one colour each, which fill their square.
class ColourIcons final : public ApplicationIcons {
public:
    // The colour of the application with this number in its path, "/Applications/12.app".
    static QColor colour(int number) {
        return QColor::fromHsv(number * 137 % 360, 150 + number % 3 * 40, 230);
    }

    [[nodiscard]] QImage image(const QString& path, int edge) const override {
        const QString digits = path.section(QLatin1Char('/'), -1).section(QLatin1Char('.'), 0, 0);
        QImage icon(edge, edge, QImage::Format_ARGB32_Premultiplied);
        icon.fill(colour(digits.toInt()));
        return icon;
    }
    [[nodiscard]] QImage standIn(int) const override { return {}; }
    void forget() override {}
    void rest() override {}
};

} // namespace amberquill
