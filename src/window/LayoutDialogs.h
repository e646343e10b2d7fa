#pragma once

#include "model/LauncherModel.h"

#include <QObject>
#include <QPointer>
#include <QString>
#include <functional>

class QDialog;
class QMessageBox;
class QWindow;

namespace amberquill {

class FileSystem;

// The dialogs for reset, export and import of the layout and for errors: modal, above the launcher, one at a
// time. Also the about panel, which is not modal.
class LayoutDialogs final : public QObject {
    Q_OBJECT

public:
    struct Services {
        LauncherModel& model;
        FileSystem& files;
        QString startFolder;             // where the file dialogs start
        std::function<QWindow*()> above; // the launcher's window; null: it is not on the screen
    };

    explicit LayoutDialogs(Services services, QObject* parent = nullptr);
    ~LayoutDialogs() override;

    LayoutDialogs(const LayoutDialogs&) = delete;
    LayoutDialogs& operator=(const LayoutDialogs&) = delete;

    void confirmReset();
    void exportLayout();
    void importLayout();
    // `closed` is called when the panel is gone. If it is shown already, it is brought to the front.
    void showAbout(const QString& version, const std::function<void()>& closed);
    void showError(const QString& message, const QString& informativeText);

    // Whether a modal dialog is open.
    [[nodiscard]] bool isOpen() const;

private:
    void ask(const QString& message, const QString& informativeText, const QString& accept,
             std::function<void()> accepted);
    void open(QDialog* dialog);
    void writeTo(const QString& path);
    void readFrom(const QString& path);

    Services services_;
    QPointer<QDialog> dialog_; // the modal one
    QPointer<QDialog> about_;
};

} // namespace amberquill
