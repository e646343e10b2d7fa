#include "updates/dialogs/UpdateProgressDialog.h"

#include "localization/L.h"
#include "localization/TranslatedTexts.h"
#include "updates/dialogs/DialogParts.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QLocale>
#include <QProgressBar>
#include <QPushButton>
#include <QVBoxLayout>
#include <algorithm>
#include <utility>

namespace amberquill {

namespace {

constexpr int barWidth = 320; // in points

// The bar's range. Its int values are too small for bytes.
constexpr int barMaximum = 1000;

QString amountText(qint64 received, qint64 length) {
    const QLocale locale;
    const auto size = [&locale](qint64 bytes) {
        return locale.formattedDataSize(bytes, 1, QLocale::DataSizeSIFormat);
    };
    return length > 0 ? updateText(UpdateText::Progress).arg(size(received), size(length)) : size(received);
}

} // namespace

UpdateProgressDialog::UpdateProgressDialog(Answers answers)
    : answers_(std::move(answers))
    , step_(headline({}))
    , bar_(new QProgressBar)
    , amount_(plainText({}))
    , pause_(new QPushButton(updateText(UpdateText::Pause)))
    , cancel_(new QPushButton(L::cancel())) {
    arrange();
    connect(cancel_, &QPushButton::clicked, this, &UpdateProgressDialog::reject);
    connect(pause_, &QPushButton::clicked, this,
            [this] { (isPaused_ ? answers_.resume : answers_.pause)(); });
    cancel_->setFocus();
    showChecking();
}

void UpdateProgressDialog::arrange() {
    setWindowTitle(QStringLiteral("Amberquill"));
    bar_->setTextVisible(false);
    bar_->setMinimumWidth(barWidth);
    auto* texts = new QVBoxLayout;
    texts->addWidget(step_);
    texts->addWidget(bar_);
    texts->addWidget(amount_);
    texts->addStretch(1);
    auto* upper = new QHBoxLayout;
    upper->addWidget(programIcon(*this), 0, Qt::AlignTop);
    upper->addSpacing(upper->spacing());
    upper->addLayout(texts, 1);
    auto* buttons = new QHBoxLayout;
    buttons->addStretch(1);
    buttons->addWidget(pause_);
    buttons->addWidget(cancel_);
    auto* all = new QVBoxLayout(this);
    all->addLayout(upper);
    all->addSpacing(all->spacing());
    all->addLayout(buttons);
}

void UpdateProgressDialog::showChecking() {
    showStep(updateText(UpdateText::Checking));
    bar_->setRange(0, 0);
    amount_->clear();
    pause_->setVisible(false);
}

void UpdateProgressDialog::showDownload(qint64 received, qint64 length) {
    isPaused_ = false;
    showStep(updateText(UpdateText::Downloading));
    showAmount(received, length);
    pause_->setText(updateText(UpdateText::Pause));
    pause_->setVisible(true);
}

void UpdateProgressDialog::showPaused(qint64 received, qint64 length) {
    isPaused_ = true;
    showStep(updateText(UpdateText::Paused));
    showAmount(received, length);
    pause_->setText(updateText(UpdateText::Resume));
    pause_->setVisible(true);
}

void UpdateProgressDialog::showInstalling() {
    showStep(updateText(UpdateText::Installing));
    bar_->setRange(0, 0);
    amount_->clear();
    pause_->setVisible(false);
    cancel_->setEnabled(false);
    answers_.cancel = nullptr;
}

void UpdateProgressDialog::showStep(const QString& text) {
    if (step_->text() != text) {
        step_->setText(text);
        bar_->setAccessibleName(text);
        setAccessibleName(text);
    }
}

void UpdateProgressDialog::showAmount(qint64 received, qint64 length) {
    if (length > 0) {
        const double part = static_cast<double>(received) / static_cast<double>(length);
        bar_->setRange(0, barMaximum);
        bar_->setValue(static_cast<int>(std::clamp(part, 0.0, 1.0) * barMaximum));
    } else {
        bar_->setRange(0, 0);
    }
    amount_->setText(amountText(received, length));
}

void UpdateProgressDialog::reject() {
    const auto cancel = std::exchange(answers_.cancel, nullptr);
    QDialog::reject();
    if (cancel) {
        cancel();
    }
}

} // namespace amberquill
