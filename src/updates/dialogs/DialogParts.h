#pragma once

#include <QString>
#include <memory>

class QLabel;
class QMessageBox;
class QWidget;

namespace amberquill {

// Parts of the updater's dialogs. The caller owns them.

// The program's icon at the resolution of the dialog's screen.
[[nodiscard]] QLabel* programIcon(const QWidget& dialog);

// Plain text, never markup, in lines as wide as the dialog.
[[nodiscard]] QLabel* plainText(const QString& text);

// The same in bold.
[[nodiscard]] QLabel* headline(const QString& text);

// A message with the program's icon and without buttons.
[[nodiscard]] std::unique_ptr<QMessageBox> messageBox(const QString& message, const QString& informativeText);

// A version from a feed or a bundle for display: one line, cut off at a plausible length.
[[nodiscard]] QString shownVersion(const QString& version);

} // namespace amberquill
