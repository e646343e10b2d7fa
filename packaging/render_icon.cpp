// Draws an SVG picture as square PNG files:
//   render_icon PICTURE FILE EDGE [FILE EDGE...]
// Edges are pixels. Ends with 1, and says why, when the picture cannot be drawn whole or a file not written.

#include <QByteArray>
#include <QImage>
#include <QPainter>
#include <QString>
#include <QSvgRenderer>
#include <cstdio>

using namespace Qt::StringLiterals;

namespace {

int failed(const char* what, const QString& name) {
    (void)std::fprintf(stderr, "%s: %s\n", name.toLocal8Bit().constData(), what);
    return 1;
}

} // namespace

int main(int argc, char* argv[]) {
    if (argc < 4 || argc % 2 != 0) {
        return failed("a picture, and a file and an edge for each size", QString::fromLocal8Bit(argv[0]));
    }
    const QString picture = QString::fromLocal8Bit(argv[1]);
    QSvgRenderer renderer(picture);
    if (!renderer.isValid()) {
        return failed("no picture", picture);
    }
    for (int i = 2; i < argc; i += 2) {
        const QString file = QString::fromLocal8Bit(argv[i]);
        const int edge = QByteArray(argv[i + 1]).toInt();
        QImage image(edge, edge, QImage::Format_ARGB32_Premultiplied);
        image.fill(Qt::transparent);
        QPainter painter(&image);
        renderer.render(&painter);
        painter.end();
        if (!image.save(file, "PNG")) {
            return failed("cannot be written", file);
        }
    }
    return 0;
}
