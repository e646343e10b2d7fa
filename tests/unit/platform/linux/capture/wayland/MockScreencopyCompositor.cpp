#include "MockScreencopyCompositor.h"

#include "wlr-layer-shell-unstable-v1-server-protocol.h"
#include "wlr-screencopy-unstable-v1-server-protocol.h"

#include <QTemporaryDir>
#include <cstring>
#include <future>
#include <gtest/gtest.h>
#include <mutex>
#include <string>
#include <sys/eventfd.h>
#include <thread>
#include <unistd.h>
#include <vector>
#include <wayland-server.h>

namespace amberquill {

class MockScreencopyCompositor::Side {
public:
    explicit Side(const Behaviour& wanted)
        : behaviour(wanted)
        , server(wl_display_create())
        , wake(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)) {
        wl_display_init_shm(server);
        socket = (folder.path() + QStringLiteral("/wayland")).toUtf8();
        EXPECT_EQ(wl_display_add_socket(server, socket.constData()), 0);
        wl_global_create(server, &wl_compositor_interface, 1, this, &bindCompositor);
        for (int i = 0; i < behaviour.outputs; ++i) {
            outputs.push_back(std::make_unique<Output>(Output{*this, i}));
            wl_global_create(server, &wl_output_interface, 4, outputs.back().get(), &bindOutput);
        }
        if (behaviour.offersCopies) {
            wl_global_create(server, &zwlr_screencopy_manager_v1_interface, 1, this, &bindManager);
        }
        if (behaviour.offersLayers) {
            wl_global_create(server, &zwlr_layer_shell_v1_interface, 1, this, &bindLayers);
        }
        awakening = wl_event_loop_add_fd(
            wl_display_get_event_loop(server), wake, WL_EVENT_READABLE,
            [](int descriptor, uint32_t, void* self) {
                std::uint64_t count = 0;
                static_cast<void>(::read(descriptor, &count, sizeof count));
                static_cast<Side*>(self)->failOwed();
                return 0;
            },
            this);
        thread = std::thread([this] { wl_display_run(server); });
    }
    Side(const Side&) = delete;
    Side& operator=(const Side&) = delete;
    ~Side() {
        isEnding = true;
        awaken();
        thread.join();
        wl_display_destroy_clients(server);
        wl_event_source_remove(awakening);
        wl_display_destroy(server);
        ::close(wake);
    }

    void awaken() const {
        const std::uint64_t one = 1;
        static_cast<void>(::write(wake, &one, sizeof one));
    }

    struct Output {
        Side& side;
        int number;
        std::vector<wl_resource*> bound = {};
    };

    void failOwed() {
        if (isEnding) {
            wl_display_terminate(server);
        }
        for (wl_resource* frame : std::exchange(owed, {})) {
            zwlr_screencopy_frame_v1_send_failed(frame);
        }
    }

    static Side& of(wl_resource* resource) {
        return *static_cast<Side*>(wl_resource_get_user_data(resource));
    }

    static void bindOutput(wl_client* client, void* data, uint32_t version, uint32_t id) {
        static const struct wl_output_interface implementation = {
            .release = [](wl_client*, wl_resource* on) { wl_resource_destroy(on); }};
        auto* const output = static_cast<Output*>(data);
        wl_resource* const resource =
            wl_resource_create(client, &wl_output_interface, static_cast<int>(version), id);
        wl_resource_set_implementation(resource, &implementation, output, [](wl_resource* gone) {
            std::erase(static_cast<Output*>(wl_resource_get_user_data(gone))->bound, gone);
        });
        output->bound.push_back(resource);
        wl_output_send_geometry(resource, 0, 0, 0, 0, 0, "", "", WL_OUTPUT_TRANSFORM_NORMAL);
        wl_output_send_name(resource, ("OUT-" + std::to_string(output->number)).c_str());
        wl_output_send_done(resource);
    }

    static void bindManager(wl_client* bound, void* self, uint32_t, uint32_t id) {
        static const struct zwlr_screencopy_manager_v1_interface manager = {
            .capture_output = &makeFrame,
            .capture_output_region = nullptr,
            .destroy = [](wl_client*, wl_resource* on) { wl_resource_destroy(on); },
        };
        wl_resource_set_implementation(
            wl_resource_create(bound, &zwlr_screencopy_manager_v1_interface, 1, id), &manager, self, nullptr);
    }

    // A frame and its output.
    struct Frame {
        Side& side;
        int output;
    };

    static void makeFrame(wl_client* client, wl_resource* on, uint32_t id, int32_t pointer,
                          wl_resource* output) {
        static const struct zwlr_screencopy_frame_v1_interface frame = {
            .copy = &copy,
            .destroy = [](wl_client*, wl_resource* at) { wl_resource_destroy(at); },
        };
        Side& side = of(on);
        EXPECT_EQ(pointer, 0) << "the pointer is not wanted";
        ++side.copies;
        wl_resource* const made = wl_resource_create(client, &zwlr_screencopy_frame_v1_interface, 1, id);
        auto* const about = new Frame{side, static_cast<Output*>(wl_resource_get_user_data(output))->number};
        wl_resource_set_implementation(made, &frame, about, [](wl_resource* gone) {
            auto* const data = static_cast<Frame*>(wl_resource_get_user_data(gone));
            std::erase(data->side.owed, gone);
            delete data;
        });
        const Behaviour& does = side.behaviour;
        if (!does.proposes) {
            side.owed.push_back(made);
        } else if (does.fails) {
            zwlr_screencopy_frame_v1_send_failed(made);
        } else {
            zwlr_screencopy_frame_v1_send_buffer(made, does.format, does.width, does.height, does.stride);
        }
    }

    static void copy(wl_client*, wl_resource* on, wl_resource* buffer) {
        const auto* const frame = static_cast<Frame*>(wl_resource_get_user_data(on));
        if (!frame->side.finishes) {
            frame->side.owed.push_back(on);
            return;
        }
        wl_shm_buffer* const memory = wl_shm_buffer_get(buffer);
        ASSERT_NE(memory, nullptr);
        wl_shm_buffer_begin_access(memory);
        std::memset(wl_shm_buffer_get_data(memory), 10 * (frame->output + 1),
                    static_cast<std::size_t>(wl_shm_buffer_get_stride(memory)) *
                        static_cast<std::size_t>(wl_shm_buffer_get_height(memory)));
        wl_shm_buffer_end_access(memory);
        zwlr_screencopy_frame_v1_send_flags(on, 0);
        zwlr_screencopy_frame_v1_send_ready(on, 0, 0, 0);
    }

    static void bindLayers(wl_client* bound, void* self, uint32_t, uint32_t id) {
        static const struct zwlr_layer_shell_v1_interface shell = {.get_layer_surface = &makeLayer};
        wl_resource_set_implementation(wl_resource_create(bound, &zwlr_layer_shell_v1_interface, 1, id),
                                       &shell, self, nullptr);
    }

    static void makeLayer(wl_client* client, wl_resource* on, uint32_t id, wl_resource* surface,
                          wl_resource* output, uint32_t layer, const char*) {
        static const struct zwlr_layer_surface_v1_interface implementation = {
            .set_size = [](wl_client*, wl_resource*, uint32_t, uint32_t) {},
            .set_anchor = nullptr,
            .set_exclusive_zone = nullptr,
            .set_margin = nullptr,
            .set_keyboard_interactivity = nullptr,
            .get_popup = nullptr,
            .ack_configure = [](wl_client*, wl_resource*, uint32_t) {},
            .destroy = [](wl_client*, wl_resource* at) { wl_resource_destroy(at); },
        };
        EXPECT_EQ(output, nullptr) << "the choice is the compositor's";
        EXPECT_EQ(layer, static_cast<uint32_t>(ZWLR_LAYER_SHELL_V1_LAYER_BACKGROUND));
        wl_resource* const made = wl_resource_create(client, &zwlr_layer_surface_v1_interface, 1, id);
        wl_resource_set_implementation(made, &implementation, &of(on), nullptr);
        static_cast<Surface*>(wl_resource_get_user_data(surface))->layer = made;
    }

    struct Surface {
        Side& side;
        wl_resource* layer = nullptr;
        bool isConfigured = false;
        bool hasBuffer = false;
    };

    static void bindCompositor(wl_client* bound, void* self, uint32_t, uint32_t id) {
        static const struct wl_compositor_interface compositor = {
            .create_surface = &makeSurface,
            .create_region =
                [](wl_client* client, wl_resource*, uint32_t region) {
                    static const struct wl_region_interface implementation = {
                        .destroy = [](wl_client*, wl_resource* at) { wl_resource_destroy(at); },
                        .add = nullptr,
                        .subtract = nullptr,
                    };
                    wl_resource_set_implementation(
                        wl_resource_create(client, &wl_region_interface, 1, region), &implementation, nullptr,
                        nullptr);
                },
        };
        wl_resource_set_implementation(wl_resource_create(bound, &wl_compositor_interface, 1, id),
                                       &compositor, self, nullptr);
    }

    static void makeSurface(wl_client* client, wl_resource* on, uint32_t id) {
        static const struct wl_surface_interface implementation = [] {
            struct wl_surface_interface surface = {};
            surface.destroy = [](wl_client*, wl_resource* at) { wl_resource_destroy(at); };
            surface.attach = [](wl_client*, wl_resource* at, wl_resource* buffer, int32_t, int32_t) {
                static_cast<Surface*>(wl_resource_get_user_data(at))->hasBuffer = buffer != nullptr;
            };
            surface.set_input_region = [](wl_client*, wl_resource*, wl_resource*) {};
            surface.commit = &commit;
            return surface;
        }();
        wl_resource* const made = wl_resource_create(client, &wl_surface_interface, 1, id);
        wl_resource_set_implementation(made, &implementation, new Surface{of(on)}, [](wl_resource* gone) {
            delete static_cast<Surface*>(wl_resource_get_user_data(gone));
        });
    }

    static void commit(wl_client* client, wl_resource* on) {
        auto* const surface = static_cast<Surface*>(wl_resource_get_user_data(on));
        if (!surface->isConfigured) {
            EXPECT_FALSE(surface->hasBuffer) << "before it is configured";
            surface->isConfigured = true;
            zwlr_layer_surface_v1_send_configure(surface->layer, 1, 1, 1);
            return;
        }
        const auto& output = surface->side.outputs[static_cast<std::size_t>(surface->side.chosen)];
        for (wl_resource* bound : output->bound) {
            if (wl_resource_get_client(bound) == client) {
                wl_surface_send_enter(on, bound);
            }
        }
    }

    Behaviour behaviour;
    std::atomic<bool> finishes = behaviour.finishes;
    std::atomic<int> chosen = behaviour.chosen;
    std::atomic<int> copies = 0;
    std::atomic<bool> isEnding = false;
    QTemporaryDir folder;
    QByteArray socket;
    wl_display* server;
    int wake;
    wl_event_source* awakening = nullptr;
    std::vector<std::unique_ptr<Output>> outputs;
    std::vector<wl_resource*> owed; // frames
    std::thread thread;
};

MockScreencopyCompositor::MockScreencopyCompositor(const Behaviour& behaviour)
    : side_(std::make_unique<Side>(behaviour)) {}

MockScreencopyCompositor::~MockScreencopyCompositor() = default;

QByteArray MockScreencopyCompositor::socket() const {
    return side_->socket;
}

void MockScreencopyCompositor::setFinishes(bool finishes) {
    side_->finishes = finishes;
}

void MockScreencopyCompositor::setChosen(int output) {
    side_->chosen = output;
}

void MockScreencopyCompositor::failOwed() {
    side_->awaken();
}

int MockScreencopyCompositor::copies() const {
    return side_->copies;
}

} // namespace amberquill
