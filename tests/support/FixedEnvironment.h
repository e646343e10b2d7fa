#pragma once

#include "platform/linux/environment/Environment.h"

#include <map>
#include <string>
#include <utility>

namespace amberquill {

// An environment of these variables alone.
inline desktop::Environment environmentOf(std::map<std::string, QByteArray> variables) {
    return [variables = std::move(variables)](const char* name) -> std::optional<QByteArray> {
        const auto found = variables.find(name);
        return found == variables.end() ? std::nullopt : std::optional(found->second);
    };
}

} // namespace amberquill
