#pragma once

#include <QString>
#include <memory>

class QLabel;
class QMessageBox;
class QWidget;

namespace amberquill {

// What the updater's dialogs are made of. The caller's layout takes what is returned.

// The program's picture at the resolution of the dialog's screen.
[[nodiscard]] QLabel* programPicture(const QWidget& dialog);

// Text in lines as wide as the dialog, shown letter by letter: nothing in it is markup.
[[nodiscard]] QLabel* plainText(const QString& text);

// The same in bold.
[[nodiscard]] QLabel* headline(const QString& text);

// A message with the program's picture. It has no buttons yet.
[[nodiscard]] std::unique_ptr<QMessageBox> messageBox(const QString& message, const QString& informativeText);

// A version from outside, as short as versions are and in one line.
[[nodiscard]] QString shownVersion(const QString& version);

} // namespace amberquill
