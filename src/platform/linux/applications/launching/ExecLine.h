#pragma once

#include <QString>
#include <QStringList>
#include <QStringView>
#include <optional>

namespace amberquill::desktop {

// The values of the field codes in an `Exec` line.
struct ExecFields {
    QString icon;      // %i, as the entry has it; empty: the code is dropped
    QString name;      // %c, translated
    QString entryPath; // %k
};

// Splits a line into words by the quoting rules of the Desktop Entry Specification's `Exec` key, after the
// escapes of string values are undone. Single quotes quote too, because existing entries use them. None: an
// unfinished quote or escape, or a line that is too long.
std::optional<QStringList> splitCommandLine(QStringView line);

// The argument vector of an `Exec` line: its words with the field codes replaced, each once. Codes for files
// are dropped, because applications are opened without files. No shell is used: `$` and backticks are plain
// text. None: malformed, without a program, or too long after the replacement.
std::optional<QStringList> execArguments(QStringView line, const ExecFields& fields);

} // namespace amberquill::desktop
