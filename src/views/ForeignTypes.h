#pragma once

#include "model/LauncherModel.h"
#include "motion/Animated.h"

#include <QtQml/qqmlregistration.h>

namespace amberquill {

// Types of lower floors that the views bind to; those floors know nothing of QML.

struct AnimatedForQml {
    Q_GADGET
    QML_FOREIGN(amberquill::Animated)
    QML_NAMED_ELEMENT(Animated)
};

struct AnimatedPointForQml {
    Q_GADGET
    QML_FOREIGN(amberquill::AnimatedPoint)
    QML_NAMED_ELEMENT(AnimatedPoint)
};

struct LauncherModelForQml {
    Q_GADGET
    QML_FOREIGN(amberquill::LauncherModel)
    QML_NAMED_ELEMENT(LauncherModel)
    QML_UNCREATABLE("made by the program")
};

} // namespace amberquill
