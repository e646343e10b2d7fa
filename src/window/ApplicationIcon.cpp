#include "window/ApplicationIcon.h"

#include <QFile>
#include <QPainter>
#include <QPixmap>
#include <QSvgRenderer>
#include <cmath>

// Qt's macro for resources does not work in a namespace.
static void loadIcon() {
    Q_INIT_RESOURCE(amberquill_icon);
}

namespace amberquill {

QImage applicationPicture(int edge) {
    loadIcon();
    // Small sizes have drawings of their own, aligned to pixels.
    QString drawing = QStringLiteral(":/assets/org.amberquill.Amberquill-%1.svg").arg(edge);
    if (!QFile::exists(drawing)) {
        drawing = QStringLiteral(":/assets/org.amberquill.Amberquill.svg");
    }
    QImage image(edge, edge, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QSvgRenderer renderer(drawing);
    QPainter painter(&image);
    renderer.render(&painter);
    return image;
}

QPixmap applicationPixmap(int edge, double devicePixelRatio) {
    QImage picture = applicationPicture(static_cast<int>(std::lround(edge * devicePixelRatio)));
    picture.setDevicePixelRatio(devicePixelRatio);
    return QPixmap::fromImage(picture);
}

QIcon applicationIcon() {
    QIcon icon;
    for (const int edge : {16, 22, 24, 32, 48, 64, 128}) {
        icon.addPixmap(QPixmap::fromImage(applicationPicture(edge)));
    }
    return icon;
}

} // namespace amberquill
