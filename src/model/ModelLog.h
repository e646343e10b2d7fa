#pragma once

#include <QLoggingCategory>

namespace amberquill {

Q_DECLARE_LOGGING_CATEGORY(modelLog)

} // namespace amberquill
