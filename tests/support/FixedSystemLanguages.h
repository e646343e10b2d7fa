#pragma once

#include "platform/SystemLanguages.h"

namespace amberquill {

// A system whose languages are what a test says.
class FixedSystemLanguages final : public SystemLanguages {
public:
    explicit FixedSystemLanguages(QStringList preferred)
        : preferred_(std::move(preferred)) {}

    [[nodiscard]] std::optional<QStringList> systemWideList() const override { return systemWide_; }
    [[nodiscard]] QStringList preferred() const override { return preferred_; }

    void setPreferred(const QStringList& languages) { preferred_ = languages; }
    void setSystemWide(const std::optional<QStringList>& languages) { systemWide_ = languages; }

private:
    QStringList preferred_;
    std::optional<QStringList> systemWide_;
};

} // namespace amberquill
