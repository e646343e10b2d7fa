#pragma once

#include "platform/linux/wayland/EventQueue.h"

#include <QDeadlineTimer>
#include <memory>

struct wl_compositor;
struct wl_output;
struct wl_shm;
struct zwlr_layer_shell_v1;

namespace amberquill::desktop {

class Globals;

// Finds out which output a compositor would choose now for a window that names none: it makes a transparent
// surface of one pixel in the lowest layer of the desktop (wlr-layer-shell-unstable-v1) and reads the output
// that the surface enters.
class OutputChoice {
public:
    // All arguments outlive this object.
    OutputChoice(EventQueue& events, const Globals& globals, wl_shm* shm);
    OutputChoice(const OutputChoice&) = delete;
    OutputChoice& operator=(const OutputChoice&) = delete;
    ~OutputChoice();

    // Null: the compositor does not answer in time.
    [[nodiscard]] const wl_output* ask(QDeadlineTimer deadline);

private:
    EventQueue& events_;
    wl_shm* shm_;
    std::unique_ptr<wl_compositor, void (*)(wl_compositor*)> compositor_;
    std::unique_ptr<zwlr_layer_shell_v1, void (*)(zwlr_layer_shell_v1*)> layers_;
};

} // namespace amberquill::desktop
