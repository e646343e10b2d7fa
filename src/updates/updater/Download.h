#pragma once

#include "updates/updater/Feed.h"
#include "updates/updater/HttpGet.h"
#include "updates/updater/Signature.h"

#include <QFile>
#include <QObject>
#include <QString>
#include <QUrl>
#include <memory>

namespace amberquill {

inline constexpr qint64 maximumDownloadBytes = qint64{1024} * 1024 * 1024;

enum class DownloadError {
    Connection,     // not fetched, or not all of it: what came is kept, and the next attempt goes on there
    WrongLength,    // not as long as announced: deleted
    WrongSignature, // not signed by whom it should be: deleted
    File,           // could not be written or read: deleted
};

// Downloads one file to a private folder and makes sure that it is the one that was announced. What has come
// of it stays when it is paused or the connection fails, also over the end of the program, and is gone on
// from as long as the server still has the same file. Main thread only.
class Download final : public QObject {
    Q_OBJECT

public:
    struct Request {
        QUrl address;
        qint64 length = 0; // bytes, as announced: 1 … maximumDownloadBytes
        Signature signature = {};
        PublicKey publicKey = {};
    };

    // `folder` is absolute and of no other use: what lies in it from other downloads is removed. It is made,
    // for the user alone (0700), when it is not there.
    Download(MainQueue& queue, QString folder, const Request& request, double silenceSeconds,
             QObject* parent = nullptr);
    ~Download() override;

    Download(const Download&) = delete;
    Download& operator=(const Download&) = delete;

    // Begins, or goes on after pause() or DownloadError::Connection.
    void start();
    void pause();

    [[nodiscard]] bool isUnderWay() const { return request_ != nullptr || *isVerifying_; }
    [[nodiscard]] qint64 receivedBytes() const { return received_; }
    [[nodiscard]] qint64 length() const { return wanted_.length; }

    // The file, once `verified` was emitted.
    [[nodiscard]] QString path() const;

    // Deletes what has come.
    void remove();

Q_SIGNALS:
    void progressed(qint64 received, qint64 length);
    void verifying(); // all of it is here
    void verified();  // and it is what was announced
    void failed(DownloadError error);

private:
    [[nodiscard]] QString tagPath() const;
    [[nodiscard]] bool prepareFolder() const;
    bool openFile();
    bool startOver();
    void fetch();
    bool acceptHead(const HttpGet::Head& head);
    bool acceptWhole(const HttpGet::Head& head);
    bool acceptBytes(const QByteArray& bytes);
    void ended();
    void stopped();
    void verify();
    void refuse(DownloadError error);
    void refuseLater(DownloadError error);

    MainQueue& queue_;
    QString folder_;
    Request wanted_;
    double silenceSeconds_;
    QString name_;
    std::unique_ptr<HttpGet> request_;
    std::unique_ptr<QFile> file_; // open while it is written to
    qint64 received_ = 0;
    std::optional<DownloadError> refusal_; // why an answer was not wanted
    bool startsOver_ = false;              // an answer was not wanted because the server has another file now
    std::shared_ptr<bool> isVerifying_ = std::make_shared<bool>(false); // false: nobody waits for it any more
};

} // namespace amberquill
