#pragma once

#include <QString>
#include <QStringView>

// Texts of a feed as people may be shown them: plain, and with nothing in them that only a machine reads.
namespace amberquill {

// One line: white space of any kind and length is one space; at most `limit` UTF-16 units.
[[nodiscard]] QString plainLine(QStringView text, qsizetype limit);

// Several lines, as they were written; at most `limit` UTF-16 units.
[[nodiscard]] QString plainLines(QStringView text, qsizetype limit);

// What a text that is HTML says: its tags, comments, scripts and style sheets are taken out, blocks stand on
// lines of their own, points of lists get a bullet, and character references become characters. Nothing of it
// is acted on. Time and memory grow with the text's length, whatever is in it; at most `limit` UTF-16 units.
// `searched`, where it is given: how many letters were searched for where something begins or ends, each as
// often as it was.
[[nodiscard]] QString plainTextOfHtml(QStringView html, qsizetype limit, qsizetype* searched = nullptr);

} // namespace amberquill
