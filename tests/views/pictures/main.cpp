// Draws every state of the launcher into PNG files:
//
//     view_pictures [--renderer opengl|software] [--theme blue|purple|green] [--size 1920x1080]
//                   [--icons made-up|FOLDER] [--state NAME]... INTO
//
// QT_SCALE_FACTOR is the device pixels in a point. FOLDER holds pictures of applications, as SVG files; the
// applications are named after them.
#include "FileIcons.h"
#include "States.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QDir>
#include <cstdio>
#include <memory>
#include <optional>

using namespace amberquill;
using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype mostApplications = 110;

struct Order {
    QSGRendererInterface::GraphicsApi renderer = QSGRendererInterface::Software;
    QSize size{1920, 1080};
    BackgroundTheme theme = BackgroundTheme::Blue;
    std::unique_ptr<FileIcons> icons; // null: made up
    QStringList states;               // none: all
    QDir into;
};

QSGRendererInterface::GraphicsApi rendererOf(const QCommandLineParser& options) {
    return options.value(u"renderer"_s) == u"opengl"_s ? QSGRendererInterface::OpenGL
                                                       : QSGRendererInterface::Software;
}

std::optional<Order> orderOf(const QCommandLineParser& options) {
    Order order;
    order.renderer = rendererOf(options);
    const QStringList size = options.value(u"size"_s).split(u'x');
    order.size = size.size() == 2 ? QSize(size[0].toInt(), size[1].toInt()) : QSize();
    order.theme = backgroundTheme(options.value(u"theme"_s)).value_or(BackgroundTheme::Blue);
    if (options.value(u"icons"_s) != u"made-up"_s) {
        order.icons = std::make_unique<FileIcons>(options.value(u"icons"_s));
    }
    order.states = options.values(u"state"_s);
    const QStringList rest = options.positionalArguments();
    if (order.size.isEmpty() || rest.size() != 1 || (order.icons && order.icons->names().isEmpty())) {
        return std::nullopt;
    }
    order.into = QDir(rest.front());
    return order.into.mkpath(u"."_s) ? std::optional(std::move(order)) : std::nullopt;
}

bool draw(const State& state, const Order& order) {
    ViewStage stage;
    if (order.icons) {
        stage.iconSource_ = order.icons.get();
        const QStringList names = order.icons->names();
        stage.installed_ = ModelStage::apps(static_cast<int>(std::min(names.size(), mostApplications)));
        for (std::size_t i = 0; i < stage.installed_.size(); ++i) {
            stage.installed_[i].name = names[static_cast<qsizetype>(i)];
        }
    }
    stage.begin(order.size);
    stage.preferences_.setString(u"backgroundTheme"_s, rawValue(order.theme));
    state.enter(stage);
    const auto renderer = stage.window_->rendererInterface()->graphicsApi();
    const bool saved =
        renderer == order.renderer && stage.picture().save(order.into.filePath(state.name + u".png"_s));
    stage.end();
    return saved;
}

} // namespace

int main(int argc, char** argv) {
    QCommandLineParser options;
    options.addOptions({{u"renderer"_s, {}, u"name"_s, u"software"_s},
                        {u"theme"_s, {}, u"name"_s, u"blue"_s},
                        {u"size"_s, {}, u"points"_s, u"1920x1080"_s},
                        {u"icons"_s, {}, u"source"_s, u"made-up"_s},
                        {u"state"_s, {}, u"name"_s}});
    QStringList arguments;
    for (int i = 0; i < argc; ++i) {
        arguments += QString::fromLocal8Bit(argv[i]);
    }
    if (!options.parse(arguments)) {
        std::fprintf(stderr, "%s\n", qPrintable(options.errorText()));
        return 2;
    }
    // One thread, so that a picture is taken of what has been brought about before it.
    qputenv("QSG_RENDER_LOOP", "basic");
    QQuickWindow::setGraphicsApi(rendererOf(options));
    const QApplication application(argc, argv);
    QGuiApplication::setQuitOnLastWindowClosed(false);
    const auto order = orderOf(options);
    if (!order) {
        std::fprintf(stderr, "not understood, or a folder without pictures\n");
        return 2;
    }
    for (const State& state : states()) {
        if ((order->states.isEmpty() || order->states.contains(state.name)) && !draw(state, *order)) {
            std::fprintf(stderr, "%s could not be drawn\n", qPrintable(state.name));
            return 1;
        }
    }
    return 0;
}
