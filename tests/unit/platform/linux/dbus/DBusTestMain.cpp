#include <QCoreApplication>
#include <gtest/gtest.h>

int main(int argc, char** argv) {
    // Tests must not reach the user's own bus.
    qputenv("DBUS_SESSION_BUS_ADDRESS", "unix:path=/nowhere/at/all");
    QCoreApplication application(argc, argv);
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
