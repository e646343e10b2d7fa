#include "MockBlurCompositor.h"

#include "blur-server-protocol.h"
#include "ext-background-effect-v1-server-protocol.h"

#include <cstring>
#include <gtest/gtest.h>
#include <limits>
#include <poll.h>
#include <sys/socket.h>
#include <wayland-client-core.h>
#include <wayland-client-protocol.h>
#include <wayland-server.h>

namespace amberquill {

class MockBlurCompositor::Side {
public:
    Side()
        : server(wl_display_create()) {
        int ends[2] = {-1, -1};
        EXPECT_EQ(socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends), 0);
        wl_global_create(server, &wl_compositor_interface, 1, this, &bindCompositor);
        wl_client_create(server, ends[0]);
        client = wl_display_connect_to_fd(ends[1]);
    }
    Side(const Side&) = delete;
    Side& operator=(const Side&) = delete;
    ~Side() {
        for (wl_surface* surface : surfaces) {
            wl_proxy_destroy(reinterpret_cast<wl_proxy*>(surface));
        }
        if (compositor != nullptr) {
            wl_proxy_destroy(reinterpret_cast<wl_proxy*>(compositor));
        }
        if (registry != nullptr) {
            wl_proxy_destroy(reinterpret_cast<wl_proxy*>(registry));
        }
        wl_display_disconnect(client);
        wl_display_destroy_clients(server);
        wl_display_destroy(server);
    }

    void note(const std::string& request) { requests.push_back(request); }

    static Side& of(wl_resource* resource) {
        return *static_cast<Side*>(wl_resource_get_user_data(resource));
    }

    static std::string named(wl_resource* surface) { return std::to_string(wl_resource_get_id(surface)); }

    static void bindKwins(wl_client* bound, void* self, uint32_t, uint32_t id) {
        static const struct org_kde_kwin_blur_manager_interface manager = {
            .create =
                [](wl_client* of_, wl_resource* on, uint32_t effect, wl_resource* surface) {
                    static const struct org_kde_kwin_blur_interface blur = {
                        .commit = [](wl_client*, wl_resource* at) { of(at).note("commit"); },
                        .set_region =
                            [](wl_client*, wl_resource* at, wl_resource* region) {
                                of(at).note(region == nullptr ? "everywhere" : "region");
                            },
                        .release =
                            [](wl_client*, wl_resource* at) {
                                of(at).note("release");
                                wl_resource_destroy(at);
                            },
                    };
                    of(on).note("kwin's for " + named(surface));
                    wl_resource_set_implementation(
                        wl_resource_create(of_, &org_kde_kwin_blur_interface, 1, effect), &blur, &of(on),
                        nullptr);
                },
            .unset = nullptr,
        };
        wl_resource_set_implementation(wl_resource_create(bound, &org_kde_kwin_blur_manager_interface, 1, id),
                                       &manager, self, nullptr);
    }

    static void bindGeneral(wl_client* bound, void* self, uint32_t, uint32_t id) {
        static const struct ext_background_effect_manager_v1_interface manager = {
            .destroy = [](wl_client*, wl_resource* on) { wl_resource_destroy(on); },
            .get_background_effect = &makeGeneral,
        };
        auto* const side = static_cast<Side*>(self);
        side->manager = wl_resource_create(bound, &ext_background_effect_manager_v1_interface, 1, id);
        wl_resource_set_implementation(side->manager, &manager, self,
                                       [](wl_resource* on) { of(on).manager = nullptr; });
        ext_background_effect_manager_v1_send_capabilities(side->manager, side->generalBlurs ? 1 : 0);
    }

    static void makeGeneral(wl_client* client, wl_resource* on, uint32_t id, wl_resource* surface) {
        static const struct ext_background_effect_surface_v1_interface effect = {
            .destroy =
                [](wl_client*, wl_resource* at) {
                    of(at).note("destroy");
                    wl_resource_destroy(at);
                },
            .set_blur_region =
                [](wl_client*, wl_resource* at, wl_resource* region) {
                    of(at).note(region == nullptr ? "nowhere" : of(at).region);
                },
        };
        Side& side = of(on);
        if (side.hasEffect) {
            wl_resource_post_error(on, EXT_BACKGROUND_EFFECT_MANAGER_V1_ERROR_BACKGROUND_EFFECT_EXISTS,
                                   "twice");
            return;
        }
        side.hasEffect = true;
        side.note("general for " + named(surface));
        wl_resource_set_implementation(
            wl_resource_create(client, &ext_background_effect_surface_v1_interface, 1, id), &effect, &side,
            [](wl_resource* at) { of(at).hasEffect = false; });
    }

    static void bindCompositor(wl_client* bound, void* self, uint32_t, uint32_t id) {
        static const struct wl_compositor_interface compositor = {
            .create_surface =
                [](wl_client* client, wl_resource*, uint32_t surface) {
                    wl_resource_create(client, &wl_surface_interface, 1, surface);
                },
            .create_region =
                [](wl_client* client, wl_resource* on, uint32_t region) {
                    static const struct wl_region_interface implementation = {
                        .destroy = [](wl_client*, wl_resource* at) { wl_resource_destroy(at); },
                        .add =
                            [](wl_client*, wl_resource* at, int x, int y, int width, int height) {
                                const bool all = x <= 0 && y <= 0 && width >= 1 << 20 && height >= 1 << 20;
                                of(at).region = all ? "everywhere" : "somewhere";
                            },
                        .subtract = nullptr,
                    };
                    wl_resource_set_implementation(
                        wl_resource_create(client, &wl_region_interface, 1, region), &implementation, &of(on),
                        nullptr);
                },
        };
        wl_resource_set_implementation(wl_resource_create(bound, &wl_compositor_interface, 1, id),
                                       &compositor, self, nullptr);
    }

    wl_display* server;
    wl_display* client = nullptr;
    wl_registry* registry = nullptr;
    wl_compositor* compositor = nullptr;
    std::vector<wl_surface*> surfaces;
    wl_global* kwins = nullptr;
    wl_global* general = nullptr;
    wl_resource* manager = nullptr;
    bool generalBlurs = false;
    bool hasEffect = false;
    std::string region = "empty";
    std::vector<std::string> requests;
};

MockBlurCompositor::MockBlurCompositor()
    : side_(std::make_unique<Side>()) {}

MockBlurCompositor::~MockBlurCompositor() = default;

void MockBlurCompositor::offerKwins() {
    side_->kwins = wl_global_create(side_->server, &org_kde_kwin_blur_manager_interface, 1, side_.get(),
                                    &Side::bindKwins);
}

void MockBlurCompositor::withdrawKwins() {
    wl_global_remove(side_->kwins);
}

void MockBlurCompositor::offerGeneral(bool blurs) {
    side_->generalBlurs = blurs;
    side_->general = wl_global_create(side_->server, &ext_background_effect_manager_v1_interface, 1,
                                      side_.get(), &Side::bindGeneral);
}

void MockBlurCompositor::withdrawGeneral() {
    wl_global_remove(side_->general);
}

void MockBlurCompositor::sayWhetherItBlurs(bool blurs) {
    ASSERT_NE(side_->manager, nullptr);
    ext_background_effect_manager_v1_send_capabilities(side_->manager, blurs ? 1 : 0);
}

wl_display* MockBlurCompositor::client() const {
    return side_->client;
}

wl_surface* MockBlurCompositor::makeSurface() {
    if (side_->registry == nullptr) {
        side_->registry = wl_display_get_registry(side_->client);
        static const wl_registry_listener listener = {
            .global =
                [](void* self, wl_registry* registry, uint32_t name, const char* interface, uint32_t) {
                    if (std::strcmp(interface, wl_compositor_interface.name) == 0) {
                        static_cast<Side*>(self)->compositor = static_cast<wl_compositor*>(
                            wl_registry_bind(registry, name, &wl_compositor_interface, 1));
                    }
                },
            .global_remove = [](void*, wl_registry*, uint32_t) {},
        };
        wl_registry_add_listener(side_->registry, &listener, side_.get());
        exchange();
    }
    side_->surfaces.push_back(wl_compositor_create_surface(side_->compositor));
    return side_->surfaces.back();
}

void MockBlurCompositor::exchange() {
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

std::vector<std::string> MockBlurCompositor::takeRequests() {
    return std::exchange(side_->requests, {});
}

} // namespace amberquill
