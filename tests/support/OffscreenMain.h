#pragma once

#include <QGuiApplication>
#include <QQuickWindow>
#include <gtest/gtest.h>

namespace amberquill {

// Runs the tests in an application object that needs no display and draws with the software renderer.
inline int runOffscreen(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QQuickWindow::setGraphicsApi(QSGRendererInterface::Software);
    const QGuiApplication application(argc, argv);
    QGuiApplication::setQuitOnLastWindowClosed(false);
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}

} // namespace amberquill
