// A window under the control of a desktop test. It reads one command a line and prints events of its window,
// one line each:
//   present, withdraw, beep, quit, token TEXT, listed yes|no, screen (answers "screen NAME"),
//   environment NAME (answers "environment NAME=VALUE")
// With --panel it is a bar along the screen's upper edge instead, with --other an ordinary window, each put
// up at once; these two represent the rest of the desktop.
#include "platform/linux/queue/EventLoopQueue.h"
#include "platform/linux/windows/WindowSystems.h"

#include <QGuiApplication>
#include <QKeyEvent>
#include <QQuickItem>
#include <QQuickWindow>
#include <QScreen>
#include <QSocketNotifier>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <unistd.h>
#include <xcb/xcb.h>

namespace {

using namespace Qt::StringLiterals;

void say(const QString& line) {
    std::puts(line.toUtf8().constData());
    std::fflush(stdout);
}

QString named(QEvent::Type type) {
    switch (type) {
    case QEvent::FocusIn:
        return u"focus in"_s;
    case QEvent::FocusOut:
        return u"focus out"_s;
    case QEvent::Hide:
        return u"hidden"_s;
    default:
        return {};
    }
}

class ProbeWindow final : public QQuickWindow {
protected:
    bool event(QEvent* event) override {
        if (const auto name = named(event->type()); !name.isEmpty()) {
            say(name);
        }
        return QQuickWindow::event(event);
    }

    void exposeEvent(QExposeEvent* event) override {
        QQuickWindow::exposeEvent(event);
        say(isExposed() ? u"exposed"_s : u"covered"_s);
    }

    void keyPressEvent(QKeyEvent* event) override { say(u"key "_s + event->text()); }

    void resizeEvent(QResizeEvent* event) override {
        QQuickWindow::resizeEvent(event);
        say(u"size %1x%2"_s.arg(width()).arg(height()));
    }
};

// A panel sets its window type before it is mapped.
void makePanel(QWindow& window) {
    window.setFlags(Qt::FramelessWindowHint);
    window.setGeometry(0, 0, window.screen()->geometry().width(), 40);
    window.create();
    auto* connection = qGuiApp->nativeInterface<QNativeInterface::QX11Application>()->connection();
    const auto atom = [connection](const std::string& name) {
        const auto cookie = xcb_intern_atom(connection, 0, static_cast<uint16_t>(name.size()), name.c_str());
        auto* reply = xcb_intern_atom_reply(connection, cookie, nullptr);
        const auto value = reply->atom;
        std::free(reply);
        return value;
    };
    const auto dock = atom("_NET_WM_WINDOW_TYPE_DOCK");
    xcb_change_property(connection, XCB_PROP_MODE_REPLACE, static_cast<xcb_window_t>(window.winId()),
                        atom("_NET_WM_WINDOW_TYPE"), XCB_ATOM_ATOM, 32, 1, &dock);
}

void obey(const QString& line, amberquill::WindowSystem& windowSystem, QWindow& window) {
    const auto command = line.section(u' ', 0, 0);
    const auto argument = line.section(u' ', 1);
    if (command == u"present"_s) {
        windowSystem.present(window, windowSystem.screenUnderPointer());
    } else if (command == u"withdraw"_s) {
        windowSystem.withdraw(window, [] {});
    } else if (command == u"beep"_s) {
        windowSystem.beep();
    } else if (command == u"token"_s) {
        windowSystem.setActivationToken(argument);
    } else if (command == u"listed"_s) {
        windowSystem.setListedInTaskBars(argument == u"yes"_s);
    } else if (command == u"screen"_s) {
        const auto* screen = windowSystem.screenUnderPointer();
        say(u"screen "_s + (screen == nullptr ? u"-"_s : screen->name()));
    } else if (command == u"environment"_s) {
        say(line + u'=' + qEnvironmentVariable(argument.toUtf8()));
    } else if (command == u"quit"_s) {
        QGuiApplication::quit();
    }
}

} // namespace

int main(int argc, char** argv) {
    QQuickWindow::setDefaultAlphaBuffer(true);
    const QGuiApplication application(argc, argv);
    QGuiApplication::setApplicationName(u"Probe"_s);
    QGuiApplication::setDesktopFileName(u"org.amberquill.Probe"_s);
    QGuiApplication::setQuitOnLastWindowClosed(false);

    const auto arguments = QGuiApplication::arguments();
    amberquill::EventLoopQueue queue;
    const auto windowSystem = amberquill::desktop::makeWindowSystem(queue);
    ProbeWindow window;
    if (arguments.contains(u"--panel"_s)) {
        window.setColor(QColor(0, 255, 0));
        makePanel(window);
        window.show();
    } else if (arguments.contains(u"--other"_s)) {
        window.setColor(QColor(255, 255, 255));
        window.setGeometry(100, 100, 300, 200);
        window.show();
        window.requestActivate();
    } else {
        window.setColor(QColor(0, 0, 255, 128));
    }

    // Read without the C library's buffer: data in the buffer would not wake the notifier again.
    QByteArray pending;
    const QSocketNotifier input(STDIN_FILENO, QSocketNotifier::Read);
    QObject::connect(&input, &QSocketNotifier::activated, &window, [&] {
        std::array<char, 4096> buffer{};
        const auto count = read(STDIN_FILENO, buffer.data(), buffer.size());
        if (count <= 0) {
            QGuiApplication::quit();
            return;
        }
        pending.append(buffer.data(), count);
        for (auto end = pending.indexOf('\n'); end >= 0; end = pending.indexOf('\n')) {
            obey(QString::fromUtf8(pending.first(end)), *windowSystem, window);
            pending.remove(0, end + 1);
        }
    });
    say(u"ready"_s);
    return QGuiApplication::exec();
}
