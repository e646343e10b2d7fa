#pragma once

#include <QByteArray>
#include <QProcess>
#include <QStringList>
#include <cstdlib>
#include <gtest/gtest.h>
#include <memory>
#include <xcb/xcb.h>

namespace amberquill {

// A virtual X server that runs for the lifetime of the object.
class TestXServer {
public:
    // `screen`: width, height and depth, as in Xvfb's option.
    explicit TestXServer(const QString& screen = QStringLiteral("640x480x24"),
                         const QStringList& options = {}) {
        server_.start(QStringLiteral("Xvfb"), QStringList{QStringLiteral("-displayfd"), QStringLiteral("1"),
                                                          QStringLiteral("-screen"), QStringLiteral("0"),
                                                          screen, QStringLiteral("-nolisten"),
                                                          QStringLiteral("tcp"), QStringLiteral("-noreset")} +
                                                  options);
        EXPECT_TRUE(server_.waitForReadyRead(20'000));
        display_ = ':' + server_.readLine().trimmed();
    }
    TestXServer(const TestXServer&) = delete;
    TestXServer& operator=(const TestXServer&) = delete;
    ~TestXServer() { stop(); }

    [[nodiscard]] const QByteArray& display() const { return display_; }

    void stop() {
        server_.kill();
        server_.waitForFinished();
    }

private:
    QProcess server_;
    QByteArray display_;
};

// A client of a server.
class XClient {
public:
    explicit XClient(const TestXServer& server)
        : connection_(xcb_connect(server.display().constData(), nullptr), xcb_disconnect) {
        EXPECT_EQ(xcb_connection_has_error(connection_.get()), 0);
    }

    [[nodiscard]] xcb_connection_t* get() const { return connection_.get(); }
    [[nodiscard]] xcb_screen_t& screen() const {
        return *xcb_setup_roots_iterator(xcb_get_setup(connection_.get())).data;
    }

    // Returns after the server has handled all requests.
    void sync() const {
        std::free( // NOLINT(cppcoreguidelines-no-malloc)
            xcb_get_input_focus_reply(connection_.get(), xcb_get_input_focus(connection_.get()), nullptr));
    }

private:
    std::unique_ptr<xcb_connection_t, void (*)(xcb_connection_t*)> connection_;
};

} // namespace amberquill
