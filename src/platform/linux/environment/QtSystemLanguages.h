#pragma once

#include "platform/SystemLanguages.h"

namespace amberquill::desktop {

// The languages of the locale variables. Linux desktops store no other list of languages.
class QtSystemLanguages final : public SystemLanguages {
public:
    [[nodiscard]] std::optional<QStringList> systemWideList() const override;
    [[nodiscard]] QStringList preferred() const override;
};

} // namespace amberquill::desktop
