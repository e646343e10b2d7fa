#pragma once

#include "model/LauncherModel.h"
#include "motion/Animated.h"

#include <QtQml/qqmlregistration.h>

namespace amberquill {

// Registers types of lower floors for QML; those floors do not depend on QML.

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
