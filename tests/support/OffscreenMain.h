#pragma once

#include <QGuiApplication>
#include <QQuickWindow>
#include <gtest/gtest.h>

namespace amberquill {

// Runs the tests with an application object that needs no display and uses the software renderer. `screens`:
// a file that describes the screens for Qt's offscreen platform.
template<typename Application = QGuiApplication>
int runOffscreen(int argc, char** argv, const QString& screens = {}) {
    qputenv("QT_QPA_PLATFORM",
            screens.isEmpty() ? QByteArray("offscreen") : "offscreen:configfile=" + screens.toLocal8Bit());
    QQuickWindow::setGraphicsApi(QSGRendererInterface::Software);
    const Application application(argc, argv);
    Application::setQuitOnLastWindowClosed(false);
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}

} // namespace amberquill
