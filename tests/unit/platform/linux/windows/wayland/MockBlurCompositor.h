#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

struct wl_display;
struct wl_surface;

namespace amberquill {

// A compositor in this process, on the other end of a socket, that can blur by either protocol and writes
// down what it is asked. Nothing moves but in `exchange`.
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
    // Tells those who took the general protocol up.
    void sayWhetherItBlurs(bool blurs);

    // The client's end. It is connected for as long as the compositor lives.
    [[nodiscard]] wl_display* client() const;
    [[nodiscard]] wl_surface* makeSurface();

    // Lets both sides read and handle everything that has been sent.
    void exchange();

    // What was asked, in order, and forgotten.
    [[nodiscard]] std::vector<std::string> takeRequests();

private:
    class Side;

    std::unique_ptr<Side> side_;
};

} // namespace amberquill
