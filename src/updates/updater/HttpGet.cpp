#include "updates/updater/HttpGet.h"

#include "updates/updater/AddressPolicy.h"

#include <QLoggingCategory>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QNetworkRequest>
#include <array>

namespace amberquill {
namespace {

Q_LOGGING_CATEGORY(httpLog, "amberquill.updates", QtCriticalMsg)

constexpr qint64 readBufferBytes = qint64{1024} * 1024;

bool isRedirect(int status) {
    constexpr std::array redirects = {301, 302, 303, 307, 308};
    return std::find(redirects.begin(), redirects.end(), status) != redirects.end();
}

QNetworkRequest requestFor(const QUrl& address, const HttpGet::Headers& headers) {
    QNetworkRequest request(address);
    request.setAttribute(QNetworkRequest::RedirectPolicyAttribute, QNetworkRequest::ManualRedirectPolicy);
    request.setAttribute(QNetworkRequest::CacheLoadControlAttribute, QNetworkRequest::AlwaysNetwork);
    request.setAttribute(QNetworkRequest::CacheSaveControlAttribute, false);
    request.setAttribute(QNetworkRequest::CookieLoadControlAttribute, QNetworkRequest::Manual);
    request.setAttribute(QNetworkRequest::CookieSaveControlAttribute, QNetworkRequest::Manual);
    request.setAttribute(QNetworkRequest::AuthenticationReuseAttribute, QNetworkRequest::Manual);
    request.setAttribute(QNetworkRequest::Http2AllowedAttribute, false);
    request.setRawHeader("User-Agent", "Amberquill");
    // No compression: the limits count the bytes that are received.
    request.setRawHeader("Accept-Encoding", "identity");
    for (const auto& [name, value] : headers) {
        request.setRawHeader(name, value);
    }
    return request;
}

int statusOf(const QNetworkReply& reply) {
    return reply.attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
}

} // namespace

const char* description(FetchError error) {
    switch (error) {
    case FetchError::ForbiddenAddress:
        return "the address, or one that it redirects to, may not be fetched";
    case FetchError::TooManyRedirects:
        return "too many redirects";
    case FetchError::BadStatus:
        return "unexpected HTTP status";
    case FetchError::TooLarge:
        return "too large";
    case FetchError::TimedOut:
        return "timed out";
    case FetchError::ConnectionFailed:
        break;
    }
    return "the connection failed";
}

HttpGet::HttpGet(MainQueue& queue, const QUrl& address, Headers headers, double idleSeconds,
                 std::optional<double> totalSeconds, Callbacks callbacks)
    : queue_(queue)
    , headers_(std::move(headers))
    , idleSeconds_(idleSeconds)
    , callbacks_(std::move(callbacks))
    , network_(std::make_unique<QNetworkAccessManager>()) {
    if (!mayFetch(address)) {
        queue_.then(context_, [this] { fail(FetchError::ForbiddenAddress); });
        return;
    }
    if (totalSeconds) {
        totalTimeout_ = queue_.postAfter(*totalSeconds, [this] { fail(FetchError::TimedOut); });
    }
    request(address);
}

HttpGet::~HttpGet() = default;

// All signals are queued, so that a callback may destroy the reply that sent one.
void HttpGet::request(const QUrl& address) {
    visited_.insert(address);
    reply_.reset(network_->get(requestFor(address, headers_)));
    reply_->setReadBufferSize(readBufferBytes);
    connect(reply_.get(), &QNetworkReply::metaDataChanged, this, &HttpGet::readHead, Qt::QueuedConnection);
    connect(reply_.get(), &QNetworkReply::readyRead, this, &HttpGet::readBody, Qt::QueuedConnection);
    connect(reply_.get(), &QNetworkReply::finished, this, &HttpGet::replyFinished, Qt::QueuedConnection);
    lastActivity_ = queue_.now();
    watchIdleTime();
}

void HttpGet::watchIdleTime() {
    const double rest = lastActivity_ + idleSeconds_ - queue_.now();
    idleTimeout_ = queue_.postAfter(rest, [this] {
        if (queue_.now() >= lastActivity_ + idleSeconds_) {
            fail(FetchError::TimedOut);
        } else {
            watchIdleTime();
        }
    });
}

void HttpGet::readHead() {
    if (!reply_ || hasHead_ || statusOf(*reply_) == 0) {
        return;
    }
    lastActivity_ = queue_.now();
    Head head;
    head.status = statusOf(*reply_);
    if (isRedirect(head.status) && reply_->hasRawHeader("Location")) {
        const QUrl location = QUrl::fromEncoded(reply_->rawHeader("Location"), QUrl::StrictMode);
        follow(location.isValid() ? reply_->url().resolved(location) : QUrl());
        return;
    }
    hasHead_ = true;
    const QVariant length = reply_->header(QNetworkRequest::ContentLengthHeader);
    if (length.isValid()) {
        head.length = length.toLongLong();
    }
    expectedBytes_ = head.length;
    head.contentRange = reply_->rawHeader("Content-Range");
    head.entityTag = reply_->rawHeader("ETag");
    auto reject = context_.bind([this] { fail(FetchError::BadStatus); });
    const auto headReceived = callbacks_.headReceived;
    if (!headReceived(head)) {
        reject();
    }
}

void HttpGet::follow(const QUrl& address) {
    if (!mayLeadTo(reply_->url(), address)) {
        qCDebug(httpLog) << "redirect refused:" << reply_->url().toDisplayString() << "to"
                         << address.toDisplayString();
        fail(FetchError::ForbiddenAddress);
    } else if (visited_.size() > maximumRedirects || visited_.contains(address)) {
        fail(FetchError::TooManyRedirects);
    } else {
        request(address);
    }
}

void HttpGet::readBody() {
    if (!reply_ || !hasHead_) {
        return;
    }
    const QByteArray bytes = reply_->readAll();
    if (bytes.isEmpty()) {
        return;
    }
    lastActivity_ = queue_.now();
    receivedBytes_ += bytes.size();
    auto reject = context_.bind([this] { fail(FetchError::TooLarge); });
    const auto bodyReceived = callbacks_.bodyReceived;
    if (!bodyReceived(bytes)) {
        reject();
    }
}

void HttpGet::replyFinished() {
    if (!reply_ || !reply_->isFinished()) {
        return; // the signal of a reply that redirected
    }
    // Either step may destroy this object, follow a redirect or fail.
    auto readRest = context_.bind([this] { readBody(); });
    auto end = context_.bind([this, finished = reply_.get()] {
        if (reply_.get() == finished) {
            complete();
        }
    });
    readHead();
    readRest();
    end();
}

void HttpGet::complete() {
    const bool isWhole = !expectedBytes_ || *expectedBytes_ == receivedBytes_;
    if (!hasHead_ || !isWhole || reply_->error() != QNetworkReply::NoError) {
        fail(FetchError::ConnectionFailed);
        return;
    }
    reply_.reset();
    idleTimeout_.cancel();
    totalTimeout_.cancel();
    const auto finished = callbacks_.finished;
    finished();
}

void HttpGet::fail(FetchError error) {
    if (!callbacks_.failed) {
        return;
    }
    reply_.reset();
    idleTimeout_.cancel();
    totalTimeout_.cancel();
    const auto failed = std::exchange(callbacks_.failed, nullptr);
    failed(error);
}

} // namespace amberquill
