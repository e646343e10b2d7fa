#pragma once

#include "platform/MainQueue.h"

#include <QByteArray>
#include <QObject>
#include <QSet>
#include <QUrl>
#include <functional>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

class QNetworkAccessManager;
class QNetworkReply;

namespace amberquill {

// Why a file was not fetched.
enum class FetchError {
    ForbiddenAddress, // the address, or one that it redirects to, may not be fetched
    TooManyRedirects, // more than ten, or a loop
    BadStatus,
    TooLarge,
    TimedOut,
    ConnectionFailed, // not made, or lost before the end
};

// In plain words, for the log.
[[nodiscard]] const char* description(FetchError error);

// Seconds.
struct Timeouts {
    double idle = 30;   // longest wait for the next byte
    double total = 120; // longest time for a feed, redirects included
};

// One GET request (RFC 9110) that follows the redirects that mayLeadTo() allows. No cookies, passwords or
// caches; Qt uses no proxy for addresses of this machine. Main thread only.
//
// No callback runs before the event loop does. Each may destroy this object, which ends the request.
class HttpGet final : public QObject {
    Q_OBJECT

public:
    static constexpr int maximumRedirects = 10;

    struct Head {
        int status = 0;
        std::optional<qint64> length; // of the body
        QByteArray contentRange;
        QByteArray entityTag;
    };

    struct Callbacks {
        // The response's head, of any status but a redirect's. False: `failed` is called with BadStatus.
        std::function<bool(const Head& head)> headReceived;
        // The next bytes of the body. False: `failed` is called with TooLarge.
        std::function<bool(const QByteArray& bytes)> bodyReceived;
        // Exactly one of these is called, once.
        std::function<void()> finished;
        std::function<void(FetchError error)> failed;
    };

    using Headers = std::vector<std::pair<QByteArray, QByteArray>>;

    // `totalSeconds`: the longest time for the whole request; none: no limit.
    HttpGet(MainQueue& queue, const QUrl& address, Headers headers, double idleSeconds,
            std::optional<double> totalSeconds, Callbacks callbacks);
    ~HttpGet() override;

    HttpGet(const HttpGet&) = delete;
    HttpGet& operator=(const HttpGet&) = delete;

private:
    void request(const QUrl& address);
    void readHead();
    void readBody();
    void replyFinished();
    void complete();
    void follow(const QUrl& address);
    void watchIdleTime();
    void fail(FetchError error);

    MainQueue& queue_;
    Headers headers_;
    double idleSeconds_;
    Callbacks callbacks_;
    std::unique_ptr<QNetworkAccessManager> network_;
    std::unique_ptr<QNetworkReply> reply_;
    QSet<QUrl> visited_;
    bool hasHead_ = false; // of the final response
    qint64 receivedBytes_ = 0;
    std::optional<qint64> expectedBytes_;
    double lastActivity_ = 0; // on the queue's clock
    DelayedWork idleTimeout_;
    DelayedWork totalTimeout_;
    Context context_;
};

} // namespace amberquill
