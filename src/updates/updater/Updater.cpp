#include "updates/updater/Updater.h"

#include "data/IsoDate.h"
#include "platform/Preferences.h"
#include "updates/updater/AddressPolicy.h"
#include "updates/updater/Version.h"

#include <QPointer>
#include <cmath>

namespace amberquill {
namespace {

const auto automaticKey = QStringLiteral("SUEnableAutomaticChecks");
const auto lastCheckKey = QStringLiteral("SULastCheckTime");
const auto skippedKey = QStringLiteral("SUSkippedVersion");

std::chrono::seconds rounded(double seconds) {
    return std::chrono::seconds(std::llround(seconds));
}

UpdateError errorFor(DownloadError error) {
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

// Why the item cannot be installed, whatever comes of its download; none: nothing speaks against it yet.
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

// The item without the addresses that the feed, being where it is, may not name.
FeedItem confined(FeedItem item, const QUrl& feed) {
    for (QUrl* page : {&item.releasePage, &item.releaseNotesPage}) {
        *page = mayLeadTo(feed, *page) ? *page : QUrl();
    }
    if (item.enclosure && !mayLeadTo(feed, item.enclosure->address)) {
        item.enclosure.reset();
    }
    return item;
}

} // namespace

Updater::Updater(Services services, QObject* parent)
    : QObject(parent)
    , services_(std::move(services))
    , fetch_(services_.queue, services_.timeOuts) {}

Updater::~Updater() {
    timer_.cancel();
    retry_.cancel();
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
    timer_.cancel();
    if (!isStarted_ || !automaticallyChecksForUpdates() || !services_.keys.feedAddress) {
        return;
    }
    const auto now = services_.queue.date();
    const auto last = lastCheck();
    // A check in the future was made by a clock that was wrong then or is now.
    const auto daily =
        last && *last <= now ? std::max(*last + rounded(checkInterval), now) : std::chrono::sys_seconds(now);
    due_ = daily + rounded(services_.random() * spread);
    wakeAfter(secondsUntilDue());
}

double Updater::secondsUntilDue() const {
    return std::chrono::duration<double>(due_ - services_.queue.date()).count();
}

// The date may leap, by the user's hand or while the machine sleeps, so it is looked at now and then.
void Updater::lookAtDate() {
    const double wait = secondsUntilDue();
    if (state_ != State::Idle) {
        return; // at the end of the session the next check is scheduled
    }
    if (wait > checkInterval + spread) {
        schedule();
    } else if (wait > 0) {
        wakeAfter(wait);
    } else if (services_.isBusy()) {
        wakeAfter(busyRetry);
    } else {
        check(UpdateCheck::Scheduled);
    }
}

void Updater::wakeAfter(double seconds) {
    timer_ = services_.queue.postAfter(std::min(seconds, clockLook), [self = QPointer(this)] {
        if (self) {
            self->lookAtDate();
        }
    });
}

// Work in the background for this session: its answer is of no interest to another one.
template<typename Task, typename Then>
void Updater::compute(Task task, Then then) {
    services_.queue.compute(std::move(task),
                            [self = QPointer(this), session = session_, then = std::move(then)](auto value) {
                                if (self && self->session_ == session) {
                                    (self->*then)(value);
                                }
                            });
}

void Updater::checkForUpdates() {
    const bool isUnseen = state_ != State::Idle && !isShown_;
    if (state_ == State::Idle) {
        check(UpdateCheck::UserInitiated);
    } else if (isUnseen && state_ == State::Checking) {
        // Anew: what the user has skipped is of interest now.
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
    timer_.cancel();
    state_ = State::Checking;
    check_ = check;
    if (check == UpdateCheck::UserInitiated) {
        isShown_ = true;
        services_.userInterface.showChecking();
    }
    if (!services_.keys.feedAddress) {
        refuse(UpdateError::NoFeed);
        return;
    }
    services_.preferences.setString(lastCheckKey, isoText(services_.queue.date()));
    fetch_.get(*services_.keys.feedAddress, maximumFeedBytes,
               [this](const Fetched& fetched) { feedArrived(fetched); });
}

void Updater::feedArrived(const Fetched& fetched) {
    if (const auto* const bytes = std::get_if<QByteArray>(&fetched)) {
        compute([bytes = *bytes] { return readFeed(bytes); }, &Updater::decide);
    } else {
        refuse(UpdateError::FeedConnection);
    }
}

void Updater::decide(const std::optional<std::vector<FeedItem>>& items) {
    if (!items) {
        refuse(UpdateError::FeedContent);
        return;
    }
    const auto skipped =
        check_ == UpdateCheck::Scheduled ? services_.preferences.string(skippedKey) : std::nullopt;
    auto update = chooseUpdate(*items, services_.keys.version, services_.systemVersion, {}, skipped);
    if (update && installed_ && !isNewer(update->version, installed_->version)) {
        awaitRestart();
    } else if (update) {
        update_ = confined(std::move(*update), *services_.keys.feedAddress);
        state_ = State::Found;
        showFound();
    } else if (isShown_) {
        state_ = State::Nothing;
        services_.userInterface.showNoUpdate(services_.keys.shownVersion);
    } else {
        endSession();
    }
}

void Updater::showFound() {
    retry_.cancel();
    if (check_ == UpdateCheck::Scheduled && services_.isBusy()) {
        retry_ = services_.queue.postAfter(busyRetry, [self = QPointer(this)] {
            if (self) {
                self->showFound();
            }
        });
        return;
    }
    isShown_ = true;
    services_.delegate.standardUserDriverWillHandleShowingUpdate(true, update_, check_);
    services_.userInterface.showUpdateFound({.item = update_,
                                             .installedVersion = services_.keys.shownVersion,
                                             .installKind = services_.installer.kind()});
}

void Updater::refuse(UpdateError error) {
    error_ = error;
    if (!isShown_) {
        endSession();
        return;
    }
    state_ = State::Refused;
    services_.userInterface.showError(error);
}

void Updater::install() {
    if (state_ != State::Found || !isShown_) {
        return;
    }
    if (const auto error = errorIn(update_, services_.keys)) {
        refuse(*error);
    } else if (services_.installer.kind() != InstallKind::image) {
        refuse(UpdateError::Installation);
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
                                           services_.timeOuts.silence);
    connect(download_.get(), &Download::progressed, this, [this](qint64 received, qint64 length) {
        services_.userInterface.showProgress(received, length);
    });
    connect(download_.get(), &Download::verifying, this, [this] {
        state_ = State::Installing;
        services_.userInterface.showInstalling();
    });
    connect(download_.get(), &Download::verified, this, &Updater::stage);
    connect(download_.get(), &Download::failed, this,
            [this](DownloadError error) { refuse(errorFor(error)); });
    resume();
}

void Updater::stage() {
    compute([&installer = services_.installer, path = download_->path()] { return installer.stage(path); },
            &Updater::staged);
}

void Updater::staged(const std::optional<QString>& version) {
    if (!version) {
        download_->remove();
        refuse(UpdateError::Installation);
    } else if (!isNewer(*version, services_.keys.version)) {
        services_.installer.discard();
        download_->remove();
        refuse(UpdateError::NotNewer);
    } else {
        compute([&installer = services_.installer] { return installer.replace(); }, &Updater::replaced);
    }
}

void Updater::replaced(bool done) {
    download_->remove();
    if (!done) {
        refuse(UpdateError::Installation);
        return;
    }
    installed_ = update_;
    awaitRestart();
}

// The new program is in place. Nobody is told so twice without asking.
void Updater::awaitRestart() {
    if (!isShown_) {
        endSession();
        return;
    }
    state_ = State::Installed;
    services_.userInterface.showReadyToRestart(*installed_);
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
    if (state_ == State::Nothing || state_ == State::Refused) {
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
    ++session_;
    retry_.cancel();
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
