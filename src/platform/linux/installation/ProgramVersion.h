#pragma once

#include <QByteArray>
#include <QString>
#include <optional>
#include <vector>

namespace amberquill::desktop {

// Starts the launcher at `path` with `--version` and reads its version from the line `Amberquill 1.2.3`.
// Waits for half a minute at most. None: it does not start, or prints something else. Any thread.
[[nodiscard]] std::optional<QString> versionOfProgram(const QByteArray& path,
                                                      const std::vector<QByteArray>& environment);

// The version in such a line.
[[nodiscard]] std::optional<QString> versionInLine(const QByteArray& line);

} // namespace amberquill::desktop
