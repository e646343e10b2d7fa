#include "updates/updater/Download.h"

#include <QCryptographicHash>
#include <QDir>
#include <QFileInfo>
#include <QLoggingCategory>

namespace amberquill {
namespace {

Q_LOGGING_CATEGORY(downloadLog, "amberquill.updates", QtCriticalMsg)

constexpr auto folderPermissions = QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner;
constexpr auto filePermissions = QFile::ReadOwner | QFile::WriteOwner;
constexpr qint64 maximumEntityTagBytes = 1024;

// The same for the same request, also after a restart of the program.
QString fileName(const Download::Request& request) {
    constexpr qsizetype nameLength = 32;
    QCryptographicHash hash(QCryptographicHash::Sha256);
    hash.addData(request.address.toEncoded() + '\n' + QByteArray::number(request.length) + '\n');
    hash.addData(QByteArrayView(request.signature));
    return QString::fromLatin1(hash.result().toHex().first(nameLength));
}

// Only a strong entity tag identifies the exact bytes of a file (RFC 9110, section 8.8.3.2).
bool isStrongEntityTag(const QByteArray& tag) {
    return tag.size() > 2 && tag.size() <= maximumEntityTagBytes && tag.startsWith('"') && tag.endsWith('"');
}

QByteArray readEntityTag(const QString& path) {
    QFile file(path);
    const QByteArray tag =
        file.open(QIODevice::ReadOnly) ? file.read(maximumEntityTagBytes + 1) : QByteArray();
    return isStrongEntityTag(tag) ? tag : QByteArray();
}

const char* description(DownloadError error) {
    switch (error) {
    case DownloadError::Connection:
        return "the connection failed";
    case DownloadError::WrongLength:
        return "wrong length";
    case DownloadError::WrongSignature:
        return "wrong signature";
    case DownloadError::File:
        break;
    }
    return "the file could not be written or read";
}

// None: the file has the announced length and a valid signature.
std::optional<DownloadError> errorIn(const QString& path, const Download::Request& wanted) {
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        return DownloadError::File;
    }
    if (file.size() != wanted.length) {
        return DownloadError::WrongLength;
    }
    const uchar* const bytes = file.map(0, wanted.length);
    if (bytes == nullptr) {
        return DownloadError::File;
    }
    return isSignedBy(wanted.publicKey, QByteArrayView(bytes, wanted.length), wanted.signature)
               ? std::nullopt
               : std::optional(DownloadError::WrongSignature);
}

} // namespace

Download::Download(MainQueue& queue, QString folder, const Request& request, double idleSeconds,
                   QObject* parent)
    : QObject(parent)
    , queue_(queue)
    , folder_(std::move(folder))
    , wanted_(request)
    , idleSeconds_(idleSeconds)
    , name_(fileName(request)) {}

Download::~Download() = default;

QString Download::path() const {
    return folder_ + QLatin1Char('/') + name_ + QLatin1String(".part");
}

QString Download::entityTagPath() const {
    return folder_ + QLatin1Char('/') + name_ + QLatin1String(".tag");
}

void Download::start() {
    if (isUnderWay()) {
        return;
    }
    if (wanted_.length < 1 || wanted_.length > maximumDownloadBytes) {
        failLater(DownloadError::WrongLength);
    } else if (!prepareFolder() || !openFile()) {
        failLater(DownloadError::File);
    } else if (received_ == wanted_.length) {
        verify();
    } else {
        fetch();
    }
}

void Download::pause() {
    request_.reset();
    file_.reset();
}

void Download::remove() {
    pause();
    verificationRuns_ = false;
    context_.reset();
    QFile::remove(path());
    QFile::remove(entityTagPath());
    received_ = 0;
}

// start() reports no error before it has returned.
void Download::failLater(DownloadError error) {
    queue_.then(context_, [this, error] { fail(error); });
}

bool Download::prepareFolder() const {
    const QFileInfo folder(folder_);
    const QDir parent(folder.path());
    if (!parent.mkpath(QStringLiteral(".")) ||
        (!folder.isDir() && !parent.mkdir(folder.fileName(), folderPermissions)) ||
        !QFile::setPermissions(folder_, folderPermissions)) {
        return false;
    }
    const auto others = QDir(folder_).entryList(QDir::Files | QDir::Hidden | QDir::System);
    for (const QString& other : others) {
        if (!other.startsWith(name_ + QLatin1Char('.'))) {
            QFile::remove(folder_ + QLatin1Char('/') + other);
        }
    }
    return true;
}

bool Download::openFile() {
    if (QFileInfo(path()).isSymLink()) {
        QFile::remove(path());
    }
    file_ = std::make_unique<QFile>(path());
    if (!file_->open(QIODevice::ReadWrite, filePermissions)) {
        return false;
    }
    received_ = file_->size();
    const bool isResumable = received_ == wanted_.length ||
                             (received_ < wanted_.length && !readEntityTag(entityTagPath()).isEmpty());
    return isResumable ? file_->seek(received_) : truncateFile();
}

bool Download::truncateFile() {
    received_ = 0;
    QFile::remove(entityTagPath());
    return file_->resize(0) && file_->seek(0);
}

void Download::fetch() {
    HttpGet::Headers headers;
    if (received_ > 0) {
        headers.emplace_back("Range", "bytes=" + QByteArray::number(received_) + '-');
        headers.emplace_back("If-Range", readEntityTag(entityTagPath()));
    }
    qCDebug(downloadLog) << "downloading:" << wanted_.address.toDisplayString() << "from byte" << received_
                         << "of" << wanted_.length;
    request_ = std::make_unique<HttpGet>(
        queue_, wanted_.address, std::move(headers), idleSeconds_, std::nullopt,
        HttpGet::Callbacks{.headReceived = [this](const HttpGet::Head& head) { return acceptHead(head); },
                           .bodyReceived = [this](const QByteArray& bytes) { return acceptBytes(bytes); },
                           .finished = [this] { fetchFinished(); },
                           .failed = [this](FetchError error) { fetchFailed(error); }});
}

bool Download::acceptHead(const HttpGet::Head& head) {
    constexpr int ok = 200;
    constexpr int partialContent = 206;
    constexpr int rangeNotSatisfiable = 416;
    if (head.status == ok) {
        return acceptWholeFile(head);
    }
    if (received_ > 0 && head.status == partialContent) {
        const QByteArray range = "bytes " + QByteArray::number(received_) + '-' +
                                 QByteArray::number(wanted_.length - 1) + '/' +
                                 QByteArray::number(wanted_.length);
        restarts_ = head.contentRange.simplified() != range;
        return !restarts_;
    }
    restarts_ = received_ > 0 && head.status == rangeNotSatisfiable;
    return false;
}

bool Download::acceptWholeFile(const HttpGet::Head& head) {
    if (head.length && *head.length != wanted_.length) {
        rejection_ = DownloadError::WrongLength;
        return false;
    }
    if (!truncateFile()) {
        rejection_ = DownloadError::File;
        return false;
    }
    if (isStrongEntityTag(head.entityTag)) {
        QFile tag(entityTagPath());
        if (!tag.open(QIODevice::WriteOnly, filePermissions) ||
            tag.write(head.entityTag) != head.entityTag.size()) {
            tag.remove(); // without a tag, the next attempt starts from the beginning
        }
    }
    return true;
}

bool Download::acceptBytes(const QByteArray& bytes) {
    if (bytes.size() > wanted_.length - received_) {
        rejection_ = DownloadError::WrongLength;
        return false;
    }
    if (file_->write(bytes) != bytes.size() || !file_->flush()) {
        rejection_ = DownloadError::File;
        return false;
    }
    received_ += bytes.size();
    Q_EMIT progressed(received_, wanted_.length);
    return true;
}

void Download::fetchFinished() {
    if (received_ == wanted_.length) {
        verify();
    } else {
        fail(DownloadError::WrongLength);
    }
}

void Download::fetchFailed(FetchError error) {
    request_.reset();
    if (const auto rejection = std::exchange(rejection_, std::nullopt)) {
        fail(*rejection);
    } else if (std::exchange(restarts_, false)) {
        qCDebug(downloadLog) << "not resumed: the server has another file";
        if (truncateFile()) {
            fetch();
        } else {
            fail(DownloadError::File);
        }
    } else {
        qCDebug(downloadLog) << "download stopped after" << received_ << "bytes:" << description(error);
        pause();
        Q_EMIT failed(DownloadError::Connection);
    }
}

void Download::verify() {
    pause();
    verificationRuns_ = true;
    queue_.compute(
        context_, [path = path(), wanted = wanted_] { return errorIn(path, wanted); },
        [this](const std::optional<DownloadError>& error) { verificationFinished(error); });
    Q_EMIT verifying();
}

void Download::verificationFinished(const std::optional<DownloadError>& error) {
    verificationRuns_ = false;
    if (error) {
        fail(*error);
    } else {
        qCDebug(downloadLog) << "download complete, length and signature are valid:" << path();
        Q_EMIT verified();
    }
}

// For errors after which the received part is of no use.
void Download::fail(DownloadError error) {
    qCDebug(downloadLog) << "download deleted:" << description(error);
    remove();
    Q_EMIT failed(error);
}

} // namespace amberquill
