#include <QCoreApplication>
#include <QDBusConnection>
#include <gtest/gtest.h>

int main(int argc, char** argv) {
    // Tests must not reach the user's own bus.
    qputenv("DBUS_SESSION_BUS_ADDRESS", "unix:path=/nowhere/at/all");
    QCoreApplication application(argc, argv);
    // Starts Qt's own thread for buses. If a thread of ours starts it, the thread sanitizer no longer sees
    // the locks of that thread.
    QDBusConnection::connectToBus(QStringLiteral("unix:path=/nonexistent"), QStringLiteral("none"));
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
