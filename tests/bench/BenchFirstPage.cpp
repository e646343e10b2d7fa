// The icons of a first page: from the applications' paths to the images on the main thread, with the
// launcher's number of threads.
#include "platform/linux/applications/icons/LinuxApplicationIcons.h"
#include "platform/linux/applications/icons/workers/IconWorkerPool.h"
#include "platform/linux/applications/icons/workers/WorkerProgram.h"
#include "platform/linux/queue/EventLoopQueue.h"
#include "support/TemporaryTree.h"

#include <QCoreApplication>
#include <QDir>
#include <benchmark/benchmark.h>
#include <string>

namespace amberquill::desktop {
namespace {

using namespace Qt::StringLiterals;

constexpr int pageEdge = 120;
constexpr int pageIcons = 35;
constexpr int rasterEdge = 256;

// As in the launcher, with the decoder of the build tree.
class PageIcons {
public:
    explicit PageIcons(const TemporaryTree& tree)
        : icons_({.baseFolders = {},
                  .theme = {},
                  .cacheFolder = tree.path("cache"),
                  .version = {},
                  .locale = {}},
                 workers_) {}
    LinuxApplicationIcons* operator->() { return &icons_; }

private:
    IconWorkerPool workers_{
        {.program = installedWorkerProgram(QCoreApplication::applicationDirPath() + u"/../amberquill"_s,
                                           processEnvironment())}};
    LinuxApplicationIcons icons_;
};

// A desktop entry for each icon file. The files are from all parts of the theme.
class Page {
public:
    Page() {
        const QDir drawings(u"/usr/share/icons/Papirus/64x64/apps"_s);
        const auto names = drawings.entryList({u"*.svg"_s}, QDir::Files | QDir::NoSymLinks, QDir::Name);
        if (names.size() < pageIcons) {
            return;
        }
        PageIcons icons(tree_);
        tree_.makeFolder("raster");
        for (int number = 0; number < pageIcons; ++number) {
            const auto drawing = drawings.filePath(names[names.size() / pageIcons * number]);
            drawn_ += entry("drawn", number, drawing);
            const auto raster = tree_.path("raster") + u'/' + QString::number(number) + u".png"_s;
            icons->image(drawn_.last(), rasterEdge).save(raster);
            rasters_ += entry("raster", number, raster);
        }
    }

    [[nodiscard]] const TemporaryTree& tree() const { return tree_; }
    [[nodiscard]] const QStringList& drawn() const { return drawn_; }     // SVG files
    [[nodiscard]] const QStringList& rasters() const { return rasters_; } // PNG files of 256 pixels

private:
    QString entry(const std::string& kind, int number, const QString& icon) {
        return tree_.write("applications/" + kind + std::to_string(number) + ".desktop",
                           QByteArray("[Desktop Entry]\nType=Application\nName=Icon\nExec=true\nIcon=") +
                               icon.toUtf8() + "\n");
    }

    TemporaryTree tree_;
    QStringList drawn_;
    QStringList rasters_;
};

const Page& firstPage() {
    static const Page page;
    return page;
}

enum class Begin {
    Rested, // the decoder is started again
    Ready,
};

void showPage(benchmark::State& state, const QStringList& (Page::*applications)() const, Begin begin) {
    const auto& paths = (firstPage().*applications)();
    if (paths.isEmpty()) {
        state.SkipWithError("this machine does not have the theme Papirus");
        return;
    }
    EventLoopQueue queue;
    const Context context;
    PageIcons icons(firstPage().tree());
    const auto showAll = [&] {
        int missing = pageIcons;
        for (const auto& path : paths) {
            queue.compute(
                context, [&icons, path] { return icons->image(path, pageEdge); },
                [&](const QImage& image) {
                    missing -= 1;
                    if (image.isNull()) {
                        state.SkipWithError("an icon was not drawn");
                    }
                },
                Lane::Icons);
        }
        while (missing > 0) {
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        }
    };
    showAll();
    for ([[maybe_unused]] auto _ : state) {
        if (begin == Begin::Rested) {
            state.PauseTiming();
            icons->rest();
            state.ResumeTiming();
        }
        showAll();
    }
}
BENCHMARK_CAPTURE(showPage, drawn, &Page::drawn, Begin::Ready)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK_CAPTURE(showPage, drawnAfterRest, &Page::drawn, Begin::Rested)
    ->Unit(benchmark::kMillisecond)
    ->UseRealTime();
BENCHMARK_CAPTURE(showPage, raster, &Page::rasters, Begin::Ready)
    ->Unit(benchmark::kMillisecond)
    ->UseRealTime();
BENCHMARK_CAPTURE(showPage, rasterAfterRest, &Page::rasters, Begin::Rested)
    ->Unit(benchmark::kMillisecond)
    ->UseRealTime();

} // namespace
} // namespace amberquill::desktop
