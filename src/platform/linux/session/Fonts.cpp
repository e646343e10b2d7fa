#include "platform/linux/session/Fonts.h"

#include <fontconfig/fontconfig.h>

namespace amberquill::desktop {

void readFontConfiguration() {
    FcInit();
}

} // namespace amberquill::desktop
