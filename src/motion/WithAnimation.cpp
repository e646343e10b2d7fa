#include "motion/WithAnimation.h"

#include <QScopedValueRollback>

namespace amberquill {

namespace {

std::optional<Animation>& current() {
    static std::optional<Animation> theCurrent;
    return theCurrent;
}

} // namespace

void withAnimation(const Animation& animation, const std::function<void()>& change) {
    const QScopedValueRollback<std::optional<Animation>> restore(current(), animation);
    change();
}

std::optional<Animation> currentAnimation() {
    return current();
}

} // namespace amberquill
