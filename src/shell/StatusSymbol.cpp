#include "shell/StatusSymbol.h"

#include <QIconEngine>
#include <QImage>
#include <QPainter>
#include <QPixmap>
#include <algorithm>
#include <cmath>
#include <utility>

namespace amberquill {

namespace {

constexpr QColor darkInk(0x24, 0x24, 0x24);
constexpr QColor lightInk(0xFF, 0xFF, 0xFF);

constexpr int squaresInRow = 3;

// Fractions of the symbol's edge.
constexpr double squareShare = 5.0 / 24;
constexpr double allSquaresShare = 18.5 / 24;
constexpr double roundingShare = 1.4 / 24;

// Aligns the squares to the pixel grid and centres them. In device pixels.
struct SquareGrid {
    int square;
    int gap;
    int margin;

    static SquareGrid of(int edge) {
        int square = static_cast<int>(std::lround(edge * squareShare));
        // The remaining width is even, so both margins are equal.
        square = std::max(square - (edge - square) % 2, 1);
        const double left = edge * allSquaresShare - squaresInRow * square;
        const int gap = std::max(static_cast<int>(std::lround(left / (squaresInRow - 1))), 1);
        return {square, gap, (edge - squaresInRow * square - (squaresInRow - 1) * gap) / 2};
    }
};

class StatusSymbol final : public QIconEngine {
public:
    StatusSymbol(PanelTone tone, std::function<void()> drawn)
        : tone_(tone)
        , drawn_(std::move(drawn)) {}

    void paint(QPainter* painter, const QRect& rect, QIcon::Mode /*mode*/, QIcon::State /*state*/) override {
        const double ratio = painter->device()->devicePixelRatioF();
        const int points = std::min(rect.width(), rect.height());
        const int edge = static_cast<int>(std::lround(points * ratio));
        const QPoint corner = rect.topLeft() + QPoint(rect.width() - points, rect.height() - points) / 2;
        painter->save();
        painter->translate(corner);
        painter->scale(1 / ratio, 1 / ratio);
        painter->setRenderHint(QPainter::Antialiasing);
        painter->setPen(Qt::NoPen);
        draw(*painter, edge);
        painter->restore();
        drawn_();
    }

    QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override {
        QPixmap pixmap(size);
        pixmap.fill(Qt::transparent);
        QPainter painter(&pixmap);
        paint(&painter, QRect(QPoint(), size), mode, state);
        return pixmap;
    }

    QString iconName() override {
        const QString name = QStringLiteral("org.amberquill.Amberquill-symbolic");
        return QIcon::hasThemeIcon(name) ? name : QString();
    }

    [[nodiscard]] QIconEngine* clone() const override { return new StatusSymbol(tone_, drawn_); }

private:
    void draw(QPainter& painter, int edge) const {
        if (tone_ == PanelTone::Unknown) {
            drawSquares(painter, edge, darkInk, 1);
        }
        drawSquares(painter, edge, tone_ == PanelTone::Light ? darkInk : lightInk, 0);
    }

    static void drawSquares(QPainter& painter, int edge, const QColor& ink, int wider) {
        const SquareGrid grid = SquareGrid::of(edge);
        const double rounding = edge * roundingShare + wider;
        painter.setBrush(ink);
        for (int row = 0; row < squaresInRow; ++row) {
            for (int column = 0; column < squaresInRow; ++column) {
                const int step = grid.square + grid.gap;
                const QRect square(grid.margin + column * step, grid.margin + row * step, grid.square,
                                   grid.square);
                painter.drawRoundedRect(square.adjusted(-wider, -wider, wider, wider), rounding, rounding);
            }
        }
    }

    PanelTone tone_;
    std::function<void()> drawn_;
};

// The means of the outermost pixels, from 0 to 1. Brightness is premultiplied by opacity.
struct Surroundings {
    double brightness;
    double opacity;

    static Surroundings of(const QImage& image) {
        double brightness = 0;
        double opacity = 0;
        int count = 0;
        for (int y = 0; y < image.height(); ++y) {
            const bool isWholeRow = y == 0 || y == image.height() - 1;
            for (int x = 0; x < image.width(); x += isWholeRow ? 1 : std::max(image.width() - 1, 1)) {
                const QColor colour = image.pixelColor(x, y);
                const double alpha = colour.alpha() / 255.0;
                brightness += alpha * qGray(colour.rgb()) / 255.0;
                opacity += alpha;
                ++count;
            }
        }
        return {brightness / count, opacity / count};
    }
};

} // namespace

PanelTone panelTone(const QImage& symbolOnPanel) {
    constexpr double middle = 0.5;
    if (symbolOnPanel.isNull()) {
        return PanelTone::Unknown;
    }
    const Surroundings seen = Surroundings::of(symbolOnPanel);
    if (seen.brightness > middle) {
        return PanelTone::Light;
    }
    const double brightest = seen.brightness + 1 - seen.opacity;
    return brightest <= middle ? PanelTone::Dark : PanelTone::Unknown;
}

QIcon statusSymbol(PanelTone tone, std::function<void()> drawn) {
    return QIcon(new StatusSymbol(tone, std::move(drawn)));
}

} // namespace amberquill
