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

// The received part of the file is deleted, except after Connection.
enum class DownloadError {
    Connection,     // not fetched completely: the next attempt resumes the download
    WrongLength,    // not the announced length
    WrongSignature, // not signed with the expected key
    File,           // the file could not be written or read
};

// Downloads one file to a private folder and verifies its length and signature. A download that was paused,
// or whose connection failed, is resumed, also after a restart of the program, if the server still has the
// same file; otherwise it starts from the beginning. Main thread only.
class Download final : public QObject {
    Q_OBJECT

public:
    struct Request {
        QUrl address;
        qint64 length = 0; // announced, in bytes: 1 … maximumDownloadBytes
        Signature signature = {};
        PublicKey publicKey = {};
    };

    // `folder` is absolute and used for nothing else: files of other downloads in it are removed. If it does
    // not exist, it is created with mode 0700.
    Download(MainQueue& queue, QString folder, const Request& request, double idleSeconds,
             QObject* parent = nullptr);
    ~Download() override;

    Download(const Download&) = delete;
    Download& operator=(const Download&) = delete;

    // Starts the download, or resumes it after pause() or DownloadError::Connection.
    void start();
    void pause();

    [[nodiscard]] bool isUnderWay() const { return request_ != nullptr || verificationRuns_; }
    [[nodiscard]] qint64 receivedBytes() const { return received_; }
    [[nodiscard]] qint64 length() const { return wanted_.length; }

    // The complete file, after `verified` was emitted.
    [[nodiscard]] QString path() const;

    // Stops and deletes the received part of the file. A verification that runs gives no answer.
    void remove();

Q_SIGNALS:
    void progressed(qint64 received, qint64 length);
    void verifying(); // the file is complete
    void verified();
    void failed(DownloadError error);

private:
    [[nodiscard]] QString entityTagPath() const;
    [[nodiscard]] bool prepareFolder() const;
    bool openFile();
    bool truncateFile();
    void fetch();
    bool acceptHead(const HttpGet::Head& head);
    bool acceptWholeFile(const HttpGet::Head& head);
    bool acceptBytes(const QByteArray& bytes);
    void fetchFinished();
    void fetchFailed(FetchError error);
    void verify();
    void verificationFinished(const std::optional<DownloadError>& error);
    void fail(DownloadError error);
    void failLater(DownloadError error);

    MainQueue& queue_;
    QString folder_;
    Request wanted_;
    double idleSeconds_;
    QString name_;
    std::unique_ptr<HttpGet> request_;
    std::unique_ptr<QFile> file_; // open while the file is written
    qint64 received_ = 0;
    std::optional<DownloadError> rejection_; // why a response or a part of it was not accepted
    bool restarts_ = false;                  // a partial response was not accepted: fetch the whole file
    bool verificationRuns_ = false;
    Context context_;
};

} // namespace amberquill
