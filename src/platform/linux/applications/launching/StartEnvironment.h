#pragma once

#include "platform/linux/environment/Environment.h"

#include <QByteArray>
#include <QByteArrayView>
#include <optional>
#include <vector>

namespace amberquill::desktop {

// What an application is told in its environment beside what the launcher itself was started with.
struct ChildVariables {
    QByteArray token;            // activation token or startup id; empty: none
    QByteArray entryPath;        // the desktop entry it comes from; empty: none
    QByteArray workingDirectory; // empty: unchanged
};

// The environment the launcher was started with, which is the one that applications get: nothing that the
// launcher sets for itself afterwards reaches them. Entries are `NAME=value`, as bytes.
class StartEnvironment {
public:
    // This process's, as it is now. For the very start of main(), before anything sets a variable.
    [[nodiscard]] static StartEnvironment capture();

    explicit StartEnvironment(std::vector<QByteArray> entries);

    // A variable's value, or none.
    [[nodiscard]] std::optional<QByteArray> value(QByteArrayView name) const;

    // The same, for those who look variables up by a function.
    [[nodiscard]] Environment lookup() const;

    // What to start an application with. What was meant for the launcher alone stays behind: its own
    // activation token, session and service manager's sockets and ids, and the mark of the entry it was
    // started from.
    [[nodiscard]] std::vector<QByteArray> forChild(const ChildVariables& variables) const;

private:
    std::vector<QByteArray> entries_;
};

} // namespace amberquill::desktop
