#pragma once

#include <QLoggingCategory>

namespace amberquill {

// What data/ skipped or refused, and why. Off by default.
inline const QLoggingCategory& dataLog() {
    static const QLoggingCategory category("amberquill.data", QtCriticalMsg);
    return category;
}

} // namespace amberquill
