#pragma once

#include "platform/linux/environment/Environment.h"

#include <QByteArray>
#include <QByteArrayView>
#include <array>
#include <optional>
#include <sys/resource.h>
#include <vector>

namespace amberquill::desktop {

// Variables that are set for one application that is started.
struct ChildVariables {
    QByteArray token;            // activation token or startup id; empty: none
    QByteArray entryPath;        // the desktop entry it comes from; empty: none
    QByteArray workingDirectory; // empty: unchanged
};

// The environment the launcher was started with. Applications get this one, so that no variable that the
// launcher sets for itself reaches them. Entries are `NAME=value`, as bytes.
class InheritedEnvironment {
public:
    // This process's, as it is now. For the very start of main(), before anything sets a variable.
    [[nodiscard]] static InheritedEnvironment capture();

    explicit InheritedEnvironment(std::vector<QByteArray> entries);

    // A variable's value, or none.
    [[nodiscard]] std::optional<QByteArray> value(QByteArrayView name) const;

    // The same as a function, which owns a copy of the environment.
    [[nodiscard]] Environment lookup() const;

    // The environment for an application. Variables that were meant for the launcher alone are left out: its
    // activation token, its session and service managers' sockets and ids, the name of its own entry.
    [[nodiscard]] std::vector<QByteArray> forChild(const ChildVariables& variables) const;

private:
    std::vector<QByteArray> entries_;
};

// The resource limits the launcher was started under. Applications get these, whatever the launcher has
// changed for itself since.
struct InheritedLimits {
    // By resource number, RLIMIT_CPU and so on; none: unknown.
    std::array<std::optional<rlimit>, RLIM_NLIMITS> resources;
    // The content of /proc/self/oom_score_adj; empty: unknown.
    QByteArray outOfMemoryScore;

    // This process's, as they are now. For the very start of main().
    [[nodiscard]] static InheritedLimits capture();
};

// What the launcher inherited from its parent process and passes on to applications.
struct InheritedState {
    InheritedEnvironment environment;
    InheritedLimits limits;

    // This process's, as it is now. For the very start of main(), before the application object or anything
    // else changes the environment or a limit.
    [[nodiscard]] static InheritedState capture() {
        return {InheritedEnvironment::capture(), InheritedLimits::capture()};
    }
};

} // namespace amberquill::desktop
