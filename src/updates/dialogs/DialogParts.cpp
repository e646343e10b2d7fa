#include "updates/dialogs/DialogParts.h"

#include "window/ApplicationIcon.h"

#include <QLabel>
#include <QMessageBox>
#include <cmath>

namespace amberquill {

namespace {

// The edge of the program's picture, in points.
constexpr int pictureEdge = 64;

// A message's lines, in points.
constexpr int messageWidth = 300;

// Letters; no version has as many.
constexpr qsizetype longestVersion = 40;

QFont bold(QFont font) {
    font.setBold(true);
    return font;
}

} // namespace

QLabel* programPicture(const QWidget& dialog) {
    auto* label = new QLabel;
    label->setPixmap(applicationPixmap(pictureEdge, dialog.devicePixelRatio()));
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
        label->setTextFormat(Qt::PlainText); // the box's own switch for that leaves the informative text out
        if (label->text() == message) {
            label->setFont(bold(label->font()));
        } else if (label->text() == informativeText) {
            label->setMinimumWidth(messageWidth);
        }
    }
    box->setIconPixmap(applicationPixmap(pictureEdge, box->devicePixelRatio()));
    return box;
}

QString shownVersion(const QString& version) {
    QString shown;
    for (const QChar letter : version.left(longestVersion)) {
        // Marks that turn the direction of what follows would write the sentence anew.
        if (letter.isPrint() && letter.category() != QChar::Other_Format) {
            shown += letter;
        }
    }
    return shown.simplified();
}

} // namespace amberquill
