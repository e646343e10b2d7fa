#pragma once

#include <QGuiApplication>
#include <QQuickWindow>
#include <gtest/gtest.h>

namespace amberquill {

// Runs the tests in an application object that needs no display and draws with the software renderer.
template<typename Application = QGuiApplication>
int runOffscreen(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QQuickWindow::setGraphicsApi(QSGRendererInterface::Software);
    const Application application(argc, argv);
    Application::setQuitOnLastWindowClosed(false);
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}

} // namespace amberquill
