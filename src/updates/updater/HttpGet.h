#pragma once

#include "platform/MainQueue.h"

#include <QByteArray>
#include <QNetworkRequest>
#include <QObject>
#include <QSet>
#include <QUrl>
#include <functional>
#include <memory>
#include <optional>

class QNetworkAccessManager;
class QNetworkReply;

namespace amberquill {

// Why nothing, or not all of it, was fetched.
enum class FetchError {
    RefusedAddress,   // it, or where it leads to, may not be fetched
    TooManyRedirects, // more than ten, or in a circle
    BadStatus,        // answered, but not with what was asked for
    TooLarge,
    TimedOut,
    ConnectionLost, // or never made
};

// Seconds.
struct TimeOuts {
    double silence = 30; // longest wait for the next byte
    double whole = 120;  // longest time for a feed, all redirects counted
};

// One GET request (RFC 9110) and the redirects it leads to, none of which may leave what mayLeadTo() allows.
// No cookies, no passwords, no caches; what is on this machine is not asked for through a proxy. Main thread
// only. Nothing is called before the event loop runs again. Its destruction ends the request; so may it
// itself be destroyed by what it calls.
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
        // The final answer's head, whatever its status but those of redirects. False: it is not wanted, and
        // `failed` is called with badStatus.
        std::function<bool(const Head& head)> began;
        // The next bytes of the body. False: they are not wanted, and `failed` is called with tooLarge.
        std::function<bool(const QByteArray& bytes)> received;
        // One of these two is called, once.
        std::function<void()> ended;
        std::function<void(FetchError error)> failed;
    };

    using Headers = std::vector<std::pair<QByteArray, QByteArray>>;

    // `wholeSeconds`: the longest time for all of it; none: any.
    HttpGet(MainQueue& queue, const QUrl& address, Headers headers, double silenceSeconds,
            std::optional<double> wholeSeconds, Callbacks callbacks);
    ~HttpGet() override;

    HttpGet(const HttpGet&) = delete;
    HttpGet& operator=(const HttpGet&) = delete;

private:
    void request(const QUrl& address);
    void readHead();
    void readBody();
    void finish();
    void follow(const QUrl& address);
    void watchSilence();
    void fail(FetchError error);

    MainQueue& queue_;
    Headers headers_;
    double silenceSeconds_;
    Callbacks callbacks_;
    std::unique_ptr<QNetworkAccessManager> network_;
    std::unique_ptr<QNetworkReply> reply_;
    QSet<QUrl> visited_;
    bool hasBegun_ = false;
    qint64 receivedBytes_ = 0;
    std::optional<qint64> expectedBytes_;
    double heardAt_ = 0; // on the queue's clock
    DelayedWork silence_;
    DelayedWork whole_;
};

} // namespace amberquill
