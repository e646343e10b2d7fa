#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

struct wl_display;
struct wl_surface;

namespace amberquill {

// A compositor in this process, on the other end of a socket. It offers either blur protocol and records
// requests. It handles them only in `exchange`.
class MockBlurCompositor {
public:
    MockBlurCompositor();
    MockBlurCompositor(const MockBlurCompositor&) = delete;
    MockBlurCompositor& operator=(const MockBlurCompositor&) = delete;
    ~MockBlurCompositor();

    void offerKwins();
    void withdrawKwins();
    void offerGeneral(bool blurs);
    void withdrawGeneral();
    // Sends the capabilities to clients of the general protocol.
    void sayWhetherItBlurs(bool blurs);

    // The client's end. It is connected for as long as the compositor lives.
    [[nodiscard]] wl_display* client() const;
    [[nodiscard]] wl_surface* makeSurface();

    // Makes both sides read and handle everything that was sent.
    void exchange();

    // Returns the recorded requests, in order, and clears them.
    [[nodiscard]] std::vector<std::string> takeRequests();

private:
    class Side;

    std::unique_ptr<Side> side_;
};

} // namespace amberquill
