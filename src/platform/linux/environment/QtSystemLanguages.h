#pragma once

#include "platform/SystemLanguages.h"

namespace amberquill::desktop {

// The languages of the locale variables. Nothing on a Linux desktop sets a list beside them.
class QtSystemLanguages final : public SystemLanguages {
public:
    [[nodiscard]] std::optional<QStringList> systemWideList() const override;
    [[nodiscard]] QStringList preferred() const override;
};

} // namespace amberquill::desktop
