#include "data/LayoutCoding.h"
#include "data/LayoutFile.h"
#include "data/LayoutReconciler.h"
#include "data/NameOrder.h"
#include "data/PlaceMemory.h"
#include "data/SearchIndex.h"
#include "model/LauncherModel.h"
#include "model/LayoutStore.h"
#include "model/Pages.h"
#include "platform/Preferences.h"
#include "platform/linux/queue/EventLoopQueue.h"
#include "support/MemoryFileSystem.h"
#include "support/MemoryPreferences.h"
#include "views/BackgroundWash.h"

#include <benchmark/benchmark.h>
#include <random>

using namespace amberquill;

namespace {

std::vector<AppInfo> installedApps(std::int64_t count) {
    std::mt19937 random(1);
    std::vector<AppInfo> apps;
    for (std::int64_t i = 0; i < count; ++i) {
        apps.push_back({QStringLiteral("/usr/share/applications/org.example.application%1.desktop").arg(i),
                        QStringLiteral("Application %1 %2").arg(random() % 100).arg(i)});
    }
    return apps;
}

LaunchItems layoutOf(const std::vector<AppInfo>& apps) {
    LaunchItems items;
    for (const AppInfo& app : apps) {
        items.push_back(LaunchItem::app(app.path));
    }
    return items;
}

// Every application is where it was, as in nearly every scan.
void reconcileUnchanged(benchmark::State& state) {
    const std::vector<AppInfo> apps = installedApps(state.range(0));
    const LaunchItems items = layoutOf(apps);
    const NameOrder order;
    for ([[maybe_unused]] auto round : state) {
        benchmark::DoNotOptimize(LayoutReconciler::reconcile(items, apps, std::nullopt, order));
    }
    state.SetComplexityN(state.range(0));
}

// Every application is new, as at the first start.
void reconcileAllNew(benchmark::State& state) {
    const std::vector<AppInfo> apps = installedApps(state.range(0));
    const NameOrder order;
    for ([[maybe_unused]] auto round : state) {
        benchmark::DoNotOptimize(LayoutReconciler::reconcile({}, apps, std::nullopt, order));
    }
    state.SetComplexityN(state.range(0));
}

// Every application has moved to another folder.
void reconcileAllMoved(benchmark::State& state) {
    const std::vector<AppInfo> apps = installedApps(state.range(0));
    LaunchItems items;
    for (const AppInfo& app : apps) {
        items.push_back(LaunchItem::app(QStringLiteral("/opt") + app.path));
    }
    const NameOrder order;
    for ([[maybe_unused]] auto round : state) {
        benchmark::DoNotOptimize(LayoutReconciler::reconcile(items, apps, std::nullopt, order));
    }
    state.SetComplexityN(state.range(0));
}

// A layout that has lost every second application, with a memory of their places.
struct Lost {
    explicit Lost(std::int64_t count)
        : installed(installedApps(count)) {
        const LaunchItems all = layoutOf(installed);
        for (std::size_t i = 0; i < all.size(); i += 2) {
            left.push_back(all[i]);
            leftInstalled.push_back(installed[i]);
        }
        memory.remember(all, left, {});
    }

    std::vector<AppInfo> installed;
    LaunchItems left;
    std::vector<AppInfo> leftInstalled;
    PlaceMemory memory;
};

// A scan while places are remembered and no application returns.
void putNothingBack(benchmark::State& state) {
    Lost lost(state.range(0));
    for ([[maybe_unused]] auto round : state) {
        benchmark::DoNotOptimize(lost.memory.putBack(lost.left, lost.leftInstalled));
    }
}

void putAllBack(benchmark::State& state) {
    const Lost lost(state.range(0));
    for ([[maybe_unused]] auto round : state) {
        PlaceMemory memory = lost.memory;
        benchmark::DoNotOptimize(memory.putBack(lost.left, lost.installed));
    }
}

void rememberHalf(benchmark::State& state) {
    const Lost lost(state.range(0));
    const LaunchItems all = layoutOf(lost.installed);
    for ([[maybe_unused]] auto round : state) {
        PlaceMemory memory;
        benchmark::DoNotOptimize(memory.remember(all, lost.left, {}));
    }
}

void placeVisibleEntries(benchmark::State& state) {
    const LaunchItems items = layoutOf(installedApps(state.range(0)));
    const GridMetrics metrics{{1920, 1080}, 7, 5};
    for ([[maybe_unused]] auto round : state) {
        benchmark::DoNotOptimize(visibleEntries(items, metrics, 1, 0));
    }
}

void encodeLayout(benchmark::State& state) {
    const LaunchItems items = layoutOf(installedApps(state.range(0)));
    for ([[maybe_unused]] auto round : state) {
        benchmark::DoNotOptimize(encodeItems(items));
    }
}

void decodeLayout(benchmark::State& state) {
    const QByteArray text = encodeItems(layoutOf(installedApps(state.range(0))));
    for ([[maybe_unused]] auto round : state) {
        benchmark::DoNotOptimize(decodeItems(text));
    }
}

void encodeForExchange(benchmark::State& state) {
    const LayoutFile file{
        .exportedAt = {}, .columns = 7, .rows = 5, .items = layoutOf(installedApps(state.range(0)))};
    for ([[maybe_unused]] auto round : state) {
        benchmark::DoNotOptimize(encodeLayoutFile(file));
    }
}

void decodeForExchange(benchmark::State& state) {
    const QByteArray text = encodeLayoutFile(
        {.exportedAt = {}, .columns = 7, .rows = 5, .items = layoutOf(installedApps(state.range(0)))});
    for ([[maybe_unused]] auto round : state) {
        benchmark::DoNotOptimize(decodeLayoutFile(text));
    }
}

void indexNames(benchmark::State& state) {
    const std::vector<AppInfo> apps = installedApps(state.range(0));
    const NameOrder order;
    for ([[maybe_unused]] auto round : state) {
        benchmark::DoNotOptimize(SearchIndex(apps, order));
    }
}

// Typing a letter, including the items that are shown then. All names contain "a", one in a hundred "99",
// none "zebra".
void typeALetter(benchmark::State& state, const char* text) {
    EventLoopQueue queue;
    MemoryFileSystem files;
    MemoryPreferences preferences;
    const std::vector<AppInfo> apps = installedApps(state.range(0));
    LauncherModel model({queue, files, preferences, {}, [] { return std::vector<AppInfo>(); }, {}, {}});
    model.applyScan(apps);
    const QString typed = QString::fromLatin1(text);
    model.setSearchText(typed + QLatin1Char('x'));
    for ([[maybe_unused]] auto round : state) {
        model.setSearchText(typed);
        state.PauseTiming();
        model.setSearchText(typed + QLatin1Char('x'));
        state.ResumeTiming();
    }
}

// Saving on the main thread; the file is written in the background.
void saveLayout(benchmark::State& state) {
    EventLoopQueue queue;
    MemoryFileSystem files;
    LayoutStore store(queue, files, QStringLiteral("/data"));
    const LaunchItems items = layoutOf(installedApps(state.range(0)));
    for ([[maybe_unused]] auto round : state) {
        store.save(items);
    }
}

void paintWash(benchmark::State& state) {
    const QSize size(static_cast<int>(state.range(0)), static_cast<int>(state.range(0)) * 9 / 16);
    for ([[maybe_unused]] auto round : state) {
        benchmark::DoNotOptimize(backgroundWash(BackgroundTheme::Blue, size, 1));
    }
}

} // namespace

BENCHMARK(reconcileUnchanged)
    ->RangeMultiplier(10)
    ->Range(100, 100'000)
    ->Unit(benchmark::kMillisecond)
    ->Complexity();
BENCHMARK(reconcileAllNew)
    ->RangeMultiplier(10)
    ->Range(100, 100'000)
    ->Unit(benchmark::kMillisecond)
    ->Complexity();
BENCHMARK(reconcileAllMoved)
    ->RangeMultiplier(10)
    ->Range(100, 100'000)
    ->Unit(benchmark::kMillisecond)
    ->Complexity();
BENCHMARK(putNothingBack)->Arg(200)->Arg(10'000)->Unit(benchmark::kMillisecond);
BENCHMARK(putAllBack)->Arg(200)->Arg(8'000)->Unit(benchmark::kMillisecond);
BENCHMARK(rememberHalf)->Arg(200)->Arg(8'000)->Unit(benchmark::kMillisecond);
BENCHMARK(placeVisibleEntries)->RangeMultiplier(10)->Range(100, 100'000)->Unit(benchmark::kMicrosecond);
BENCHMARK(encodeLayout)->Arg(10'000)->Unit(benchmark::kMillisecond);
BENCHMARK(decodeLayout)->Arg(10'000)->Unit(benchmark::kMillisecond);
BENCHMARK(encodeForExchange)->Arg(10'000)->Unit(benchmark::kMillisecond);
BENCHMARK(decodeForExchange)->Arg(10'000)->Unit(benchmark::kMillisecond);
BENCHMARK(indexNames)->Arg(200)->Arg(10'000)->Arg(100'000)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(typeALetter, all, "a")->Arg(200)->Arg(10'000)->Arg(100'000)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(typeALetter, some, "99")
    ->Arg(200)
    ->Arg(10'000)
    ->Arg(100'000)
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(typeALetter, none, "zebr")
    ->Arg(200)
    ->Arg(10'000)
    ->Arg(100'000)
    ->Unit(benchmark::kMillisecond);
BENCHMARK(saveLayout)->Arg(200)->Arg(10'000)->Unit(benchmark::kMillisecond);
BENCHMARK(paintWash)->Arg(1920)->Arg(3840)->Unit(benchmark::kMillisecond);

BENCHMARK_MAIN();
