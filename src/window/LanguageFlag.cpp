#include "window/LanguageFlag.h"

#include "localization/L.h"

#include <QPainter>
#include <QPainterPath>
#include <QSvgRenderer>
#include <algorithm>

// Qt's macro for resources does not work in a namespace.
static void loadFlags() {
    Q_INIT_RESOURCE(amberquill_flags);
}

namespace amberquill {

namespace {

// In points.
constexpr QSizeF flagSize(18, 12);
constexpr double cornerRadius = 2;
constexpr double frameInset = 0.5;
constexpr double frameRadius = 1.5;
constexpr double frameOpacity = 0.14;

// The smallest rectangle with the flag's proportions that covers this one.
QRectF covering(const QSizeF& picture, const QRectF& rect) {
    const double scale = std::max(rect.width() / picture.width(), rect.height() / picture.height());
    QRectF covered({}, picture * scale);
    covered.moveCenter(rect.center());
    return covered;
}

} // namespace

QString languageTitle(AppLanguage language) {
    switch (language) {
    case AppLanguage::English:
        return QStringLiteral("English");
    case AppLanguage::Italian:
        return QStringLiteral("Italiano");
    case AppLanguage::Spanish:
        return QStringLiteral("Español");
    case AppLanguage::French:
        return QStringLiteral("Français");
    case AppLanguage::German:
        return QStringLiteral("Deutsch");
    case AppLanguage::Chinese:
        return QStringLiteral("中文");
    case AppLanguage::Japanese:
        return QStringLiteral("日本語");
    case AppLanguage::System:
        break;
    }
    return L::automatic();
}

QImage languageFlag(AppLanguage language, double devicePixelRatio) {
    loadFlags();
    QImage image((flagSize * devicePixelRatio).toSize(), QImage::Format_ARGB32_Premultiplied);
    image.setDevicePixelRatio(devicePixelRatio);
    image.fill(Qt::transparent);
    QSvgRenderer flag(QStringLiteral(":/assets/Flag-%1.svg").arg(rawValue(language)));
    const QRectF rect({}, flagSize);
    QPainterPath shape;
    shape.addRoundedRect(rect, cornerRadius, cornerRadius);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setClipPath(shape);
    flag.render(&painter, covering(flag.defaultSize(), rect));
    painter.setClipping(false);
    painter.setPen(QPen(QColor::fromRgbF(0, 0, 0, static_cast<float>(frameOpacity)), 1));
    painter.drawRoundedRect(rect.adjusted(frameInset, frameInset, -frameInset, -frameInset), frameRadius,
                            frameRadius);
    return image;
}

} // namespace amberquill
