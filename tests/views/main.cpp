#include "support/OffscreenMain.h"

#include <QApplication>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryFile>

namespace {

// Screens side by side, each large enough for every window here, with different device pixels in a point.
QByteArray screens() {
    QJsonArray list;
    int left = 0;
    for (const double ratio : {1.0, 1.25, 1.5, 1.75, 2.0, 3.0}) {
        const int width = static_cast<int>(2600 * ratio);
        list.append(QJsonObject{{QStringLiteral("name"), QString::number(ratio)},
                                {QStringLiteral("x"), left},
                                {QStringLiteral("y"), 0},
                                {QStringLiteral("width"), width},
                                {QStringLiteral("height"), static_cast<int>(1500 * ratio)},
                                {QStringLiteral("logicalDpi"), 96 * ratio},
                                {QStringLiteral("logicalBaseDpi"), 96}});
        left += width;
    }
    return QJsonDocument(QJsonObject{{QStringLiteral("screens"), list}}).toJson();
}

} // namespace

int main(int argc, char** argv) {
    QTemporaryFile configuration;
    if (!configuration.open() || configuration.write(screens()) <= 0) {
        return 1;
    }
    configuration.close();
    return amberquill::runOffscreen<QApplication>(argc, argv, configuration.fileName());
}
