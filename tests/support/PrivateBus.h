#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QUuid>
#include <csignal>
#include <gtest/gtest.h>

namespace amberquill {

// A separate message bus for a test.
class PrivateBus {
public:
    PrivateBus() {
        write(folder_.filePath(QStringLiteral("bus.conf")),
              "<busconfig><type>session</type><listen>unix:dir=" + QFile::encodeName(folder_.path()) +
                  "</listen><servicedir>" + QFile::encodeName(folder_.path()) +
                  "</servicedir><policy context='default'><allow send_destination='*' eavesdrop='true'/>"
                  "<allow eavesdrop='true'/><allow own='*'/></policy></busconfig>");
        address_ = start({});
    }
    PrivateBus(const PrivateBus&) = delete;
    PrivateBus& operator=(const PrivateBus&) = delete;
    ~PrivateBus() {
        for (const QString& name : names_) {
            QDBusConnection::disconnectFromBus(name);
        }
        stop();
    }

    [[nodiscard]] const QString& address() const { return address_; }

    void stop() {
        daemon_.kill();
        daemon_.waitForFinished();
    }

    // Starts another bus at the same socket. The address is then without the id of the first bus.
    void startAgain() {
        address_ = address_.section(QLatin1Char(','), 0, 0);
        start({QStringLiteral("--address=") + address_});
    }

    // Stops answering until `thaw`. Connections can still be made.
    void freeze() const { ::kill(static_cast<pid_t>(daemon_.processId()), SIGSTOP); }
    void thaw() const { ::kill(static_cast<pid_t>(daemon_.processId()), SIGCONT); }

    // A new connection.
    QDBusConnection connect() {
        names_ += QUuid::createUuid().toString();
        QDBusConnection connection = QDBusConnection::connectToBus(address_, names_.back());
        EXPECT_TRUE(connection.isConnected());
        return connection;
    }

    // Makes the bus start `command` for messages to `name` while the name has no owner.
    void makeActivatable(const QByteArray& name, const QByteArray& command) {
        write(folder_.filePath(QString::fromLatin1(name) + QStringLiteral(".service")),
              "[D-BUS Service]\nName=" + name + "\nExec=" + command + "\n");
        QDBusConnection connection = connect();
        connection.call(QDBusMessage::createMethodCall(
            QStringLiteral("org.freedesktop.DBus"), QStringLiteral("/org/freedesktop/DBus"),
            QStringLiteral("org.freedesktop.DBus"), QStringLiteral("ReloadConfig")));
    }

private:
    QString start(const QStringList& more) {
        daemon_.start(
            QStringLiteral("dbus-daemon"),
            QStringList{QStringLiteral("--nofork"), QStringLiteral("--print-address"),
                        QStringLiteral("--config-file=") + folder_.filePath(QStringLiteral("bus.conf"))} +
                more);
        EXPECT_TRUE(daemon_.waitForReadyRead(10'000));
        return QString::fromUtf8(daemon_.readLine()).trimmed();
    }

    static void write(const QString& path, const QByteArray& content) {
        QFile file(path);
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        EXPECT_EQ(file.write(content), content.size());
    }

    QTemporaryDir folder_;
    QProcess daemon_;
    QString address_;
    QStringList names_;
};

// A connection to no bus.
inline QDBusConnection noBus() {
    return QDBusConnection(QStringLiteral("no bus at all"));
}

} // namespace amberquill
