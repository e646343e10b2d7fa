#include "updates/updater/Fetch.h"

#include <QLoggingCategory>

namespace amberquill {
namespace {

Q_LOGGING_CATEGORY(fetchLog, "amberquill.updates", QtCriticalMsg)

} // namespace

Fetch::Fetch(MainQueue& queue, const Timeouts& timeouts)
    : queue_(queue)
    , timeouts_(timeouts) {}

Fetch::~Fetch() = default;

void Fetch::get(const QUrl& address, qint64 limit, std::function<void(Fetched)> done) {
    cancel();
    done_ = std::move(done);
    constexpr int ok = 200;
    const auto bodyReceived = [this, limit](const QByteArray& bytes) {
        body_ += bytes;
        return body_.size() <= limit;
    };
    const auto failed = [this, address](FetchError error) {
        qCDebug(fetchLog) << "not fetched:" << address.toDisplayString() << "-" << description(error);
        finish(error);
    };
    request_ = std::make_unique<HttpGet>(
        queue_, address, HttpGet::Headers(), timeouts_.idle, timeouts_.total,
        HttpGet::Callbacks{
            .headReceived = [](const HttpGet::Head& head) { return head.status == ok; },
            .bodyReceived = bodyReceived,
            .finished = [this] { finish(std::move(body_)); },
            .failed = failed,
        });
}

void Fetch::cancel() {
    request_.reset();
    body_.clear();
    done_ = nullptr;
}

void Fetch::finish(Fetched result) {
    const auto done = std::exchange(done_, nullptr);
    cancel();
    done(std::move(result));
}

} // namespace amberquill
