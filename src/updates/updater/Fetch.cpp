#include "updates/updater/Fetch.h"

namespace amberquill {

Fetch::Fetch(MainQueue& queue, const TimeOuts& timeOuts, QObject* parent)
    : QObject(parent)
    , queue_(queue)
    , timeOuts_(timeOuts) {}

Fetch::~Fetch() = default;

void Fetch::get(const QUrl& address, qint64 limit, std::function<void(Fetched)> done) {
    cancel();
    done_ = std::move(done);
    constexpr int ok = 200;
    request_ =
        std::make_unique<HttpGet>(queue_, address, HttpGet::Headers(), timeOuts_.silence, timeOuts_.whole,
                                  HttpGet::Callbacks{
                                      .began = [](const HttpGet::Head& head) { return head.status == ok; },
                                      .received =
                                          [this, limit](const QByteArray& bytes) {
                                              body_ += bytes;
                                              return body_.size() <= limit;
                                          },
                                      .ended = [this] { finish(std::move(body_)); },
                                      .failed = [this](FetchError error) { finish(error); },
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
