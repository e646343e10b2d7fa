#pragma once

#include <QString>

namespace amberquill {

// The absolute path of one of the project's files, which is named from the project's folder.
[[nodiscard]] QString projectFile(const QString& name);

// The absolute path of a program that tests start. It lies beside the tests themselves.
[[nodiscard]] QString testProgram(const QString& name);

} // namespace amberquill
