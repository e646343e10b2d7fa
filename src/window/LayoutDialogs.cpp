#include "window/LayoutDialogs.h"

#include "localization/L.h"
#include "platform/FileSystem.h"
#include "window/ApplicationIcon.h"
#include "window/DialogPresentation.h"

#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QLabel>
#include <QLoggingCategory>
#include <QMessageBox>
#include <QPushButton>
#include <memory>
#include <system_error>
#include <utility>

namespace amberquill {

namespace {

Q_LOGGING_CATEGORY(dialogLog, "amberquill.window", QtCriticalMsg)

// Larger than any layout, in bytes.
constexpr qint64 largestFile = 64LL * 1024 * 1024;

// The edge of the icon and the width of the lines in the about panel, in points.
constexpr int aboutPicture = 64;
constexpr int aboutWidth = 300;

// A file's name and its error. Qt translates some of the errors.
QString failure(const QString& path, const std::error_code& error) {
    return QFileInfo(path).fileName() + QStringLiteral(": ") + qt_error_string(error.value());
}

std::unique_ptr<QFileDialog> fileDialog(const QString& command, const QString& folder) {
    // The title is the command without its dots. Qt takes a missing folder for a file's name.
    auto dialog = std::make_unique<QFileDialog>(nullptr, QString(command).remove(u'…'),
                                                QFileInfo(folder).isDir() ? folder : QDir::homePath());
    // Qt's own dialog, in this process: so the program stays the active one.
    dialog->setOption(QFileDialog::DontUseNativeDialog);
    dialog->setNameFilter(QStringLiteral("JSON (*.json)"));
    dialog->setDefaultSuffix(QStringLiteral("json"));
    return dialog;
}

} // namespace

LayoutDialogs::LayoutDialogs(Services services, QObject* parent)
    : QObject(parent)
    , services_(std::move(services)) {}

LayoutDialogs::~LayoutDialogs() {
    delete dialog_.data();
    delete about_.data();
}

bool LayoutDialogs::isOpen() const {
    return dialog_ != nullptr;
}

// The dialog deletes itself when it is closed.
void LayoutDialogs::open(QDialog* dialog) {
    if (dialog_ != nullptr) {
        dialog_->close(); // deleted later: its own handler may be running
    }
    dialog_ = dialog;
    presentDialog(*dialog, services_.above(), DialogFocus::Modal);
}

void LayoutDialogs::ask(const QString& message, const QString& informativeText, const QString& accept,
                        std::function<void()> accepted) {
    auto box = std::make_unique<QMessageBox>(QMessageBox::Question, QStringLiteral("Amberquill"), message);
    box->setTextFormat(Qt::PlainText);
    box->setInformativeText(informativeText);
    box->setDefaultButton(box->addButton(accept, QMessageBox::AcceptRole));
    box->setEscapeButton(box->addButton(L::cancel(), QMessageBox::RejectRole));
    connect(box.get(), &QMessageBox::accepted, this, std::move(accepted));
    open(box.release());
}

void LayoutDialogs::confirmReset() {
    ask(L::resetTitle(), L::resetMessage(), L::reset(), [this] { services_.model.resetLayout(); });
}

void LayoutDialogs::exportLayout() {
    auto dialog = fileDialog(L::exportLayout(), services_.startFolder);
    dialog->setAcceptMode(QFileDialog::AcceptSave);
    dialog->selectFile(L::exportFileName());
    connect(dialog.get(), &QFileDialog::fileSelected, this, &LayoutDialogs::writeTo);
    open(dialog.release());
}

void LayoutDialogs::writeTo(const QString& path) {
    std::error_code error;
    if (!services_.files.writeAtomically(path, services_.model.exportLayoutData(), NewFile::ByUmask, error)) {
        qCDebug(dialogLog) << "could not export to" << path << error.value();
        showError(L::exportFailed(), failure(path, error));
    }
}

void LayoutDialogs::importLayout() {
    auto dialog = fileDialog(L::importLayout(), services_.startFolder);
    dialog->setFileMode(QFileDialog::ExistingFile);
    connect(dialog.get(), &QFileDialog::fileSelected, this, [this](const QString& path) {
        ask(L::importTitle(), L::importMessage(), L::importButton(), [this, path] { readFrom(path); });
    });
    open(dialog.release());
}

void LayoutDialogs::readFrom(const QString& path) {
    std::error_code error;
    const auto content = services_.files.readFile(path, largestFile, error);
    if (!content && error != std::errc::file_too_large) {
        qCDebug(dialogLog) << "could not read" << path << error.value();
        showError(L::importFailed(), failure(path, error));
    } else if (!content || services_.model.importLayout(*content)) {
        qCDebug(dialogLog) << "no layout to import in" << path;
        showError(L::importFailed(), InvalidLayoutFile::errorDescription());
    }
}

void LayoutDialogs::showAbout(const QString& version, const std::function<void()>& closed) {
    if (about_ != nullptr && about_->isVisible()) {
        bringDialogToFront(*about_);
        return;
    }
    auto box = std::make_unique<QMessageBox>(QMessageBox::NoIcon, L::about(), QStringLiteral("Amberquill"),
                                             QMessageBox::Ok);
    box->setTextFormat(Qt::PlainText);
    box->setInformativeText(version);
    box->setIconPixmap(applicationPixmap(aboutPicture, box->devicePixelRatio()));
    for (QLabel* label : box->findChildren<QLabel*>()) {
        if (label->text() == version) {
            label->setMinimumWidth(aboutWidth); // so that the title has room
        }
    }
    connect(box.get(), &QObject::destroyed, this, closed);
    about_ = box.get();
    presentDialog(*box.release(), services_.above(), DialogFocus::Taken);
}

void LayoutDialogs::showError(const QString& message, const QString& informativeText) {
    auto box = std::make_unique<QMessageBox>(QMessageBox::Warning, QStringLiteral("Amberquill"), message,
                                             QMessageBox::Ok);
    box->setTextFormat(Qt::PlainText);
    box->setInformativeText(informativeText);
    open(box.release());
}

} // namespace amberquill
