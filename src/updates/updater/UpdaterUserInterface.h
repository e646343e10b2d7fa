#pragma once

#include "platform/ProgramInstaller.h"
#include "updates/updater/Feed.h"
#include "updates/updater/UpdaterDelegate.h"

#include <QString>

namespace amberquill {

// A version that the user may have.
struct UpdateOffer {
    FeedItem item;
    QString installedVersion; // as shown to people
    InstallKind installKind = InstallKind::other;

    // Where to read about it or get it by hand: its page, else the page with its notes; invalid: nowhere.
    [[nodiscard]] QUrl page() const {
        return item.releasePage.isValid() ? item.releasePage : item.releaseNotesPage;
    }
};

// What the updater shows and asks. Each call but `showProgress` replaces what was shown before, and none
// waits for the user: the answer is a call of the updater's, named at each, at any later time.
class UpdaterUserInterface {
public:
    UpdaterUserInterface() = default;
    UpdaterUserInterface(const UpdaterUserInterface&) = delete;
    UpdaterUserInterface& operator=(const UpdaterUserInterface&) = delete;
    virtual ~UpdaterUserInterface() = default;

    // The user's own check has begun. Answer: Updater::cancel(), or none.
    virtual void showChecking() = 0;

    // Answer: Updater::install(), later() or skip(). Where the program is not an image, install() opens no
    // download: the interface opens the offer's page and calls later().
    virtual void showUpdateFound(const UpdateOffer& offer) = 0;

    // The user's own check has found nothing. Answer: Updater::acknowledge().
    virtual void showNoUpdate(const QString& installedVersion) = 0;

    // Answer: Updater::acknowledge().
    virtual void showError(UpdateError error) = 0;

    // The download runs. Answer: Updater::pause() or cancel(), or none. Called again for each progress.
    virtual void showProgress(qint64 receivedBytes, qint64 length) = 0;

    // The user has paused it. Answer: Updater::resume() or cancel().
    virtual void showPaused(qint64 receivedBytes, qint64 length) = 0;

    // All of it is here and is checked, then installed. No answer: it cannot be stopped any more.
    virtual void showInstalling() = 0;

    // The new version is in place. Answer: Updater::restart() or later().
    virtual void showReadyToRestart(const FeedItem& update) = 0;

    // The user has asked again while something is shown.
    virtual void bringToFront() = 0;

    // It is over: whatever is shown goes.
    virtual void dismiss() = 0;
};

} // namespace amberquill
