// The backdrop: reading the screen at a smaller size, and blurring it. Needs an X server: $DISPLAY.
#include "platform/linux/capture/x11/X11ScreenCapture.h"
#include "views/BackgroundWash.h"
#include "views/ImageEffects.h"

#include <QColor>
#include <benchmark/benchmark.h>

using namespace amberquill;
using namespace amberquill::desktop;

namespace {

constexpr int shrink = 8;
constexpr double sigma = 30.0 / shrink; // points
constexpr CapturePatience patient{.forEach = std::chrono::seconds(10), .forAll = std::chrono::seconds(10)};

void capture(benchmark::State& state, bool sharesMemory, bool blurs, bool alsoWhole) {
    X11ScreenCapture screen({}, patient);
    if (!sharesMemory) {
        screen.shareNoMemory();
    }
    const QRect area(0, 0, static_cast<int>(state.range(0)), static_cast<int>(state.range(1)));
    for ([[maybe_unused]] const auto& round : state) {
        QImage image = screen.capture({area}, shrink, alsoWhole).shrunk;
        if (image.isNull()) {
            state.SkipWithError("nothing to read");
            return;
        }
        if (blurs) {
            image.convertTo(QImage::Format_RGBX64);
            blurColours(image, sigma);
        }
        benchmark::DoNotOptimize(image.constBits());
    }
}

void captureAndBlur(benchmark::State& state) {
    capture(state, true, true, false);
}

void captureAlone(benchmark::State& state) {
    capture(state, true, false, false);
}

void captureWithoutSharedMemory(benchmark::State& state) {
    capture(state, false, false, false);
}

void captureWithTheWhole(benchmark::State& state) {
    capture(state, true, false, true);
}

// With a new connection and new shared memory.
void firstCapture(benchmark::State& state) {
    for ([[maybe_unused]] const auto& round : state) {
        X11ScreenCapture screen({}, patient);
        const QImage image = screen.capture({{0, 0, 1920, 1080}}, shrink, false).shrunk;
        if (image.isNull()) {
            state.SkipWithError("nothing to read");
            return;
        }
        benchmark::DoNotOptimize(image.constBits());
    }
}

void blurAlone(benchmark::State& state) {
    QImage image(static_cast<int>(state.range(0)) / shrink, static_cast<int>(state.range(1)) / shrink,
                 QImage::Format_RGBX64);
    image.fill(QColor(0xFF336699));
    for ([[maybe_unused]] const auto& round : state) {
        blurColours(image, sigma);
        benchmark::DoNotOptimize(image.constBits());
    }
}

void compose(benchmark::State& state) {
    QImage backdrop(static_cast<int>(state.range(0)) / shrink, static_cast<int>(state.range(1)) / shrink,
                    QImage::Format_RGBX64);
    backdrop.fill(QColor(0xFF336699));
    const QSize size(static_cast<int>(state.range(0)), static_cast<int>(state.range(1)));
    for ([[maybe_unused]] const auto& round : state) {
        const QImage image = opaqueBackground(BackgroundTheme::Blue, size, 1, backdrop);
        benchmark::DoNotOptimize(image.constBits());
    }
}

} // namespace

BENCHMARK(compose)->Args({1920, 1080})->Args({3840, 2160})->Unit(benchmark::kMillisecond);
BENCHMARK(captureAndBlur)->Args({1920, 1080})->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(captureAlone)->Args({1920, 1080})->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(captureWithTheWhole)->Args({1920, 1080})->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(captureWithoutSharedMemory)->Args({1920, 1080})->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(firstCapture)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(blurAlone)->Args({1920, 1080})->Args({3840, 2160})->Unit(benchmark::kMillisecond);
BENCHMARK_MAIN();
