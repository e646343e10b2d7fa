#pragma once

#include <QDialog>
#include <functional>

class QLabel;
class QProgressBar;
class QPushButton;

namespace amberquill {

// The updater's current step. Closing the dialog is the same as its button "Cancel".
class UpdateProgressDialog final : public QDialog {
    Q_OBJECT

public:
    // `cancel` is called at most once, after the dialog was closed.
    struct Answers {
        std::function<void()> pause;
        std::function<void()> resume;
        std::function<void()> cancel;
    };

    explicit UpdateProgressDialog(Answers answers);

    void showChecking();
    // In bytes; a length of 0 or less is unknown.
    void showDownload(qint64 received, qint64 length);
    void showPaused(qint64 received, qint64 length);
    // The installation cannot be cancelled: from now on closing the dialog only hides it.
    void showInstalling();

    void reject() override;

private:
    void arrange();
    void showStep(const QString& text);
    void showAmount(qint64 received, qint64 length);

    Answers answers_;
    QLabel* step_;
    QProgressBar* bar_;
    QLabel* amount_;
    QPushButton* pause_;
    QPushButton* cancel_;
    bool isPaused_ = false;
};

} // namespace amberquill
