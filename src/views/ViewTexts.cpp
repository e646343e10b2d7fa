#include "views/ViewTexts.h"

#include "localization/L.h"

namespace amberquill {

QString ViewTexts::search() const {
    return L::search();
}

} // namespace amberquill
