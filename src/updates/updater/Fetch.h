#pragma once

#include "updates/updater/HttpGet.h"

#include <QByteArray>
#include <QObject>
#include <QUrl>
#include <functional>
#include <memory>
#include <variant>

namespace amberquill {

using Fetched = std::variant<QByteArray, FetchError>;

// Fetches a small file over HTTP, all of it or nothing: a body that came with status 200. Main thread only.
class Fetch final : public QObject {
    Q_OBJECT

public:
    explicit Fetch(MainQueue& queue, const TimeOuts& timeOuts = {}, QObject* parent = nullptr);
    ~Fetch() override;

    Fetch(const Fetch&) = delete;
    Fetch& operator=(const Fetch&) = delete;

    // `done` is called once and later, never from within, unless the fetch is cancelled, destroyed or begun
    // anew. A body of more than `limit` bytes is FetchError::TooLarge; it may be empty.
    void get(const QUrl& address, qint64 limit, std::function<void(Fetched)> done);

    void cancel();
    [[nodiscard]] bool isUnderWay() const { return request_ != nullptr; }

private:
    void finish(Fetched result);

    MainQueue& queue_;
    TimeOuts timeOuts_;
    std::unique_ptr<HttpGet> request_;
    QByteArray body_;
    std::function<void(Fetched)> done_;
};

} // namespace amberquill
