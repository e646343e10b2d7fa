#include "updates/dialogs/UpdateFoundDialog.h"

#include "localization/TranslatedTexts.h"
#include "updates/dialogs/DialogParts.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QVBoxLayout>

namespace amberquill {

namespace {

// The smallest size of the notes' area, in points.
constexpr QSize notesSize{440, 170};

// Characters of the notes that are shown. The layout of much longer texts takes noticeable time.
constexpr qsizetype maximumNotes = 20'000;

QPlainTextEdit* notesArea(const QString& notes) {
    auto* area = new QPlainTextEdit;
    area->setPlainText(notes.size() > maximumNotes ? notes.left(maximumNotes) + u'…' : notes);
    area->setReadOnly(true);
    area->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    area->setTabChangesFocus(true);
    area->setMinimumSize(notesSize);
    return area;
}

} // namespace

UpdateFoundDialog::UpdateFoundDialog(const FoundUpdate& update, const Answers& answers) {
    arrange(update, answers);
    connect(this, &QDialog::finished, this, [this, chosen = answers.chosen] { chosen(choice_); });
}

void UpdateFoundDialog::arrange(const FoundUpdate& update, const Answers& answers) {
    setWindowTitle(QStringLiteral("Amberquill"));
    const QString message = updateText(UpdateText::FoundMessage)
                                .arg(shownVersion(update.version), shownVersion(update.installedVersion));

    auto* texts = new QVBoxLayout;
    texts->addWidget(headline(updateText(UpdateText::FoundTitle)));
    texts->addWidget(plainText(message));
    if (!update.canInstall) {
        texts->addWidget(plainText(updateText(UpdateText::PackageManaged)));
    }
    QPlainTextEdit* notes = nullptr;
    if (!update.notes.isEmpty()) {
        auto* label = plainText(updateText(UpdateText::ReleaseNotes));
        notes = notesArea(update.notes);
        notes->setAccessibleName(label->text());
        texts->addSpacing(texts->spacing());
        texts->addWidget(label);
        texts->addWidget(notes, 1);
    } else {
        texts->addStretch(1);
    }

    auto* upper = new QHBoxLayout;
    upper->addWidget(programIcon(*this), 0, Qt::AlignTop);
    upper->addSpacing(upper->spacing());
    upper->addLayout(texts, 1);

    auto* buttons = new QHBoxLayout;
    auto* later = button(updateText(UpdateText::RemindLater), UpdateChoice::Later);
    QPushButton* main = later;
    buttons->addWidget(button(updateText(UpdateText::Skip), UpdateChoice::Skip));
    buttons->addStretch(1);
    buttons->addWidget(later);
    if (update.canInstall) {
        main = button(updateText(UpdateText::Install), UpdateChoice::Install);
        buttons->addWidget(main);
    } else if (update.hasPage) {
        main = new QPushButton(updateText(UpdateText::OpenReleasePage));
        connect(main, &QPushButton::clicked, this, [this, openPage = answers.openPage] {
            openPage();
            accept();
        });
        buttons->addWidget(main);
    }

    auto* all = new QVBoxLayout(this);
    all->addLayout(upper, 1);
    all->addSpacing(all->spacing());
    all->addLayout(buttons);
    setAccessibleName(updateText(UpdateText::FoundTitle));
    setAccessibleDescription(message);

    if (update.isUserInitiated) {
        main->setDefault(true);
        main->setFocus();
    } else {
        // The dialog appears on its own: Return or Space, typed for another window, must not install.
        later->setFocus();
    }
}

QPushButton* UpdateFoundDialog::button(const QString& title, UpdateChoice choice) {
    auto* made = new QPushButton(title);
    connect(made, &QPushButton::clicked, this, [this, choice] {
        choice_ = choice;
        accept();
    });
    return made;
}

} // namespace amberquill
