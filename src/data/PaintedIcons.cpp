#include "data/PaintedIcons.h"

#include "data/ContinuousCorners.h"

#include <QLinearGradient>
#include <QPainter>
#include <QPainterPath>
#include <algorithm>
#include <cmath>

namespace amberquill {

namespace {

// Parts of the icon's edge.
constexpr double tileInset = 0.09;

// Parts of the tile's edge.
constexpr double tileRadius = 0.225;
constexpr double windowWidth = 0.6;
constexpr double windowHeight = 0.48;
constexpr double windowRadius = 0.075;
constexpr double barHeight = 0.13;
constexpr double frameWidth = 0.045;
constexpr double dotSize = 0.045;

constexpr QColor tileTop{0x82, 0x90, 0xA6};
constexpr QColor tileBottom{0x4B, 0x57, 0x6C};
constexpr QColor dots{0x5C, 0x69, 0x7F};

// Rounded to whole pixels, at least one.
int pixels(double length) {
    return std::max(1, static_cast<int>(std::lround(length)));
}

// The length nearest to `length` that leaves the same number of pixels on both sides of `whole`.
int centred(double length, int whole) {
    return whole - 2 * pixels((whole - length) / 2);
}

QPainterPath roundedRect(const QRectF& rect, double radius) {
    QPainterPath path;
    path.addRoundedRect(rect, radius, radius);
    return path;
}

void paintWindow(QPainter& painter, const QRect& tile) {
    const int edge = tile.width();
    QRect window(0, 0, centred(edge * windowWidth, edge), centred(edge * windowHeight, edge));
    window.moveCenter(tile.center());
    const int frame = pixels(edge * frameWidth);
    const int bar = std::max(pixels(edge * barHeight), frame + 1);
    const QRect content = window.adjusted(frame, bar, -frame, -frame);
    const double radius = edge * windowRadius;
    painter.fillPath(
        roundedRect(window, radius).subtracted(roundedRect(content, std::max(0.0, radius - frame))),
        Qt::white);

    const int dot = pixels(edge * dotSize);
    const int top = window.top() + (bar - dot) / 2;
    if (dot < 3) {
        return; // too small to be seen apart
    }
    for (int i = 0; i < 3; ++i) {
        painter.fillPath(roundedRect(QRect(content.left() + dot / 2 + i * 2 * dot, top, dot, dot), dot / 2.0),
                         dots);
    }
}

} // namespace

QImage paintedPlaceholder(int edge) {
    QImage image(edge, edge, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    const double inset = edge * tileInset;
    const QRectF body = QRectF(0, 0, edge, edge).adjusted(inset, inset, -inset, -inset);
    painter.fillPath(continuousRoundedRect(body, body.width() * tileRadius), QColor(255, 255, 255, 41));
    return image;
}

QImage paintedGenericIcon(int edge) {
    QImage image(edge, edge, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    const int inset = static_cast<int>(std::lround(edge * tileInset));
    const QRect tile = image.rect().adjusted(inset, inset, -inset, -inset);
    QLinearGradient fill(tile.topLeft(), tile.bottomLeft());
    fill.setColorAt(0, tileTop);
    fill.setColorAt(1, tileBottom);
    painter.fillPath(continuousRoundedRect(tile, tile.width() * tileRadius), fill);
    paintWindow(painter, tile);
    return image;
}

} // namespace amberquill
