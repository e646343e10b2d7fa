#include "views/ViewTexts.h"

#include "localization/L.h"
#include "localization/TranslatedTexts.h"

namespace amberquill {

QString ViewTexts::search() {
    return L::search();
}

QString ViewTexts::clear() {
    return spokenClear();
}

QString ViewTexts::page(int number, int count) {
    return spokenPage(number, count);
}

QString ViewTexts::noResults() {
    return L::noResults();
}

QString ViewTexts::emptyFolder() {
    return L::emptyFolder();
}

QString ViewTexts::newFolder() {
    return L::newFolder();
}

QString ViewTexts::settings() {
    return L::settings();
}

} // namespace amberquill
