#pragma once

#include <QByteArray>
#include <QHash>
#include <QHostAddress>
#include <QObject>
#include <QPointer>
#include <QTcpServer>
#include <QTcpSocket>
#include <QUrl>
#include <functional>
#include <memory>
#include <utility>
#include <vector>

namespace amberquill {

// An HTTP server on the loopback interface that answers as a test says, even wrongly. It runs in the test's
// event loop.
class LoopbackServer final : public QObject {
public:
    struct Request {
        QByteArray path;
        QHash<QByteArray, QByteArray> headers; // names in lower case
    };

    // The bytes to send. Then the connection is closed, or stays open without more bytes.
    struct Answer {
        QByteArray bytes;
        bool thenCloses = true;
    };

    using Answering = std::function<Answer(const Request& request)>;

    // `scheme`: of the server's addresses.
    explicit LoopbackServer(std::unique_ptr<QTcpServer> server = std::make_unique<QTcpServer>(),
                            QString scheme = QStringLiteral("http"))
        : server_(std::move(server))
        , scheme_(std::move(scheme)) {
        if (!server_->listen(QHostAddress::LocalHost)) {
            qFatal("no loopback interface to listen at");
        }
        connect(server_.get(), &QTcpServer::pendingConnectionAvailable, this, [this] {
            while (QTcpSocket* const socket = server_->nextPendingConnection()) {
                connect(socket, &QTcpSocket::readyRead, this, [this, socket] { read(*socket); });
                connect(socket, &QTcpSocket::disconnected, socket, &QObject::deleteLater);
            }
        });
    }

    [[nodiscard]] QUrl address(const QByteArray& path) const {
        return QUrl(scheme_ + QStringLiteral("://127.0.0.1:%1").arg(server_->serverPort()) +
                    QString::fromLatin1(path));
    }

    // Sets the answer for a path. Other paths are not found.
    void serve(const QByteArray& path, const Answering& answering) { answers_.insert(path, answering); }
    void serve(const QByteArray& path, const Answer& answer) {
        serve(path, [answer](const Request&) { return answer; });
    }

    // All requests, in order.
    [[nodiscard]] const std::vector<Request>& requests() const { return requests_; }

    using Headers = std::vector<std::pair<QByteArray, QByteArray>>;

    static Answer ok(const QByteArray& body, const Headers& headers = {}) {
        return answer("200 OK", body, headers);
    }

    static Answer answer(const QByteArray& status, const QByteArray& body, const Headers& headers = {}) {
        QByteArray bytes = "HTTP/1.1 " + status +
                           "\r\nConnection: close\r\nContent-Length: " + QByteArray::number(body.size()) +
                           "\r\n";
        for (const auto& [name, value] : headers) {
            bytes += name + ": " + value + "\r\n";
        }
        return {bytes + "\r\n" + body};
    }

    static Answer redirect(const QByteArray& location, const QByteArray& status = "302 Found") {
        return answer(status, {}, {{"Location", location}});
    }

    // The connection closes `missing` bytes before the end.
    static Answer cut(Answer whole, qsizetype missing) {
        whole.bytes.chop(missing);
        return whole;
    }

    // The answer stops after its first bytes; the connection stays open.
    static Answer hanging(const Answer& whole, qsizetype bytes) { return {whole.bytes.first(bytes), false}; }

private:
    void read(QTcpSocket& socket) {
        QByteArray& received = received_[&socket];
        received += socket.readAll();
        const qsizetype end = received.indexOf("\r\n\r\n");
        if (end < 0) {
            return;
        }
        const Request request = parse(received.first(end));
        received_.remove(&socket);
        requests_.push_back(request);
        const auto found = answers_.constFind(request.path);
        const Answer given =
            found == answers_.constEnd() ? answer("404 Not Found", "none") : (*found)(request);
        socket.write(given.bytes);
        if (given.thenCloses) {
            socket.disconnectFromHost(); // once all is written
        }
    }

    static Request parse(const QByteArray& head) {
        const QList<QByteArray> lines = head.split('\n');
        Request request;
        request.path = lines.first().split(' ').value(1);
        for (const QByteArray& line : lines.mid(1)) {
            const qsizetype colon = line.indexOf(':');
            request.headers.insert(line.first(colon).toLower(), line.mid(colon + 1).trimmed());
        }
        return request;
    }

    std::unique_ptr<QTcpServer> server_;
    QString scheme_;
    QHash<QByteArray, Answering> answers_;
    QHash<QTcpSocket*, QByteArray> received_;
    std::vector<Request> requests_;
};

} // namespace amberquill
