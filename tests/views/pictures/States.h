// Every state of the launcher that can be seen, entered on a stage of its own.
#pragma once

#include "../ViewStage.h"

#include <functional>
#include <vector>

namespace amberquill {

struct State {
    QString name;
    std::function<void(ViewStage&)> enter; // on a stage that has begun
};

[[nodiscard]] const std::vector<State>& states();

} // namespace amberquill
