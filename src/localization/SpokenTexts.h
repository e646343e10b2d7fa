#pragma once

#include <QString>

namespace amberquill {

// What a screen reader says where nothing is written, in the language in effect. Main thread only.

// "Games, folder, 5 apps".
QString spokenFolder(const QString& name, qsizetype apps);

// "Page 2 of 6".
QString spokenPage(int number, int count);

// Of the button that empties the search field.
QString spokenClear();

} // namespace amberquill
