#include "views/ViewTexts.h"

#include "localization/L.h"

namespace amberquill {

QString ViewTexts::search() {
    return L::search();
}

} // namespace amberquill
