// updates/dialogs/: the updater's dialogs and menu items. `ProgramUpdates` makes them and the updater, and
// connects them. Begin there.
#pragma once

#include "updates/updater/UpdaterUserInterface.h"
#include "window/DialogPresentation.h"

#include <QObject>
#include <QPointer>
#include <QString>
#include <QUrl>
#include <functional>
#include <memory>

class QDialog;
class QWindow;

namespace amberquill {

// The updater's windows: one at a time, and independently of it the alert that the program is up to date.
// Main thread only.
class UpdateDialogs final : public QObject, public UpdaterUserInterface {
    Q_OBJECT

public:
    struct Services {
        std::function<QWindow*()> launcher; // the window below the dialogs; null: it is not shown
        // Opens a web page; `from` is the window with the button.
        std::function<void(const QUrl& page, QWindow& from)> openPage;
    };

    // The updater's functions of the same names.
    struct Answers {
        std::function<void()> install;
        std::function<void()> later;
        std::function<void()> skip;
        std::function<void()> acknowledge;
        std::function<void()> pause;
        std::function<void()> resume;
        std::function<void()> cancel;
        std::function<void()> restart;
    };

    explicit UpdateDialogs(Services services);
    ~UpdateDialogs() override;

    UpdateDialogs(const UpdateDialogs&) = delete;
    UpdateDialogs& operator=(const UpdateDialogs&) = delete;

    void setAnswers(Answers answers) { answers_ = std::move(answers); }

    // The alert that this version is the latest. Calls `closed` after the alert was closed. While the alert
    // is open, another call brings it to the front, and both `closed` are called.
    void alertUpToDate(const QString& version, std::function<void()> closed);

    void showChecking() override;
    void showUpdateFound(const UpdateOffer& offer) override;
    void showNoUpdate(const QString& installedVersion) override;
    void showError(UpdateError error) override;
    void showProgress(qint64 receivedBytes, qint64 length) override;
    void showPaused(qint64 receivedBytes, qint64 length) override;
    void showInstalling() override;
    void showReadyToRestart(const FeedItem& update) override;
    void bringToFront() override;
    void dismiss() override;

private:
    template<typename Dialog>
    Dialog& put(std::unique_ptr<Dialog> dialog, DialogFocus focus);
    class UpdateProgressDialog& progress();

    Services services_;
    Answers answers_;
    QPointer<QDialog> dialog_;
    QPointer<QDialog> alert_;
};

} // namespace amberquill
