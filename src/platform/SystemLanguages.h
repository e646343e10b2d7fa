#pragma once

#include <QStringList>
#include <optional>

namespace amberquill {

// The languages the user prefers, as the system knows them (BCP 47 tags, most wanted first).
class SystemLanguages {
public:
    SystemLanguages() = default;
    SystemLanguages(const SystemLanguages&) = delete;
    SystemLanguages& operator=(const SystemLanguages&) = delete;
    virtual ~SystemLanguages() = default;

    // A system-wide list set beside the locale, or none where the system has no such thing.
    [[nodiscard]] virtual std::optional<QStringList> systemWideList() const = 0;

    // The list that the locale gives.
    [[nodiscard]] virtual QStringList preferred() const = 0;
};

class NullSystemLanguages final : public SystemLanguages {
public:
    [[nodiscard]] std::optional<QStringList> systemWideList() const override { return std::nullopt; }
    [[nodiscard]] QStringList preferred() const override { return {}; }
};

} // namespace amberquill
