#include "platform/linux/dbus/AsyncBusConnector.h"

#include "platform/linux/queue/EventLoopQueue.h"
#include "support/PrivateBus.h"
#include "support/WaitUntil.h"

#include <gtest/gtest.h>
#include <memory>

using namespace amberquill;
using namespace amberquill::desktop;
using namespace Qt::StringLiterals;

namespace {

class AsyncBusConnectorTest : public testing::Test {
protected:
    void TearDown() override { QDBusConnection::disconnectFromBus(name_); }

    [[nodiscard]] std::unique_ptr<AsyncBusConnector> connector(const QByteArray& address) {
        return std::make_unique<AsyncBusConnector>(address, name_, queue_);
    }
    [[nodiscard]] QByteArray address() const { return bus_.address().toUtf8(); }

    void connect(AsyncBusConnector& connector) {
        connector.connect([this](const QDBusConnection& bus) { came_ += bus; });
    }

    [[nodiscard]] bool comes() {
        return waitUntil([this] { return !came_.isEmpty(); });
    }

    PrivateBus bus_;
    EventLoopQueue queue_;
    QString name_ = QUuid::createUuid().toString();
    QList<QDBusConnection> came_;
};

} // namespace

TEST_F(AsyncBusConnectorTest, AConnectionIsDeliveredThroughTheQueue) {
    const auto patient = connector(address());
    connect(*patient);
    EXPECT_TRUE(came_.isEmpty());
    ASSERT_TRUE(comes());
    EXPECT_TRUE(came_[0].isConnected());
    EXPECT_EQ(came_[0].name(), name_);
}

TEST_F(AsyncBusConnectorTest, WithoutABusADisconnectedConnectionIsDelivered) {
    const auto patient = connector("disabled:");
    connect(*patient);
    ASSERT_TRUE(comes());
    EXPECT_FALSE(came_[0].isConnected());
}

TEST_F(AsyncBusConnectorTest, AHangingBusDoesNotBlockTheCaller) {
    bus_.freeze();
    const auto patient = connector(address());
    connect(*patient);
    EXPECT_TRUE(came_.isEmpty());
    EXPECT_TRUE(comes()) << "it counts as none after a while";
    bus_.thaw();
    ASSERT_EQ(came_.size(), 1);
    EXPECT_FALSE(came_[0].isConnected());
}

TEST_F(AsyncBusConnectorTest, ALaterConnectionReplacesTheEarlierOne) {
    const auto patient = connector(address());
    connect(*patient);
    ASSERT_TRUE(comes());
    const QString earlier = came_.takeFirst().baseService();
    connect(*patient);
    ASSERT_TRUE(comes());
    EXPECT_TRUE(came_[0].isConnected());
    EXPECT_NE(came_[0].baseService(), earlier);
}

TEST_F(AsyncBusConnectorTest, NothingIsDeliveredAfterDestruction) {
    auto first = connector(address());
    connect(*first);
    first.reset();
    const auto second = connector(address());
    connect(*second);
    ASSERT_TRUE(comes());
    EXPECT_EQ(came_.size(), 1);
}
