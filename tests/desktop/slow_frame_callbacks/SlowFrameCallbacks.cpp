// A library to be preloaded into a Wayland client. It delays the destruction of a callback on any but the
// main thread. Qt destroys a frame's callback on a thread of its own, when the compositor has sent it.
#include <chrono>
#include <dlfcn.h>
#include <string_view>
#include <thread>
#include <unistd.h>
#include <wayland-client-core.h>

extern "C" __attribute__((visibility("default"))) void wl_proxy_destroy(wl_proxy* proxy) {
    using namespace std::chrono_literals;
    constexpr auto delay = 50ms;
    static const auto destroy = reinterpret_cast<void (*)(wl_proxy*)>(dlsym(RTLD_NEXT, "wl_proxy_destroy"));
    if (gettid() != getpid() && std::string_view(wl_proxy_get_class(proxy)) == "wl_callback") {
        std::this_thread::sleep_for(delay);
    }
    destroy(proxy);
}
