#pragma once

#include <QString>
#include <QStringView>

// Plain text for display from the texts of a feed. Limits count UTF-16 units; control and bidirectional
// formatting characters are removed.
namespace amberquill {

// One line: each run of white space becomes one space.
[[nodiscard]] QString plainLine(QStringView text, qsizetype limit);

// Keeps the lines of the text.
[[nodiscard]] QString plainLines(QStringView text, qsizetype limit);

// The text of HTML: removes tags, comments, scripts and style sheets; starts a line for each block, with a
// bullet for list items; replaces character references. Loads nothing. Time and memory are linear in the
// length. `searched`, if not null, receives how many characters were searched, repetitions included.
[[nodiscard]] QString plainTextOfHtml(QStringView html, qsizetype limit, qsizetype* searched = nullptr);

} // namespace amberquill
