#include "platform/linux/environment/QtSystemLanguages.h"

#include <QLocale>

namespace amberquill::desktop {

std::optional<QStringList> QtSystemLanguages::systemWideList() const {
    return std::nullopt;
}

QStringList QtSystemLanguages::preferred() const {
    return QLocale::system().uiLanguages();
}

} // namespace amberquill::desktop
