#include "updates/updater/Download.h"

#include <QCryptographicHash>
#include <QDir>
#include <QFileInfo>
#include <QPointer>

namespace amberquill {
namespace {

constexpr auto folderPermissions = QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner;
constexpr auto filePermissions = QFile::ReadOwner | QFile::WriteOwner;
constexpr qint64 maximumTagBytes = 1024;

// The same download has the same name after the next start of the program.
QString nameOf(const Download::Request& request) {
    constexpr qsizetype letters = 32;
    QCryptographicHash hash(QCryptographicHash::Sha256);
    hash.addData(request.address.toEncoded() + '\n' + QByteArray::number(request.length) + '\n');
    hash.addData(QByteArrayView(request.signature));
    return QString::fromLatin1(hash.result().toHex().first(letters));
}

// What tells for certain whether the server still has the same bytes (RFC 9110, section 8.8.3.2).
bool isStrongTag(const QByteArray& tag) {
    return tag.size() > 2 && tag.size() <= maximumTagBytes && tag.startsWith('"') && tag.endsWith('"');
}

QByteArray readTag(const QString& path) {
    QFile file(path);
    const QByteArray tag = file.open(QIODevice::ReadOnly) ? file.read(maximumTagBytes + 1) : QByteArray();
    return isStrongTag(tag) ? tag : QByteArray();
}

// None: it is the file that was announced.
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

Download::Download(MainQueue& queue, QString folder, const Request& request, double silenceSeconds,
                   QObject* parent)
    : QObject(parent)
    , queue_(queue)
    , folder_(std::move(folder))
    , wanted_(request)
    , silenceSeconds_(silenceSeconds)
    , name_(nameOf(request)) {}

Download::~Download() {
    *isVerifying_ = false;
}

QString Download::path() const {
    return folder_ + QLatin1Char('/') + name_ + QLatin1String(".part");
}

QString Download::tagPath() const {
    return folder_ + QLatin1Char('/') + name_ + QLatin1String(".tag");
}

void Download::start() {
    if (isUnderWay()) {
        return;
    }
    if (wanted_.length < 1 || wanted_.length > maximumDownloadBytes) {
        refuseLater(DownloadError::WrongLength);
    } else if (!prepareFolder() || !openFile()) {
        refuseLater(DownloadError::File);
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
    *isVerifying_ = false;
    isVerifying_ = std::make_shared<bool>(false);
    QFile::remove(path());
    QFile::remove(tagPath());
    received_ = 0;
}

void Download::refuseLater(DownloadError error) {
    queue_.post([self = QPointer(this), error] {
        if (self) {
            self->refuse(error);
        }
    });
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
    const bool canGoOn =
        received_ == wanted_.length || (received_ < wanted_.length && !readTag(tagPath()).isEmpty());
    return canGoOn ? file_->seek(received_) : startOver();
}

bool Download::startOver() {
    received_ = 0;
    QFile::remove(tagPath());
    return file_->resize(0) && file_->seek(0);
}

void Download::fetch() {
    HttpGet::Headers headers;
    if (received_ > 0) {
        headers.emplace_back("Range", "bytes=" + QByteArray::number(received_) + '-');
        headers.emplace_back("If-Range", readTag(tagPath()));
    }
    request_ = std::make_unique<HttpGet>(
        queue_, wanted_.address, std::move(headers), silenceSeconds_, std::nullopt,
        HttpGet::Callbacks{.began = [this](const HttpGet::Head& head) { return acceptHead(head); },
                           .received = [this](const QByteArray& bytes) { return acceptBytes(bytes); },
                           .ended = [this] { ended(); },
                           .failed = [this](FetchError) { stopped(); }});
}

bool Download::acceptHead(const HttpGet::Head& head) {
    constexpr int ok = 200;
    constexpr int partialContent = 206;
    constexpr int rangeNotSatisfiable = 416;
    if (head.status == ok) {
        return acceptWhole(head);
    }
    if (received_ > 0 && head.status == partialContent) {
        const QByteArray range = "bytes " + QByteArray::number(received_) + '-' +
                                 QByteArray::number(wanted_.length - 1) + '/' +
                                 QByteArray::number(wanted_.length);
        startsOver_ = head.contentRange.simplified() != range;
        return !startsOver_;
    }
    startsOver_ = received_ > 0 && head.status == rangeNotSatisfiable;
    return false;
}

bool Download::acceptWhole(const HttpGet::Head& head) {
    if (head.length && *head.length != wanted_.length) {
        refusal_ = DownloadError::WrongLength;
        return false;
    }
    if (!startOver()) {
        refusal_ = DownloadError::File;
        return false;
    }
    if (isStrongTag(head.entityTag)) {
        QFile tag(tagPath());
        if (!tag.open(QIODevice::WriteOnly, filePermissions) ||
            tag.write(head.entityTag) != head.entityTag.size()) {
            tag.remove(); // the download will not be gone on from, and that is all
        }
    }
    return true;
}

bool Download::acceptBytes(const QByteArray& bytes) {
    if (bytes.size() > wanted_.length - received_) {
        refusal_ = DownloadError::WrongLength;
        return false;
    }
    if (file_->write(bytes) != bytes.size() || !file_->flush()) {
        refusal_ = DownloadError::File;
        return false;
    }
    received_ += bytes.size();
    Q_EMIT progressed(received_, wanted_.length);
    return true;
}

void Download::ended() {
    if (received_ == wanted_.length) {
        verify();
    } else {
        refuse(DownloadError::WrongLength);
    }
}

void Download::stopped() {
    request_.reset();
    if (const auto refusal = std::exchange(refusal_, std::nullopt)) {
        refuse(*refusal);
    } else if (std::exchange(startsOver_, false)) {
        if (startOver()) {
            fetch();
        } else {
            refuse(DownloadError::File);
        }
    } else {
        pause();
        Q_EMIT failed(DownloadError::Connection);
    }
}

void Download::verify() {
    pause();
    *isVerifying_ = true;
    queue_.compute([path = path(), wanted = wanted_] { return errorIn(path, wanted); },
                   [this, isAwaited = isVerifying_](const std::optional<DownloadError>& error) {
                       if (!std::exchange(*isAwaited, false)) {
                           return;
                       }
                       if (error) {
                           refuse(*error);
                       } else {
                           Q_EMIT verified();
                       }
                   });
    Q_EMIT verifying();
}

void Download::refuse(DownloadError error) {
    remove();
    Q_EMIT failed(error);
}

} // namespace amberquill
