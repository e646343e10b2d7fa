#include "views/LabelTexture.h"

#include "views/ImageEffects.h"
#include "views/Theme.h"

#include <QFont>
#include <QFontMetricsF>
#include <QGuiApplication>
#include <QPainter>
#include <cmath>

namespace amberquill {

namespace {

// Of the shadow, in points. The radius is twice the standard deviation of the Gaussian.
constexpr double labelShadowRadius = 2;
constexpr double labelShadowDrop = 1;

// Room around the line, in points: for the shadow, accents above capitals and tall scripts.
constexpr double overhang = 7;

// Only this many letters of a name are laid out: more are wider than any screen.
constexpr qsizetype longestName = 512;

QString oneLine(const QString& text) {
    QString line = text.left(longestName);
    for (QChar& unit : line) {
        const QChar::Category category = unit.category();
        if (category == QChar::Other_Control || category == QChar::Separator_Line ||
            category == QChar::Separator_Paragraph) {
            unit = QLatin1Char(' ');
        }
    }
    return line;
}

QFont labelFont(double pixels) {
    QFont font = QGuiApplication::font();
    font.setPixelSize(std::max(1, static_cast<int>(std::lround(pixels))));
    font.setWeight(QFont::Medium);
    return font;
}

QImage textMask(const QString& line, const QFont& font, const QSize& size, const QPointF& baseline) {
    QImage image(size, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::TextAntialiasing);
    painter.setFont(font);
    painter.setPen(Qt::white);
    painter.drawText(baseline, line);
    return image;
}

QImage withShadow(const QImage& text, double ratio) {
    QImage shadow = text.convertToFormat(QImage::Format_Alpha8);
    blurAlpha(shadow, labelShadowRadius * ratio / 2);
    QImage result(text.size(), QImage::Format_ARGB32_Premultiplied);
    result.fill(Qt::transparent);
    QPainter painter(&result);
    painter.setOpacity(Theme::labelShadow);
    painter.drawImage(0, static_cast<int>(std::lround(labelShadowDrop * ratio)), shadow);
    painter.setOpacity(1);
    painter.drawImage(0, 0, text);
    return result;
}

} // namespace

void LabelTexture::setText(const QString& text) {
    if (text != text_) {
        text_ = text;
        Q_EMIT textChanged();
        repaint();
    }
}

void LabelTexture::setFontSize(double fontSize) {
    if (fontSize != fontSize_) {
        fontSize_ = fontSize;
        Q_EMIT fontSizeChanged();
        repaint();
    }
}

void LabelTexture::setBrightness(double brightness) {
    if (brightness != brightness_) {
        brightness_ = brightness;
        Q_EMIT brightnessChanged();
        repaint();
    }
}

TextureItem::Painted LabelTexture::paintTexture(double devicePixelRatio) {
    const QFont font = labelFont(fontSize_ * devicePixelRatio);
    const QFontMetricsF metrics(font);
    const QString line = metrics.elidedText(oneLine(text_), Qt::ElideRight, width() * devicePixelRatio);
    const double lineWidth = std::ceil(metrics.horizontalAdvance(line));
    if (lineWidth <= 0) {
        return {};
    }
    const double margin = std::ceil(overhang * devicePixelRatio);
    const double itemHeight = std::round(height() * devicePixelRatio);
    const QSize size(static_cast<int>(lineWidth + 2 * margin), static_cast<int>(itemHeight + 2 * margin));
    const double baseline = margin + std::round((itemHeight - metrics.height()) / 2 + metrics.ascent());
    const QImage image = withShadow(textMask(line, font, size, {margin, baseline}), devicePixelRatio);
    const double left = std::round((width() * devicePixelRatio - lineWidth) / 2) - margin;
    return {withBrightness(image, brightness_),
            QRectF(QPointF(left, -margin) / devicePixelRatio, QSizeF(image.size()) / devicePixelRatio)};
}

} // namespace amberquill
