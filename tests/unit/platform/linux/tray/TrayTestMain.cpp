#include <QGuiApplication>
#include <gtest/gtest.h>

int main(int argc, char** argv) {
    // No test reaches the bus or the display of whoever runs it.
    qputenv("DBUS_SESSION_BUS_ADDRESS", "unix:path=/nowhere/at/all");
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QGuiApplication application(argc, argv);
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
