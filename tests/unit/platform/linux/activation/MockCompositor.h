#pragma once

#include <QList>
#include <QString>
#include <functional>
#include <memory>

struct wl_display;

namespace amberquill {

// A compositor in this process, on the other end of a socket: a seat, surfaces and, optionally,
// xdg-activation-v1. It handles requests only in `exchange`.
class MockCompositor {
public:
    // The values of a client's token request.
    struct Request {
        bool hasSerial = false;
        quint32 serial = 0;
        bool hasSurface = false;
        QString applicationId;
        bool committed = false;
        bool destroyed = false;
    };

    explicit MockCompositor(bool offersActivation);
    MockCompositor(const MockCompositor&) = delete;
    MockCompositor& operator=(const MockCompositor&) = delete;
    ~MockCompositor();

    // The client's end. It is connected for as long as the compositor lives.
    [[nodiscard]] wl_display* client() const;

    // Makes both sides read and handle everything that was sent.
    void exchange();

    [[nodiscard]] const QList<Request>& requests() const;

    // Answers the request at this place.
    void answer(qsizetype place, const QString& token);

    // Removes the protocol's global.
    void withdraw();

private:
    class Side;

    std::unique_ptr<Side> side_;
};

} // namespace amberquill
