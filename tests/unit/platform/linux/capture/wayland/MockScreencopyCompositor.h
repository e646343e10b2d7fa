#pragma once

#include <QByteArray>
#include <QString>
#include <atomic>
#include <cstdint>
#include <memory>

namespace amberquill {

// A compositor on a thread of its own, with a socket, whose outputs can be copied. Each output is of one
// colour.
class MockScreencopyCompositor {
public:
    struct Behaviour {
        int outputs = 1;
        int chosen = 0; // the output for surfaces that name none
        std::uint32_t format = 1;
        std::uint32_t width = 40;
        std::uint32_t height = 30;
        std::uint32_t stride = 160;
        bool offersCopies = true;
        bool offersLayers = true;
        bool proposes = true; // a layout, when a copy is asked for
        bool finishes = true; // copies that were asked for
        bool fails = false;
    };

    explicit MockScreencopyCompositor(const Behaviour& behaviour);
    MockScreencopyCompositor(const MockScreencopyCompositor&) = delete;
    MockScreencopyCompositor& operator=(const MockScreencopyCompositor&) = delete;
    ~MockScreencopyCompositor();

    [[nodiscard]] QByteArray socket() const;

    // From now on.
    void setFinishes(bool finishes);
    void setChosen(int output);
    // Answers what was not answered.
    void failOwed();

    // How many copies were asked for.
    [[nodiscard]] int copies() const;

private:
    class Side;

    std::unique_ptr<Side> side_;
};

} // namespace amberquill
