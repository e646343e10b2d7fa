#pragma once

#include "platform/ProgramInstaller.h"
#include "updates/updater/Feed.h"
#include "updates/updater/UpdaterDelegate.h"

#include <QString>

namespace amberquill {

// A version that is offered to the user.
struct UpdateOffer {
    FeedItem item;
    QString installedVersion; // to show to the user
    InstallKind installKind = InstallKind::Other;

    // The page about the version, or else the page with its notes; invalid: neither.
    [[nodiscard]] QUrl page() const {
        return item.releasePage.isValid() ? item.releasePage : item.releaseNotesPage;
    }
};

// Shows the updater's state and passes the user's answers on. Each call except `showProgress` and
// `bringToFront` replaces the previous window. No call waits: the answer is a later call of one of the
// functions of Updater that the comment names.
class UpdaterUserInterface {
public:
    UpdaterUserInterface() = default;
    UpdaterUserInterface(const UpdaterUserInterface&) = delete;
    UpdaterUserInterface& operator=(const UpdaterUserInterface&) = delete;
    virtual ~UpdaterUserInterface() = default;

    // A check by the user has started. Answer: Updater::cancel(), or none.
    virtual void showChecking() = 0;

    // Answer: Updater::install(), later() or skip(). If the program is not an image, the interface opens the
    // offer's page and calls later() instead of install().
    virtual void showUpdateFound(const UpdateOffer& offer) = 0;

    // A check by the user has found no newer version. Answer: Updater::acknowledge().
    virtual void showNoUpdate(const QString& installedVersion) = 0;

    // Answer: Updater::acknowledge().
    virtual void showError(UpdateError error) = 0;

    // The download runs; called again for each progress. Answer: Updater::pause() or cancel(), or none.
    virtual void showProgress(qint64 receivedBytes, qint64 length) = 0;

    // The download is paused. Answer: Updater::resume() or cancel().
    virtual void showPaused(qint64 receivedBytes, qint64 length) = 0;

    // The download is verified, then installed. No answer: this cannot be stopped.
    virtual void showInstalling() = 0;

    // The new version is in place. Answer: Updater::restart() or later().
    virtual void showReadyToRestart(const FeedItem& update) = 0;

    // The user has asked for a check while something is shown.
    virtual void bringToFront() = 0;

    // The session has ended: closes the window.
    virtual void dismiss() = 0;
};

} // namespace amberquill
