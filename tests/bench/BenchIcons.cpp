// Finding and drawing icons. Warm file cache; "first": in a process that has just started.
#include "platform/linux/applications/icons/lookup/IconLookup.h"
#include "platform/linux/decoder/pictures/IconDecoder.h"
#include "platform/linux/decoder/pictures/ImageFitting.h"
#include "support/TemporaryTree.h"

#include <QBuffer>
#include <QDir>
#include <QGuiApplication>
#include <QPainter>
#include <benchmark/benchmark.h>

namespace amberquill::desktop {
namespace {

using namespace Qt::StringLiterals;

constexpr int edge = 120;

// A theme of a common size: 24 directories of 400 icons, without a cache file. Made once.
const TemporaryTree& largeTheme() {
    static const TemporaryTree tree;
    static const bool isMade = [] {
        QByteArray names;
        QByteArray groups;
        for (const int size : {16, 22, 24, 32, 48, 64, 96, 128}) {
            for (const auto* const context : {"apps", "places", "status"}) {
                const auto path = QByteArray::number(size) + '/' + context;
                names += path + ',';
                groups += "[" + path + "]\nSize=" + QByteArray::number(size) + "\nType=Fixed\n";
                for (int icon = 0; icon < 400; ++icon) {
                    tree.write(("icons/large/" + path + "/" + context + QByteArray::number(icon) + ".png")
                                   .toStdString(),
                               "");
                }
            }
        }
        tree.write("icons/large/index.theme",
                   "[Icon Theme]\nName=Large\nDirectories=" + names + "\n" + groups);
        return true;
    }();
    benchmark::DoNotOptimize(isMade);
    return tree;
}

// Every sixth icon is not in the theme.
QString iconNumber(int number) {
    return (number % 6 == 5 ? u"missing"_s : u"apps"_s) + QString::number(number);
}

void firstLookups(benchmark::State& state) {
    const QStringList folders{largeTheme().path("icons")};
    for ([[maybe_unused]] auto _ : state) {
        const IconLookup lookup(folders, u"large"_s);
        for (int i = 0; i < state.range(0); ++i) {
            benchmark::DoNotOptimize(lookup.find(iconNumber(i), edge));
        }
    }
}
BENCHMARK(firstLookups)->Arg(35)->Arg(200)->Unit(benchmark::kMillisecond);

// The themes of this machine, if it has them.
void firstLookupsIn(benchmark::State& state, const char* theme) {
    const QStringList folders{u"/usr/share/icons"_s, u"/usr/share/pixmaps"_s};
    const auto name = QString::fromUtf8(theme);
    const auto apps = QDir(u"/usr/share/icons/"_s + name).exists();
    if (!apps) {
        state.SkipWithError("this machine does not have the theme");
        return;
    }
    const QStringList known{
        u"firefox"_s,     u"utilities-terminal"_s, u"system-file-manager"_s, u"accessories-calculator"_s,
        u"thunderbird"_s, u"preferences-system"_s, u"help-browser"_s};
    for ([[maybe_unused]] auto _ : state) {
        const IconLookup lookup(folders, name);
        for (int i = 0; i < state.range(0); ++i) {
            const bool isKnown = i % 5 != 4;
            benchmark::DoNotOptimize(
                lookup.find(isKnown ? known[i % known.size()] : u"missing"_s + QString::number(i), edge));
        }
    }
}
BENCHMARK_CAPTURE(firstLookupsIn, hicolor, "hicolor")->Arg(35)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(firstLookupsIn, Adwaita, "Adwaita")->Arg(35)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(firstLookupsIn, breeze, "breeze")->Arg(35)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(firstLookupsIn, Papirus, "Papirus")->Arg(35)->Unit(benchmark::kMillisecond);

void repeatedLookups(benchmark::State& state) {
    const IconLookup lookup({largeTheme().path("icons")}, u"large"_s);
    for ([[maybe_unused]] auto _ : state) {
        for (int i = 0; i < state.range(0); ++i) {
            benchmark::DoNotOptimize(lookup.find(iconNumber(i), edge));
        }
    }
}
BENCHMARK(repeatedLookups)->Arg(35)->Arg(200)->Unit(benchmark::kMillisecond);

// An image that compresses about as well as an application's icon.
QImage drawnPicture(int size) {
    QImage image(size, size, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    QLinearGradient gradient(0, 0, size, size);
    gradient.setColorAt(0, QColor(250, 180, 60));
    gradient.setColorAt(1, QColor(60, 90, 230));
    painter.setBrush(gradient);
    painter.drawRoundedRect(QRectF(4, 4, size - 8, size - 8), size / 5.0, size / 5.0);
    for (int i = 0; i < 12; ++i) {
        painter.setBrush(QColor::fromHsv(i * 30, 200, 220, 180));
        painter.drawEllipse(QPointF(size * (0.2 + 0.05 * i), size * (0.8 - 0.05 * i)), size / 8.0,
                            size / 10.0);
    }
    painter.end();
    return image;
}

QByteArray png(int size) {
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    drawnPicture(size).save(&buffer, "png");
    return bytes;
}

void decodePng(benchmark::State& state) {
    const auto bytes = png(static_cast<int>(state.range(0)));
    for ([[maybe_unused]] auto _ : state) {
        benchmark::DoNotOptimize(decodedIcon(bytes, edge, Fonts::Present));
    }
}
BENCHMARK(decodePng)->Arg(48)->Arg(120)->Arg(128)->Arg(256)->Arg(512)->Arg(1024)->Unit(
    benchmark::kMillisecond);

void decodeThirtyFivePng(benchmark::State& state) {
    const auto bytes = png(256);
    for ([[maybe_unused]] auto _ : state) {
        for (int i = 0; i < 35; ++i) {
            benchmark::DoNotOptimize(decodedIcon(bytes, edge, Fonts::Present));
        }
    }
}
BENCHMARK(decodeThirtyFivePng)->Unit(benchmark::kMillisecond);

// A drawing of `shapes` shapes, half of them with a gradient.
QByteArray drawing(int shapes) {
    QByteArray body =
        R"(<linearGradient id="g"><stop offset="0" stop-color="#fa5"/><stop offset="1" stop-color="#46f"/></linearGradient>)";
    for (int i = 0; i < shapes; ++i) {
        const auto at = QByteArray::number(i % 40);
        body += "<path fill=\"" + QByteArray(i % 2 == 0 ? "url(#g)" : "#c36") + "\" d=\"M" + at + " 4 C " +
                at + " 20 40 30 44 " + at + " S 10 60 " + at + " 50 Z\"/>";
    }
    return R"(<svg xmlns="http://www.w3.org/2000/svg" viewBox="0 0 64 64">)" + body + "</svg>";
}

void drawSvg(benchmark::State& state) {
    const auto text = drawing(static_cast<int>(state.range(0)));
    for ([[maybe_unused]] auto _ : state) {
        benchmark::DoNotOptimize(decodedIcon(text, edge, Fonts::Present));
    }
}
BENCHMARK(drawSvg)->Arg(10)->Arg(100)->Arg(1'000)->Unit(benchmark::kMillisecond);

void fit(benchmark::State& state) {
    const auto image = drawnPicture(static_cast<int>(state.range(0)));
    for ([[maybe_unused]] auto _ : state) {
        benchmark::DoNotOptimize(fittedImage(image, edge));
    }
}
BENCHMARK(fit)->Arg(48)->Arg(128)->Arg(256)->Arg(512)->Arg(1024)->Unit(benchmark::kMillisecond);

} // namespace
} // namespace amberquill::desktop

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QGuiApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
