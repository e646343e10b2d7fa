#pragma once

#include <QString>

namespace amberquill {

// The absolute path of a file of the project, given relative to the project's folder.
[[nodiscard]] QString projectFile(const QString& name);

// The absolute path of a program that tests start. It is in the folder of the tests.
[[nodiscard]] QString testProgram(const QString& name);

} // namespace amberquill
