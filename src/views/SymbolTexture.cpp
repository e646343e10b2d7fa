#include "views/SymbolTexture.h"

#include <QPainter>
#include <algorithm>
#include <cmath>

namespace amberquill {

namespace {

// The edge of the square on which symbols are designed.
constexpr double designEdge = 24;

class SymbolPainter {
public:
    explicit SymbolPainter(QImage& image)
        : painter_(&image)
        , edge_(image.width()) {
        painter_.setRenderHint(QPainter::Antialiasing);
        painter_.setBrush(Qt::white);
        painter_.setPen(Qt::NoPen);
    }

    void paint(const QString& name) {
        if (name == QLatin1String("line.3.horizontal")) {
            threeLines();
        } else if (name == QLatin1String("plus")) {
            plus();
        } else if (name == QLatin1String("magnifyingglass")) {
            magnifyingGlass();
        } else if (name == QLatin1String("xmark.circle.fill")) {
            crossInDisc();
        }
    }

private:
    [[nodiscard]] double exact(double length) const { return length * edge_ / designEdge; }

    [[nodiscard]] int whole(double length) const {
        return std::max(1, static_cast<int>(std::lround(exact(length))));
    }

    // A line with round ends.
    void bar(int x, int y, int width, int height) {
        const double radius = std::min(width, height) / 2.0;
        painter_.drawRoundedRect(QRectF(x, y, width, height), radius, radius);
    }

    void threeLines() {
        const int thickness = whole(2);
        const int left = whole(2.5);
        const int middle = (edge_ - thickness + 1) / 2;
        const int apart = whole(5.5);
        for (const int top : {middle - apart, middle, middle + apart}) {
            bar(left, top, edge_ - 2 * left, thickness);
        }
    }

    void plus() {
        const int thickness = whole(2);
        const int middle = (edge_ - thickness + 1) / 2;
        const int arm = static_cast<int>(std::lround((exact(19) - thickness) / 2));
        bar(middle - arm, middle, 2 * arm + thickness, thickness);
        bar(middle, middle - arm, thickness, 2 * arm + thickness);
    }

    void magnifyingGlass() {
        const int thickness = whole(2.1);
        const int diameter = whole(15.6);
        const double centre = whole(2.2) + diameter / 2.0;
        const double radius = (diameter - thickness) / 2.0;
        painter_.setBrush(Qt::NoBrush);
        painter_.setPen(QPen(Qt::white, thickness));
        painter_.drawEllipse(QPointF(centre, centre), radius, radius);
        painter_.setPen(QPen(Qt::white, exact(2.4), Qt::SolidLine, Qt::RoundCap));
        const double start = centre + radius * std::sqrt(0.5);
        const double end = exact(20.75);
        painter_.drawLine(QPointF(start, start), QPointF(end, end));
    }

    void crossInDisc() {
        const int inset = whole(2);
        painter_.drawEllipse(QRect(inset, inset, edge_ - 2 * inset, edge_ - 2 * inset));
        painter_.setCompositionMode(QPainter::CompositionMode_Clear);
        painter_.setPen(QPen(Qt::black, exact(2), Qt::SolidLine, Qt::RoundCap));
        const double near = exact(8.2);
        const double far = edge_ - near;
        painter_.drawLine(QPointF(near, near), QPointF(far, far));
        painter_.drawLine(QPointF(near, far), QPointF(far, near));
    }

    QPainter painter_;
    int edge_; // device pixels
};

// Horizontal and vertical lines are whole pixels thick and lie on pixels; circles touch them. An unknown name
// is an empty square.
QImage paintedSymbol(const QString& name, int edge) {
    QImage image(edge, edge, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    SymbolPainter(image).paint(name);
    return image;
}

} // namespace

void SymbolTexture::setName(const QString& name) {
    if (name != name_) {
        name_ = name;
        Q_EMIT nameChanged();
        repaint();
    }
}

TextureItem::Painted SymbolTexture::paintTexture(double devicePixelRatio) {
    const int edge = std::max(1, static_cast<int>(std::lround(width() * devicePixelRatio)));
    return {paintedSymbol(name_, edge), QRectF(QPointF(), QSizeF(edge, edge) / devicePixelRatio)};
}

} // namespace amberquill
