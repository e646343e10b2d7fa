#include "updates/updater/Updater.h"

#include "data/IsoDate.h"
#include "platform/Preferences.h"
#include "updates/updater/Version.h"

#include <QLoggingCategory>
#include <cmath>

namespace amberquill {
namespace {

Q_LOGGING_CATEGORY(updaterLog, "amberquill.updates", QtCriticalMsg)

const auto automaticKey = QStringLiteral("SUEnableAutomaticChecks");
const auto lastCheckKey = QStringLiteral("SULastCheckTime");
const auto skippedKey = QStringLiteral("SUSkippedVersion");

std::chrono::seconds rounded(double seconds) {
    return std::chrono::seconds(std::llround(seconds));
}

UpdateError updateError(DownloadError error) {
    switch (error) {
    case DownloadError::Connection:
        return UpdateError::Download;
    case DownloadError::WrongLength:
        return UpdateError::WrongLength;
    case DownloadError::WrongSignature:
        return UpdateError::WrongSignature;
    case DownloadError::File:
        break;
    }
    return UpdateError::File;
}

const char* description(UpdateError error) {
    switch (error) {
    case UpdateError::NoFeed:
        return "the bundle names no feed";
    case UpdateError::FeedConnection:
        return "the feed could not be fetched";
    case UpdateError::FeedContent:
        return "the feed could not be read";
    case UpdateError::NoDownload:
        return "the version has no valid download";
    case UpdateError::NoPublicKey:
        return "the bundle has no public key";
    case UpdateError::NoSignature:
        return "the version is not signed";
    case UpdateError::Download:
        return "the connection failed";
    case UpdateError::WrongLength:
        return "wrong length";
    case UpdateError::WrongSignature:
        return "wrong signature";
    case UpdateError::File:
        return "the download could not be written or read";
    case UpdateError::NotNewer:
        return "the downloaded program is not newer";
    case UpdateError::Installation:
        break;
    }
    return "the program could not be replaced";
}

// Why the item cannot be installed; none: it may be downloaded.
std::optional<UpdateError> errorIn(const FeedItem& item, const BundleKeys& keys) {
    if (!item.enclosure || !item.enclosure->address.isValid() || item.enclosure->length < 1) {
        return UpdateError::NoDownload;
    }
    if (item.enclosure->length > maximumDownloadBytes) {
        return UpdateError::WrongLength;
    }
    if (!keys.publicKey) {
        return UpdateError::NoPublicKey;
    }
    return item.enclosure->signature ? std::nullopt : std::optional(UpdateError::NoSignature);
}

} // namespace

Updater::Updater(Services services, QObject* parent)
    : QObject(parent)
    , services_(std::move(services))
    , fetch_(services_.queue, services_.timeouts) {}

Updater::~Updater() = default;

// Background work of this session: its answer is dropped once the session has ended.
template<typename Task, typename Answer>
void Updater::compute(Task task, Answer answer) {
    services_.queue.compute(session_, std::move(task),
                            [this, answer](const auto& value) { (this->*answer)(value); });
}

void Updater::start() {
    isStarted_ = true;
    schedule();
}

bool Updater::automaticallyChecksForUpdates() const {
    return services_.preferences.boolean(automaticKey).value_or(true);
}

void Updater::setAutomaticallyChecksForUpdates(bool on) {
    services_.preferences.setBoolean(automaticKey, on);
    if (!on && !isShown_ && state_ != State::Idle) {
        endSession();
    } else {
        schedule();
    }
}

std::optional<std::chrono::sys_seconds> Updater::lastCheck() const {
    return dateFromIsoText(services_.preferences.string(lastCheckKey).value_or(QString()));
}

void Updater::schedule() {
    nextCheck_.cancel();
    if (!isStarted_ || !automaticallyChecksForUpdates() || !services_.keys.feedAddress) {
        return;
    }
    const std::chrono::sys_seconds now = services_.queue.date();
    const auto last = lastCheck();
    // If the last check lies in the future, the clock was or is wrong: it does not count.
    const bool counts = last && *last <= now;
    due_ = (counts ? std::max(*last + rounded(checkInterval), now) : now) +
           rounded(services_.random() * maximumJitter);
    wakeUpIn(secondsUntilDue());
}

double Updater::secondsUntilDue() const {
    return std::chrono::duration<double>(due_ - services_.queue.date()).count();
}

void Updater::wakeUpIn(double seconds) {
    nextCheck_ = services_.queue.postAfter(std::min(seconds, maximumWait), [this] { checkIfDue(); });
}

void Updater::checkIfDue() {
    if (state_ != State::Idle) {
        return; // the end of the session schedules the next check
    }
    const double wait = secondsUntilDue();
    if (wait > checkInterval + maximumJitter) {
        schedule(); // the date has jumped back
    } else if (wait > 0) {
        wakeUpIn(wait);
    } else if (services_.isBusy()) {
        wakeUpIn(busyRetry);
    } else {
        check(UpdateCheck::Scheduled);
    }
}

void Updater::checkForUpdates() {
    const bool isUnseen = state_ != State::Idle && !isShown_;
    if (state_ == State::Idle) {
        check(UpdateCheck::UserInitiated);
    } else if (isUnseen && state_ == State::Checking) {
        // A scheduled check ignores the skipped version: it starts again as the user's check.
        endSession();
        check(UpdateCheck::UserInitiated);
    } else if (isUnseen) {
        check_ = UpdateCheck::UserInitiated;
        showFound();
    } else {
        services_.userInterface.bringToFront();
    }
}

void Updater::check(UpdateCheck check) {
    nextCheck_.cancel();
    state_ = State::Checking;
    check_ = check;
    if (check == UpdateCheck::UserInitiated) {
        isShown_ = true;
        services_.userInterface.showChecking();
    }
    if (!services_.keys.feedAddress) {
        fail(UpdateError::NoFeed);
        return;
    }
    services_.preferences.setString(lastCheckKey, isoText(services_.queue.date()));
    fetch_.get(*services_.keys.feedAddress, maximumFeedBytes,
               [this](const Fetched& fetched) { feedFetched(fetched); });
}

void Updater::feedFetched(const Fetched& fetched) {
    if (const auto* const bytes = std::get_if<QByteArray>(&fetched)) {
        compute([bytes = *bytes] { return readFeed(bytes); }, &Updater::feedRead);
    } else {
        fail(UpdateError::FeedConnection);
    }
}

void Updater::feedRead(const std::optional<std::vector<FeedItem>>& items) {
    if (!items) {
        fail(UpdateError::FeedContent);
        return;
    }
    const auto skipped =
        check_ == UpdateCheck::Scheduled ? services_.preferences.string(skippedKey) : std::nullopt;
    auto update = chooseUpdate(*items, services_.keys.version, services_.systemVersion, {}, skipped);
    qCDebug(updaterLog) << "feed with" << items->size()
                        << "items, update:" << (update ? update->version : QStringLiteral("none"));
    if (update && installed_ && !isNewer(update->version, installed_->version)) {
        offerRestart();
    } else if (update) {
        update_ = withAllowedLinks(std::move(*update), *services_.keys.feedAddress);
        state_ = State::Found;
        showFound();
    } else if (isShown_) {
        state_ = State::UpToDate;
        services_.userInterface.showNoUpdate(services_.keys.shownVersion);
    } else {
        endSession();
    }
}

void Updater::showFound() {
    nextTryToShow_.cancel();
    if (check_ == UpdateCheck::Scheduled && services_.isBusy()) {
        nextTryToShow_ = services_.queue.postAfter(busyRetry, [this] { showFound(); });
        return;
    }
    isShown_ = true;
    services_.delegate.standardUserDriverWillHandleShowingUpdate(true, update_, check_);
    services_.userInterface.showUpdateFound({.item = update_,
                                             .installedVersion = services_.keys.shownVersion,
                                             .installKind = services_.installer.kind()});
}

void Updater::install() {
    if (state_ != State::Found || !isShown_) {
        return;
    }
    if (const auto error = errorIn(update_, services_.keys)) {
        fail(*error);
    } else if (services_.installer.kind() != InstallKind::Image) {
        fail(UpdateError::Installation);
    } else {
        state_ = State::Downloading;
        download();
    }
}

void Updater::download() {
    download_ = std::make_unique<Download>(services_.queue, services_.downloadFolder,
                                           Download::Request{.address = update_.enclosure->address,
                                                             .length = update_.enclosure->length,
                                                             .signature = *update_.enclosure->signature,
                                                             .publicKey = *services_.keys.publicKey},
                                           services_.timeouts.idle);
    connect(download_.get(), &Download::progressed, this, [this](qint64 received, qint64 length) {
        services_.userInterface.showProgress(received, length);
    });
    connect(download_.get(), &Download::verifying, this, [this] {
        state_ = State::Installing;
        services_.userInterface.showInstalling();
    });
    connect(download_.get(), &Download::verified, this, &Updater::stage);
    connect(download_.get(), &Download::failed, this,
            [this](DownloadError error) { fail(updateError(error)); });
    resume();
}

void Updater::stage() {
    compute([&installer = services_.installer, path = download_->path()] { return installer.stage(path); },
            &Updater::staged);
}

void Updater::staged(const std::optional<QString>& version) {
    if (!version) {
        download_->remove();
        fail(UpdateError::Installation);
    } else if (!isNewer(*version, services_.keys.version)) {
        services_.installer.discard();
        download_->remove();
        fail(UpdateError::NotNewer);
    } else {
        compute([&installer = services_.installer] { return installer.replace(); }, &Updater::replaced);
    }
}

void Updater::replaced(bool done) {
    download_->remove();
    if (!done) {
        fail(UpdateError::Installation);
        return;
    }
    installed_ = update_;
    qCDebug(updaterLog) << "installed version" << update_.version;
    offerRestart();
}

// Scheduled checks do not offer the restart again.
void Updater::offerRestart() {
    if (!isShown_) {
        endSession();
        return;
    }
    state_ = State::Installed;
    services_.userInterface.showReadyToRestart(*installed_);
}

void Updater::fail(UpdateError error) {
    qCDebug(updaterLog) << "no update:" << description(error);
    error_ = error;
    if (!isShown_) {
        endSession();
        return;
    }
    state_ = State::Failed;
    services_.userInterface.showError(error);
}

void Updater::later() {
    if ((state_ == State::Found && isShown_) || state_ == State::Installed) {
        endSession();
    }
}

void Updater::skip() {
    if (state_ == State::Found && isShown_) {
        services_.preferences.setString(skippedKey, update_.version);
        endSession();
    }
}

void Updater::acknowledge() {
    if (state_ == State::UpToDate || state_ == State::Failed) {
        endSession();
    }
}

void Updater::pause() {
    if (state_ == State::Downloading && download_->isUnderWay()) {
        download_->pause();
        services_.userInterface.showPaused(download_->receivedBytes(), download_->length());
    }
}

void Updater::resume() {
    if (state_ != State::Downloading || download_->isUnderWay()) {
        return;
    }
    download_->start();
    if (state_ == State::Downloading) {
        services_.userInterface.showProgress(download_->receivedBytes(), download_->length());
    }
}

void Updater::cancel() {
    if ((state_ == State::Checking && isShown_) || state_ == State::Downloading) {
        endSession();
    }
}

void Updater::restart() {
    if (state_ != State::Installed) {
        return;
    }
    const bool starts = services_.installer.startAgainAfterExit();
    endSession();
    if (starts) {
        services_.quit();
    }
}

void Updater::endSession() {
    session_.reset();
    nextTryToShow_.cancel();
    fetch_.cancel();
    download_.reset();
    state_ = State::Idle;
    const auto error = std::exchange(error_, std::nullopt);
    if (std::exchange(isShown_, false)) {
        services_.userInterface.dismiss();
        services_.delegate.standardUserDriverWillFinishUpdateSession();
    }
    services_.delegate.didFinishUpdateCycle(check_, error);
    schedule();
}

} // namespace amberquill
