#pragma once

#include <QDialog>
#include <functional>

class QLabel;
class QProgressBar;
class QPushButton;

namespace amberquill {

// What the updater is doing while a person waits for it. Closing it is its button "Cancel".
class UpdateProgressDialog final : public QDialog {
    Q_OBJECT

public:
    // What a person does with it. `cancel` is called at most once, and then the dialog is closed.
    struct Answers {
        std::function<void()> pause;
        std::function<void()> resume;
        std::function<void()> cancel;
    };

    explicit UpdateProgressDialog(Answers answers);

    void showChecking();
    // Bytes; a length that is not positive is not known.
    void showDownload(qint64 received, qint64 length);
    void showPaused(qint64 received, qint64 length);
    // From here on nothing can be stopped: closing the dialog only takes it away.
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
