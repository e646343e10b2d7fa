#include "platform/linux/activation/wayland/XdgActivation.h"

#include "MockCompositor.h"
#include "support/ManualQueue.h"

#include <cstring>
#include <gtest/gtest.h>
#include <optional>
#include <wayland-client.h>

using namespace amberquill;
using namespace amberquill::desktop;
using namespace Qt::StringLiterals;

namespace {

// The client that requests tokens: it has its own seat and surface, like Qt.
class AskingClient {
public:
    explicit AskingClient(MockCompositor& compositor)
        : registry_(wl_display_get_registry(compositor.client())) {
        static const wl_registry_listener listener = {
            .global =
                [](void* self, wl_registry* registry, uint32_t name, const char* interface, uint32_t) {
                    auto* const client = static_cast<AskingClient*>(self);
                    if (std::strcmp(interface, wl_seat_interface.name) == 0) {
                        client->seat_ =
                            static_cast<wl_seat*>(wl_registry_bind(registry, name, &wl_seat_interface, 1));
                    } else if (std::strcmp(interface, wl_compositor_interface.name) == 0) {
                        client->compositor_ = static_cast<wl_compositor*>(
                            wl_registry_bind(registry, name, &wl_compositor_interface, 1));
                    }
                },
            .global_remove = [](void*, wl_registry*, uint32_t) {},
        };
        wl_registry_add_listener(registry_, &listener, this);
        compositor.exchange();
        surface_ = wl_compositor_create_surface(compositor_);
    }
    AskingClient(const AskingClient&) = delete;
    AskingClient& operator=(const AskingClient&) = delete;
    ~AskingClient() {
        wl_proxy_destroy(reinterpret_cast<wl_proxy*>(surface_));
        wl_compositor_destroy(compositor_);
        wl_seat_destroy(seat_);
        wl_registry_destroy(registry_);
    }

    [[nodiscard]] ActivationProof proof(quint32 serial) const { return {seat_, serial, surface_}; }

private:
    wl_registry* registry_;
    wl_seat* seat_ = nullptr;
    wl_compositor* compositor_ = nullptr;
    wl_surface* surface_ = nullptr;
};

class XdgActivationTest : public testing::Test {
protected:
    void start(bool offersActivation = true) {
        compositor_.emplace(offersActivation);
        client_.emplace(*compositor_);
        activation_.emplace(compositor_->client(), queue_);
        compositor_->exchange();
    }

    void ask(quint32 serial = 77, const QString& application = u"org.example.Calc"_s) {
        activation_->requestToken(client_->proof(serial), application,
                                  [this](const QString& token) { tokens_ += token; });
        compositor_->exchange();
    }

    ManualQueue queue_;
    std::optional<MockCompositor> compositor_;
    std::optional<AskingClient> client_;
    std::optional<XdgActivation> activation_;
    QStringList tokens_;
};

} // namespace

TEST_F(XdgActivationTest, ATokenRequestHasTheInputSerialTheSurfaceAndTheApplication) {
    start();
    ask();
    ASSERT_EQ(compositor_->requests().size(), 1);
    const MockCompositor::Request& request = compositor_->requests().front();
    EXPECT_TRUE(request.hasSerial);
    EXPECT_EQ(request.serial, 77U);
    EXPECT_TRUE(request.hasSurface);
    EXPECT_EQ(request.applicationId, u"org.example.Calc"_s);
    EXPECT_TRUE(request.committed);
    EXPECT_TRUE(tokens_.isEmpty()) << "the answer is not waited for";
}

TEST_F(XdgActivationTest, TheTokenIsDeliveredOnce) {
    start();
    ask();
    compositor_->answer(0, u"a-token"_s);
    compositor_->exchange();
    EXPECT_EQ(tokens_, QStringList{u"a-token"_s});
    EXPECT_TRUE(compositor_->requests().front().destroyed);
    queue_.advance(10);
    EXPECT_EQ(tokens_.size(), 1);
}

TEST_F(XdgActivationTest, EachRequestGetsItsOwnToken) {
    start();
    QStringList first;
    activation_->requestToken(client_->proof(1), {}, [&](const QString& token) { first += token; });
    ask(2);
    compositor_->answer(1, u"second"_s);
    compositor_->exchange();
    EXPECT_EQ(tokens_, QStringList{u"second"_s});
    EXPECT_TRUE(first.isEmpty());
    compositor_->answer(0, u"first"_s);
    compositor_->exchange();
    EXPECT_EQ(first, QStringList{u"first"_s});
    EXPECT_EQ(tokens_.size(), 1);
}

TEST_F(XdgActivationTest, WithoutASerialOrAnApplicationTheRequestHasNeither) {
    start();
    ask(0, {});
    const MockCompositor::Request& request = compositor_->requests().front();
    EXPECT_FALSE(request.hasSerial);
    EXPECT_EQ(request.applicationId, QString());
    EXPECT_TRUE(request.committed);
}

TEST_F(XdgActivationTest, WithoutTheProtocolTheAnswerIsAtOnceNoToken) {
    start(false);
    EXPECT_FALSE(activation_->isOffered());
    ask();
    EXPECT_EQ(tokens_, QStringList{QString()});
}

TEST_F(XdgActivationTest, BeforeTheGlobalsAreKnownThereIsNoToken) {
    compositor_.emplace(true);
    activation_.emplace(compositor_->client(), queue_);
    activation_->requestToken({}, {}, [this](const QString& token) { tokens_ += token; });
    EXPECT_EQ(tokens_, QStringList{QString()});
}

TEST_F(XdgActivationTest, ATokenRequestTimesOutAfterThreeTenthsOfASecond) {
    start();
    ask();
    queue_.advance(0.299);
    EXPECT_TRUE(tokens_.isEmpty());
    queue_.advance(0.001);
    EXPECT_EQ(tokens_, QStringList{QString()});
}

TEST_F(XdgActivationTest, ATokenThatComesTooLateIsDropped) {
    start();
    ask();
    queue_.advance(0.3);
    compositor_->answer(0, u"late"_s);
    compositor_->exchange();
    EXPECT_EQ(tokens_, QStringList{QString()});
}

TEST_F(XdgActivationTest, AfterTheGlobalIsRemovedThereIsNoToken) {
    start();
    EXPECT_TRUE(activation_->isOffered());
    compositor_->withdraw();
    compositor_->exchange();
    EXPECT_FALSE(activation_->isOffered());
    ask();
    EXPECT_EQ(tokens_, QStringList{QString()});
}

TEST_F(XdgActivationTest, ASeatIsFound) {
    start();
    EXPECT_TRUE(activation_->hasSeat());
}

TEST_F(XdgActivationTest, ItMayBeDestroyedDuringARequest) {
    start();
    ask();
    activation_.reset();
    compositor_->answer(0, u"late"_s);
    compositor_->exchange();
    queue_.advance(1);
    EXPECT_TRUE(tokens_.isEmpty());
    EXPECT_TRUE(compositor_->requests().front().destroyed);
}
