#include "updates/dialogs/DialogParts.h"

#include "window/ApplicationIcon.h"

#include <QLabel>
#include <QMessageBox>
#include <cmath>

namespace amberquill {

namespace {

// In points.
constexpr int iconSize = 64;
constexpr int messageWidth = 300;

constexpr qsizetype maximumVersionLength = 40;

QFont bold(QFont font) {
    font.setBold(true);
    return font;
}

} // namespace

QLabel* programIcon(const QWidget& dialog) {
    auto* label = new QLabel;
    label->setPixmap(applicationPixmap(iconSize, dialog.devicePixelRatio()));
    return label;
}

QLabel* plainText(const QString& text) {
    auto* label = new QLabel;
    label->setTextFormat(Qt::PlainText);
    label->setWordWrap(true);
    label->setText(text);
    return label;
}

QLabel* headline(const QString& text) {
    QLabel* label = plainText(text);
    label->setFont(bold(label->font()));
    return label;
}

std::unique_ptr<QMessageBox> messageBox(const QString& message, const QString& informativeText) {
    auto box = std::make_unique<QMessageBox>(QMessageBox::NoIcon, QStringLiteral("Amberquill"), message);
    box->setInformativeText(informativeText);
    for (QLabel* label : box->findChildren<QLabel*>()) {
        label->setTextFormat(Qt::PlainText); // QMessageBox::setTextFormat does not reach the informative text
        if (label->text() == message) {
            label->setFont(bold(label->font()));
        } else if (label->text() == informativeText) {
            label->setMinimumWidth(messageWidth);
        }
    }
    box->setIconPixmap(applicationPixmap(iconSize, box->devicePixelRatio()));
    return box;
}

QString shownVersion(const QString& version) {
    QString shown;
    for (const QChar character : version.left(maximumVersionLength)) {
        // Bidirectional formatting characters would change how the sentence around the version reads.
        if (character.isPrint() && character.category() != QChar::Other_Format) {
            shown += character;
        }
    }
    return shown.simplified();
}

} // namespace amberquill
