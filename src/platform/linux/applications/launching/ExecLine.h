#pragma once

#include <QString>
#include <QStringList>
#include <QStringView>
#include <optional>

namespace amberquill::desktop {

// What the field codes of an `Exec` line stand for.
struct ExecFields {
    QString icon;      // %i, as the entry writes it; empty: the code goes
    QString name;      // %c, translated
    QString entryPath; // %k
};

// The words of a line by the quoting rules of the Desktop Entry Specification's `Exec` key, the escapes of
// string values undone before. Single quotes quote too, as they do in files that are about. None: a quote or
// an escape that is not ended, or a line beyond every reason.
std::optional<QStringList> quotedWords(QStringView line);

// The argument vector of an `Exec` line: its words with the field codes replaced, each once. There is never a
// file to open, so the codes for one vanish. No shell takes part: `$`, backticks and the like are plain text.
// None: malformed, no program in it, or grown beyond what can be handed to a program.
std::optional<QStringList> execArguments(QStringView line, const ExecFields& fields);

} // namespace amberquill::desktop
