#pragma once

#include <QLoggingCategory>
#include <QString>
#include <gtest/gtest.h>
#include <string>

namespace amberquill {

// The log lines of `category` while `work` runs. To be called when no other thread writes to standard error.
template<typename Work>
[[nodiscard]] std::string debugLog(const char* category, const Work& work) {
    QLoggingCategory::setFilterRules(QString::fromLatin1(category) + QStringLiteral("=true"));
    testing::internal::CaptureStderr();
    work();
    auto lines = testing::internal::GetCapturedStderr();
    QLoggingCategory::setFilterRules({});
    return lines;
}

} // namespace amberquill
