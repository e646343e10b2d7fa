#include "updates/dialogs/UpdateDialogs.h"

#include "localization/L.h"
#include "localization/TranslatedTexts.h"
#include "updates/dialogs/DialogParts.h"
#include "updates/dialogs/UpdateFoundDialog.h"
#include "updates/dialogs/UpdateProgressDialog.h"

#include <QMessageBox>
#include <QPushButton>
#include <QWindow>
#include <utility>

namespace amberquill {

namespace {

UpdateText reason(UpdateError error) {
    switch (error) {
    case UpdateError::NoFeed:
    case UpdateError::FeedContent:
        return UpdateText::FeedUnreadable;
    case UpdateError::FeedConnection:
        return UpdateText::FeedNotFetched;
    case UpdateError::NoDownload:
        return UpdateText::NoDownload;
    case UpdateError::NoPublicKey:
        return UpdateText::NoKey;
    case UpdateError::NoSignature:
        return UpdateText::NoSignature;
    case UpdateError::Download:
        return UpdateText::DownloadFailed;
    case UpdateError::WrongLength:
        return UpdateText::WrongLength;
    case UpdateError::WrongSignature:
        return UpdateText::WrongSignature;
    case UpdateError::File:
        return UpdateText::NotStored;
    case UpdateError::NotNewer:
        return UpdateText::OlderVersion;
    case UpdateError::Installation:
        break;
    }
    return UpdateText::NotReplaceable;
}

std::unique_ptr<QMessageBox> upToDateBox(const QString& version) {
    auto box = messageBox(L::upToDate(), L::upToDateMessage(shownVersion(version)));
    box->setStandardButtons(QMessageBox::Ok);
    return box;
}

// Closes the dialog without an answer.
void discard(QDialog* dialog) {
    if (dialog != nullptr) {
        dialog->hide();
        dialog->deleteLater();
    }
}

} // namespace

UpdateDialogs::UpdateDialogs(Services services)
    : services_(std::move(services)) {}

UpdateDialogs::~UpdateDialogs() {
    delete dialog_.data();
    delete alert_.data();
}

template<typename Dialog>
Dialog& UpdateDialogs::put(std::unique_ptr<Dialog> dialog, DialogFocus focus) {
    discard(dialog_);
    dialog_ = dialog.get();
    presentDialog(*dialog, services_.launcher(), focus);
    return *dialog.release(); // it deletes itself
}

void UpdateDialogs::alertUpToDate(const QString& version, std::function<void()> closed) {
    if (alert_ == nullptr || !alert_->isVisible()) {
        auto box = upToDateBox(version);
        alert_ = box.get();
        presentDialog(*box.release(), services_.launcher(), DialogFocus::Modal);
    } else {
        bringDialogToFront(*alert_);
    }
    connect(alert_, &QDialog::finished, this, std::move(closed));
}

UpdateProgressDialog& UpdateDialogs::progress() {
    auto* shown = qobject_cast<UpdateProgressDialog*>(dialog_.data());
    if (shown != nullptr && shown->isVisible()) {
        return *shown;
    }
    return put(std::make_unique<UpdateProgressDialog>(UpdateProgressDialog::Answers{
                   .pause = answers_.pause, .resume = answers_.resume, .cancel = answers_.cancel}),
               DialogFocus::Taken);
}

void UpdateDialogs::showChecking() {
    progress().showChecking();
}

void UpdateDialogs::showUpdateFound(const UpdateOffer& offer) {
    const QUrl page = offer.page();
    // Only a check by the user shows its progress.
    const bool isUserInitiated = qobject_cast<UpdateProgressDialog*>(dialog_.data()) != nullptr;
    const FoundUpdate found{
        .version = offer.item.shownVersion(),
        .installedVersion = offer.installedVersion,
        .notes = offer.item.releaseNotes,
        .canInstall = offer.installKind == InstallKind::Image,
        .hasPage = page.scheme() == QStringLiteral("https"),
        .isUserInitiated = isUserInitiated,
    };
    const auto chosen = [this](UpdateChoice choice) {
        switch (choice) {
        case UpdateChoice::Skip:
            answers_.skip();
            break;
        case UpdateChoice::Later:
            answers_.later();
            break;
        case UpdateChoice::Install:
            answers_.install();
            break;
        }
    };
    const auto openPage = [this, page] { services_.openPage(page, *dialog_->windowHandle()); };
    put(std::make_unique<UpdateFoundDialog>(
            found, UpdateFoundDialog::Answers{.chosen = chosen, .openPage = openPage}),
        isUserInitiated ? DialogFocus::Taken : DialogFocus::NotTaken);
}

void UpdateDialogs::showNoUpdate(const QString& installedVersion) {
    const auto& box = put(upToDateBox(installedVersion), DialogFocus::Modal);
    connect(&box, &QDialog::finished, this, [this] { answers_.acknowledge(); });
}

void UpdateDialogs::showError(UpdateError error) {
    auto box = messageBox(updateText(UpdateText::FailedTitle), updateText(reason(error)));
    box->setStandardButtons(QMessageBox::Ok);
    connect(box.get(), &QDialog::finished, this, [this] { answers_.acknowledge(); });
    put(std::move(box), DialogFocus::Modal);
}

void UpdateDialogs::showProgress(qint64 receivedBytes, qint64 length) {
    progress().showDownload(receivedBytes, length);
}

void UpdateDialogs::showPaused(qint64 receivedBytes, qint64 length) {
    progress().showPaused(receivedBytes, length);
}

void UpdateDialogs::showInstalling() {
    progress().showInstalling();
}

void UpdateDialogs::showReadyToRestart(const FeedItem& update) {
    auto box = messageBox(updateText(UpdateText::InstalledTitle),
                          updateText(UpdateText::InstalledMessage).arg(shownVersion(update.shownVersion())));
    box->setDefaultButton(box->addButton(updateText(UpdateText::RestartNow), QMessageBox::AcceptRole));
    box->setEscapeButton(box->addButton(updateText(UpdateText::Later), QMessageBox::RejectRole));
    connect(box.get(), &QMessageBox::accepted, this, [this] { answers_.restart(); });
    connect(box.get(), &QMessageBox::rejected, this, [this] { answers_.later(); });
    put(std::move(box), DialogFocus::Taken);
}

void UpdateDialogs::bringToFront() {
    for (QDialog* each : {dialog_.data(), alert_.data()}) {
        if (each != nullptr && each->isVisible()) {
            bringDialogToFront(*each);
        }
    }
}

void UpdateDialogs::dismiss() {
    discard(dialog_);
    dialog_ = nullptr;
}

} // namespace amberquill
