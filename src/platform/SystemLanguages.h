#pragma once

#include <QStringList>
#include <optional>

namespace amberquill {

// The user's preferred languages, as set in the system: BCP 47 tags, most preferred first.
class SystemLanguages {
public:
    SystemLanguages() = default;
    SystemLanguages(const SystemLanguages&) = delete;
    SystemLanguages& operator=(const SystemLanguages&) = delete;
    virtual ~SystemLanguages() = default;

    // A system-wide list that is set apart from the locale. None: the system has no such list.
    [[nodiscard]] virtual std::optional<QStringList> systemWideList() const = 0;

    // The list of the locale.
    [[nodiscard]] virtual QStringList preferred() const = 0;
};

} // namespace amberquill
