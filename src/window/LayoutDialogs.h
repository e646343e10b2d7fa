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

// The small dialogs: reset, export and import of the layout, and what went wrong. Each stands above the
// launcher and is answered before anything happens; one at a time. Beside them the panel that tells what this
// program is, which nobody need answer.
class LayoutDialogs final : public QObject {
    Q_OBJECT

public:
    struct Services {
        LauncherModel& model;
        FileSystem& files;
        QString startFolder;             // the file dialogs' first folder
        std::function<QWindow*()> above; // the window to stand above; none: it is not on the screen
    };

    explicit LayoutDialogs(Services services, QObject* parent = nullptr);
    ~LayoutDialogs() override;

    LayoutDialogs(const LayoutDialogs&) = delete;
    LayoutDialogs& operator=(const LayoutDialogs&) = delete;

    void confirmReset();
    void exportLayout();
    void importLayout();
    // `closed` is called once it is gone. While it is up, another call brings it to the front.
    void showAbout(const QString& version, const std::function<void()>& closed);
    void showError(const QString& message, const QString& informativeText);

    // Whether one waits for an answer.
    [[nodiscard]] bool isOpen() const;

private:
    void ask(const QString& message, const QString& informativeText, const QString& accept,
             std::function<void()> accepted);
    void open(QDialog* dialog);
    void writeTo(const QString& path);
    void readFrom(const QString& path);

    Services services_;
    QPointer<QDialog> dialog_; // waits for an answer
    QPointer<QDialog> about_;
};

} // namespace amberquill
