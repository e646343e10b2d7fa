#include "updates/updater/HttpGet.h"

#include "updates/updater/AddressPolicy.h"

#include <QNetworkAccessManager>
#include <QNetworkProxy>
#include <QNetworkReply>
#include <QPointer>
#include <array>

namespace amberquill {
namespace {

constexpr qint64 bufferBytes = qint64{1024} * 1024; // that wait to be read

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
    // What is counted is what is kept: nothing that unfolds to more.
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

HttpGet::HttpGet(MainQueue& queue, const QUrl& address, Headers headers, double silenceSeconds,
                 std::optional<double> wholeSeconds, Callbacks callbacks)
    : queue_(queue)
    , headers_(std::move(headers))
    , silenceSeconds_(silenceSeconds)
    , callbacks_(std::move(callbacks))
    , network_(std::make_unique<QNetworkAccessManager>()) {
    const QPointer<HttpGet> self(this);
    if (!mayFetch(address)) {
        queue_.post([self] {
            if (self) {
                self->fail(FetchError::RefusedAddress);
            }
        });
        return;
    }
    if (wholeSeconds) {
        whole_ = queue_.postAfter(*wholeSeconds, [self] {
            if (self) {
                self->fail(FetchError::TimedOut);
            }
        });
    }
    request(address);
}

HttpGet::~HttpGet() {
    silence_.cancel();
    whole_.cancel();
}

// Every signal is answered later, so that what answers may end the request.
void HttpGet::request(const QUrl& address) {
    visited_.insert(address);
    network_->setProxy(isLoopback(address) ? QNetworkProxy::NoProxy : QNetworkProxy::DefaultProxy);
    reply_.reset(network_->get(requestFor(address, headers_)));
    reply_->setReadBufferSize(bufferBytes);
    connect(reply_.get(), &QNetworkReply::metaDataChanged, this, &HttpGet::readHead, Qt::QueuedConnection);
    connect(reply_.get(), &QNetworkReply::readyRead, this, &HttpGet::readBody, Qt::QueuedConnection);
    connect(reply_.get(), &QNetworkReply::finished, this, &HttpGet::finish, Qt::QueuedConnection);
    heardAt_ = queue_.now();
    watchSilence();
}

void HttpGet::watchSilence() {
    silence_.cancel();
    silence_ = queue_.postAfter(heardAt_ + silenceSeconds_ - queue_.now(), [self = QPointer(this)] {
        if (self && self->queue_.now() >= self->heardAt_ + self->silenceSeconds_) {
            self->fail(FetchError::TimedOut);
        } else if (self) {
            self->watchSilence();
        }
    });
}

void HttpGet::readHead() {
    if (!reply_ || hasBegun_ || statusOf(*reply_) == 0) {
        return;
    }
    heardAt_ = queue_.now();
    Head head;
    head.status = statusOf(*reply_);
    if (isRedirect(head.status) && reply_->hasRawHeader("Location")) {
        const QUrl location = QUrl::fromEncoded(reply_->rawHeader("Location"), QUrl::StrictMode);
        follow(location.isValid() ? reply_->url().resolved(location) : QUrl());
        return;
    }
    hasBegun_ = true;
    const QVariant length = reply_->header(QNetworkRequest::ContentLengthHeader);
    if (length.isValid()) {
        head.length = length.toLongLong();
    }
    expectedBytes_ = head.length;
    head.contentRange = reply_->rawHeader("Content-Range");
    head.entityTag = reply_->rawHeader("ETag");
    const auto began = callbacks_.began;
    const QPointer<HttpGet> self(this);
    if (!began(head) && self) {
        fail(FetchError::BadStatus);
    }
}

void HttpGet::follow(const QUrl& address) {
    if (!mayLeadTo(reply_->url(), address)) {
        fail(FetchError::RefusedAddress);
    } else if (visited_.size() > maximumRedirects || visited_.contains(address)) {
        fail(FetchError::TooManyRedirects);
    } else {
        request(address);
    }
}

void HttpGet::readBody() {
    if (!reply_ || !hasBegun_) {
        return;
    }
    const QByteArray bytes = reply_->readAll();
    if (bytes.isEmpty()) {
        return;
    }
    heardAt_ = queue_.now();
    receivedBytes_ += bytes.size();
    const auto received = callbacks_.received;
    const QPointer<HttpGet> self(this);
    if (!received(bytes) && self) {
        fail(FetchError::TooLarge);
    }
}

void HttpGet::finish() {
    const QPointer<HttpGet> self(this);
    if (!reply_ || !reply_->isFinished()) {
        return; // of a reply that led on
    }
    const QNetworkReply* const finished = reply_.get();
    readHead();
    if (!self || reply_.get() != finished) {
        return;
    }
    readBody();
    if (!self || !reply_) {
        return;
    }
    const bool isWhole = !expectedBytes_ || *expectedBytes_ == receivedBytes_;
    if (!hasBegun_ || !isWhole || reply_->error() != QNetworkReply::NoError) {
        fail(FetchError::ConnectionLost);
        return;
    }
    reply_.reset();
    silence_.cancel();
    whole_.cancel();
    const auto ended = callbacks_.ended;
    ended();
}

void HttpGet::fail(FetchError error) {
    if (!callbacks_.failed) {
        return;
    }
    reply_.reset();
    silence_.cancel();
    whole_.cancel();
    const auto failed = std::exchange(callbacks_.failed, nullptr);
    failed(error);
}

} // namespace amberquill
