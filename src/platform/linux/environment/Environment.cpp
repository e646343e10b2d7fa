#include "platform/linux/environment/Environment.h"

#include <QtGlobal>

namespace amberquill::desktop {

Environment processEnvironment() {
    return [](const char* name) -> std::optional<QByteArray> {
        if (!qEnvironmentVariableIsSet(name)) {
            return std::nullopt;
        }
        return qgetenv(name);
    };
}

} // namespace amberquill::desktop
