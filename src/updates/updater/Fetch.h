#pragma once

#include "updates/updater/HttpGet.h"

#include <QByteArray>
#include <QUrl>
#include <functional>
#include <memory>
#include <variant>

namespace amberquill {

using Fetched = std::variant<QByteArray, FetchError>;

// Fetches the whole of a small file over HTTP: a response with status 200. Main thread only.
class Fetch final {
public:
    explicit Fetch(MainQueue& queue, const Timeouts& timeouts = {});
    ~Fetch();

    Fetch(const Fetch&) = delete;
    Fetch& operator=(const Fetch&) = delete;

    // Calls `done` once, after it has returned; never if the fetch is cancelled, destroyed or started again
    // before. The body may be empty; one of more than `limit` bytes is FetchError::TooLarge.
    void get(const QUrl& address, qint64 limit, std::function<void(Fetched)> done);

    void cancel();
    [[nodiscard]] bool isUnderWay() const { return request_ != nullptr; }

private:
    void finish(Fetched result);

    MainQueue& queue_;
    Timeouts timeouts_;
    std::unique_ptr<HttpGet> request_;
    QByteArray body_;
    std::function<void(Fetched)> done_;
};

} // namespace amberquill
