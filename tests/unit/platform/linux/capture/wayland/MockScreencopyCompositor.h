#pragma once

#include <QByteArray>
#include <QString>
#include <atomic>
#include <cstdint>
#include <memory>

namespace amberquill {

// A compositor on its own thread, with a socket, whose outputs can be copied. Each output has one colour.
class MockScreencopyCompositor {
public:
    struct Behaviour {
        int outputs = 1;
        int chosen = 0; // the output for surfaces without one
        std::uint32_t format = 1;
        std::uint32_t width = 40;
        std::uint32_t height = 30;
        std::uint32_t stride = 160;
        bool offersCopies = true;
        bool offersLayers = true;
        bool proposes = true; // sends a layout when a copy is requested
        bool finishes = true; // requested copies
        bool fails = false;
    };

    explicit MockScreencopyCompositor(const Behaviour& behaviour);
    MockScreencopyCompositor(const MockScreencopyCompositor&) = delete;
    MockScreencopyCompositor& operator=(const MockScreencopyCompositor&) = delete;
    ~MockScreencopyCompositor();

    [[nodiscard]] QByteArray socket() const;

    // Applies from the next request on.
    void setFinishes(bool finishes);
    void setChosen(int output);
    // Answers the requests that are still unanswered.
    void failOwed();

    // The number of requested copies.
    [[nodiscard]] int copies() const;

private:
    class Side;

    std::unique_ptr<Side> side_;
};

} // namespace amberquill
