#include "platform/linux/dbus/BusAddress.h"

#include "support/FixedEnvironment.h"

#include <QFile>
#include <QTemporaryDir>
#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

using namespace amberquill;
using namespace amberquill::desktop;
using namespace Qt::StringLiterals;

namespace {

// A listening socket in the file system, like a session bus's.
class BusSocket {
public:
    explicit BusSocket(const QString& path)
        : descriptor_(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
        sockaddr_un address = {};
        address.sun_family = AF_UNIX;
        QFile::encodeName(path).toStdString().copy(address.sun_path, sizeof address.sun_path - 1);
        EXPECT_EQ(::bind(descriptor_, reinterpret_cast<sockaddr*>(&address), sizeof address), 0);
    }
    BusSocket(const BusSocket&) = delete;
    BusSocket& operator=(const BusSocket&) = delete;
    ~BusSocket() { ::close(descriptor_); }

private:
    int descriptor_;
};

} // namespace

TEST(SessionBus, IsAtTheAddressOfTheEnvironment) {
    EXPECT_EQ(sessionBusAddress(environmentOf({{"DBUS_SESSION_BUS_ADDRESS", "unix:path=/a"}})),
              "unix:path=/a");
}

TEST(SessionBus, IsAtTheUsualPathWithoutTheVariable) {
    const QTemporaryDir folder;
    const BusSocket socket(folder.filePath(u"bus"_s));
    const QByteArray path = QFile::encodeName(folder.path());
    EXPECT_EQ(sessionBusAddress(environmentOf({{"XDG_RUNTIME_DIR", path}, {"DBUS_SESSION_BUS_ADDRESS", ""}})),
              "unix:path=" + path + "/bus");
}

TEST(SessionBus, HasAnEscapedAddress) {
    const QTemporaryDir folder(u"/tmp/a,b=%XXXXXX"_s);
    const BusSocket socket(folder.filePath(u"bus"_s));
    const auto address =
        sessionBusAddress(environmentOf({{"XDG_RUNTIME_DIR", QFile::encodeName(folder.path())}}));
    ASSERT_TRUE(address);
    EXPECT_TRUE(address->startsWith("unix:path=/tmp/a%2Cb%3D%25")) << address->constData();
}

TEST(SessionBus, IsEmptyWithoutASocket) {
    const QTemporaryDir folder;
    const QByteArray path = QFile::encodeName(folder.path());
    EXPECT_EQ(sessionBusAddress(environmentOf({{"XDG_RUNTIME_DIR", path}})), std::nullopt);
    QFile file(folder.filePath(u"bus"_s));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    EXPECT_EQ(sessionBusAddress(environmentOf({{"XDG_RUNTIME_DIR", path}})), std::nullopt) << "a plain file";
    EXPECT_EQ(sessionBusAddress(environmentOf({{"XDG_RUNTIME_DIR", "relative"}})), std::nullopt);
    EXPECT_EQ(sessionBusAddress(environmentOf({})), std::nullopt);
}
