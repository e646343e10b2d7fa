#include "support/TestPaths.h"

namespace amberquill {

QString projectFile(const QString& name) {
    return QStringLiteral(AMBERQUILL_PROJECT_FOLDER "/") + name;
}

QString testProgram(const QString& name) {
    return QStringLiteral(AMBERQUILL_TEST_PROGRAMS "/") + name;
}

} // namespace amberquill
