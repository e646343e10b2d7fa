// One pointer move during a drag, for layouts of several sizes. A mouse may send a thousand moves a second.
#include "data/FolderMetrics.h"
#include "data/LayoutCoding.h"
#include "model/LauncherModel.h"
#include "platform/linux/queue/EventLoopQueue.h"
#include "support/MemoryFileSystem.h"
#include "support/MemoryPreferences.h"

#include <QCoreApplication>
#include <benchmark/benchmark.h>
#include <cmath>

using namespace amberquill;

namespace {

const QUuid folderID(QStringLiteral("3F2504E0-4F89-11D3-9A0C-0305E82C3301"));

QString path(std::int64_t number) {
    return QStringLiteral("/usr/share/applications/org.example.application%1.desktop").arg(number);
}

// A launcher with a layout of this many items. The last is a folder of as many applications.
class Launcher {
public:
    explicit Launcher(std::int64_t count)
        : model_(servicesFor(count)) {
        model_.setSize({1920, 1080});
    }

    LauncherModel& model() { return model_; }
    void press(const QPointF& place) {
        start_ = place;
        moveTo(place);
        moveTo(place + QPointF(8, 0));
    }
    void moveTo(const QPointF& place) { model_.pointerChanged({start_, place}); }

private:
    LauncherModel::Services servicesFor(std::int64_t count) {
        LaunchItems items;
        Folder folder{folderID, QStringLiteral("All"), {}};
        for (std::int64_t number = 1; number < count; ++number) {
            items.push_back(LaunchItem::app(path(number)));
            folder.apps.append(path(count + number));
        }
        items.push_back(LaunchItem::folder(folder));
        files_.addFile(QStringLiteral("/data/Amberquill/layout.json"), encodeItems(items));
        return {.queue = queue_,
                .files = files_,
                .preferences = preferences_,
                .applicationSupport = QStringLiteral("/data"),
                .scan = [] { return std::vector<AppInfo>(); }};
    }

    EventLoopQueue queue_;
    MemoryFileSystem files_;
    MemoryPreferences preferences_;
    LauncherModel model_;
    QPointF start_;
};

// Back and forth within one slot.
void moveWithinASlot(benchmark::State& state) {
    Launcher launcher(state.range(0));
    const GridMetrics grid = launcher.model().metrics();
    launcher.model().goToPage(launcher.model().displayedPageCount() - 2);
    launcher.press(grid.cellCenter(3));
    const QPointF slot = grid.cellCenter(10) + QPointF(80, 0);
    double step = 0;
    for ([[maybe_unused]] auto round : state) {
        launcher.moveTo(slot + QPointF(std::fmod(++step, 7), 0));
    }
    if (!launcher.model().drag() || launcher.model().pendingKey().isEmpty()) {
        state.SkipWithError("no drag");
    }
}

// The same with the layout's folder, which is the last item.
void moveAFolderWithinASlot(benchmark::State& state) {
    Launcher launcher(state.range(0));
    LauncherModel& model = launcher.model();
    const GridMetrics grid = model.metrics();
    model.goToPage(model.displayedPageCount() - 1);
    const int own = static_cast<int>(state.range(0) - 1) % grid.slotsPerPage();
    launcher.press(grid.cellCenter(own));
    const QPointF slot = grid.cellCenter(own == 0 ? 1 : 0) + QPointF(80, 0);
    double step = 0;
    for ([[maybe_unused]] auto round : state) {
        launcher.moveTo(slot + QPointF(std::fmod(++step, 7), 0));
    }
    if (!model.drag() || !model.drag()->item.isFolder()) {
        state.SkipWithError("no drag");
    }
}

// From slot to slot: every move starts a timer and cancels the one before.
void moveToAnotherSlot(benchmark::State& state) {
    Launcher launcher(state.range(0));
    const GridMetrics grid = launcher.model().metrics();
    launcher.model().goToPage(launcher.model().displayedPageCount() - 2);
    launcher.press(grid.cellCenter(3));
    int slot = 0;
    for ([[maybe_unused]] auto round : state) {
        slot = slot == 20 ? 10 : slot + 1;
        launcher.moveTo(grid.cellCenter(slot) + QPointF(80, 0));
    }
    if (!launcher.model().drag() || launcher.model().pendingKey().isEmpty()) {
        state.SkipWithError("no drag");
    }
}

// The first move after a change of the layout, which has to find the items again.
void moveAfterAChange(benchmark::State& state) {
    Launcher launcher(state.range(0));
    LauncherModel& model = launcher.model();
    const GridMetrics grid = model.metrics();
    model.goToPage(model.displayedPageCount() - 2);
    launcher.press(grid.cellCenter(3));
    const std::size_t first = static_cast<std::size_t>(model.page() * grid.slotsPerPage());
    std::size_t place = 0;
    for ([[maybe_unused]] auto round : state) {
        state.PauseTiming();
        place = (place + 1) % 20;
        model.move(model.draggedID(), first + place);
        state.ResumeTiming();
        launcher.moveTo(grid.cellCenter(static_cast<int>(place)) + QPointF(80, 0));
    }
}

// In the panel of the folder.
void moveInAFolder(benchmark::State& state) {
    Launcher launcher(state.range(0));
    LauncherModel& model = launcher.model();
    model.openFolder(folderID);
    const auto count = static_cast<int>(model.folder(folderID)->apps.size());
    const FolderMetrics panel = FolderMetrics::of(count, model.metrics());
    int index = 0; // of a visible one
    while (panel.cellCenter(index).y() < 300) {
        index += panel.columns;
    }
    launcher.press(panel.cellCenter(index));
    const QPointF cell = panel.cellCenter(index + 1);
    double step = 0;
    for ([[maybe_unused]] auto round : state) {
        launcher.moveTo(cell + QPointF(std::fmod(++step, 7), 0));
    }
    if (!model.drag() || !model.drag()->fromFolder) {
        state.SkipWithError("no drag");
    }
}

void pressAndBegin(benchmark::State& state) {
    Launcher launcher(state.range(0));
    LauncherModel& model = launcher.model();
    const QPointF tile = model.metrics().cellCenter(3);
    model.goToPage(model.displayedPageCount() - 2);
    for ([[maybe_unused]] auto round : state) {
        launcher.press(tile);
        state.PauseTiming();
        model.pointerCancelled();
        state.ResumeTiming();
    }
}

} // namespace

BENCHMARK(moveWithinASlot)->Arg(100)->Arg(10'000)->Arg(100'000)->Unit(benchmark::kMicrosecond);
BENCHMARK(moveAFolderWithinASlot)->Arg(100)->Arg(10'000)->Arg(100'000)->Unit(benchmark::kMicrosecond);
BENCHMARK(moveToAnotherSlot)
    ->Arg(100)
    ->Arg(10'000)
    ->Arg(100'000)
    ->Iterations(300)
    ->Unit(benchmark::kMicrosecond);
BENCHMARK(moveAfterAChange)
    ->Arg(100)
    ->Arg(10'000)
    ->Arg(100'000)
    ->Iterations(300)
    ->Unit(benchmark::kMicrosecond);
BENCHMARK(moveInAFolder)->Arg(100)->Arg(10'000)->Arg(100'000)->Unit(benchmark::kMicrosecond);
BENCHMARK(pressAndBegin)->Arg(100)->Arg(10'000)->Arg(100'000)->Iterations(50)->Unit(benchmark::kMicrosecond);

int main(int argc, char** argv) {
    const QCoreApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
