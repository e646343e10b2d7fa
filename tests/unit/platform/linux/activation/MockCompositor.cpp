#include "MockCompositor.h"

#include "xdg-activation-v1-server-protocol.h"

#include <gtest/gtest.h>
#include <poll.h>
#include <sys/socket.h>
#include <wayland-client-core.h>
#include <wayland-server.h>

namespace amberquill {

class MockCompositor::Side {
public:
    explicit Side(bool offersActivation)
        : server(wl_display_create()) {
        int ends[2] = {-1, -1};
        EXPECT_EQ(socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends), 0);
        wl_global_create(server, &wl_seat_interface, 1, this, &bindSeat);
        wl_global_create(server, &wl_compositor_interface, 1, this, &bindCompositor);
        if (offersActivation) {
            activation = wl_global_create(server, &xdg_activation_v1_interface, 1, this, &bindActivation);
        }
        wl_client_create(server, ends[0]);
        client = wl_display_connect_to_fd(ends[1]);
    }
    Side(const Side&) = delete;
    Side& operator=(const Side&) = delete;
    ~Side() {
        wl_display_disconnect(client);
        wl_display_destroy_clients(server);
        wl_display_destroy(server);
    }

    // The index of this token object's request.
    struct TokenData {
        Side* side;
        qsizetype place;
    };

    wl_display* server;
    wl_display* client = nullptr;
    wl_global* activation = nullptr;
    QList<Request> requests;
    QList<wl_resource*> tokens;
    std::vector<std::unique_ptr<TokenData>> tokenData;

private:
    static Request& requestOf(wl_resource* token) {
        const auto* const data = static_cast<TokenData*>(wl_resource_get_user_data(token));
        return data->side->requests[data->place];
    }

    static void bindSeat(wl_client* bound, void*, uint32_t version, uint32_t id) {
        wl_resource_create(bound, &wl_seat_interface, static_cast<int>(version), id);
    }

    static void bindCompositor(wl_client* bound, void*, uint32_t version, uint32_t id) {
        static const struct wl_compositor_interface compositor = {
            .create_surface =
                [](wl_client* of, wl_resource*, uint32_t surface) {
                    wl_resource_create(of, &wl_surface_interface, 1, surface);
                },
            .create_region = nullptr,
        };
        wl_resource* const resource =
            wl_resource_create(bound, &wl_compositor_interface, static_cast<int>(version), id);
        wl_resource_set_implementation(resource, &compositor, nullptr, nullptr);
    }

    static void bindActivation(wl_client* bound, void* self, uint32_t version, uint32_t id) {
        static const struct xdg_activation_v1_interface manager = {
            .destroy = [](wl_client*, wl_resource* resource) { wl_resource_destroy(resource); },
            .get_activation_token = &makeToken,
            .activate = nullptr,
        };
        wl_resource* const resource =
            wl_resource_create(bound, &xdg_activation_v1_interface, static_cast<int>(version), id);
        wl_resource_set_implementation(resource, &manager, self, nullptr);
    }

    static void makeToken(wl_client* of, wl_resource* resource, uint32_t id) {
        static const struct xdg_activation_token_v1_interface token = {
            .set_serial =
                [](wl_client*, wl_resource* on, uint32_t serial, wl_resource*) {
                    requestOf(on).hasSerial = true;
                    requestOf(on).serial = serial;
                },
            .set_app_id =
                [](wl_client*, wl_resource* on, const char* application) {
                    requestOf(on).applicationId = QString::fromUtf8(application);
                },
            .set_surface = [](wl_client*, wl_resource* on, wl_resource*) { requestOf(on).hasSurface = true; },
            .commit = [](wl_client*, wl_resource* on) { requestOf(on).committed = true; },
            .destroy =
                [](wl_client*, wl_resource* on) {
                    requestOf(on).destroyed = true;
                    wl_resource_destroy(on);
                },
        };
        auto* const self = static_cast<Side*>(wl_resource_get_user_data(resource));
        wl_resource* const made = wl_resource_create(of, &xdg_activation_token_v1_interface, 1, id);
        self->tokenData.push_back(std::make_unique<TokenData>(TokenData{self, self->requests.size()}));
        self->requests += Request();
        self->tokens += made;
        wl_resource_set_implementation(made, &token, self->tokenData.back().get(), nullptr);
    }
};

MockCompositor::MockCompositor(bool offersActivation)
    : side_(std::make_unique<Side>(offersActivation)) {}

MockCompositor::~MockCompositor() = default;

wl_display* MockCompositor::client() const {
    return side_->client;
}

void MockCompositor::exchange() {
    // A request, its answer and what follows from it take no more than a few rounds.
    for (int round = 0; round < 4; ++round) {
        wl_display_flush(side_->client);
        wl_event_loop_dispatch(wl_display_get_event_loop(side_->server), 0);
        wl_display_flush_clients(side_->server);
        ASSERT_EQ(wl_display_prepare_read(side_->client), 0);
        pollfd incoming{wl_display_get_fd(side_->client), POLLIN, 0};
        if (poll(&incoming, 1, 0) > 0) {
            wl_display_read_events(side_->client);
        } else {
            wl_display_cancel_read(side_->client);
        }
        wl_display_dispatch_pending(side_->client);
        ASSERT_EQ(wl_display_get_error(side_->client), 0);
    }
}

const QList<MockCompositor::Request>& MockCompositor::requests() const {
    return side_->requests;
}

void MockCompositor::answer(qsizetype place, const QString& token) {
    xdg_activation_token_v1_send_done(side_->tokens[place], token.toUtf8().constData());
}

void MockCompositor::withdraw() {
    wl_global_remove(side_->activation);
}

} // namespace amberquill
