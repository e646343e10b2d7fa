#include "views/ViewTexts.h"

#include "localization/L.h"

namespace amberquill {

QString ViewTexts::search() {
    return L::search();
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
