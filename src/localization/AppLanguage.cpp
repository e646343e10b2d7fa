#include "localization/AppLanguage.h"

#include "platform/SystemLanguages.h"

#include <QLatin1StringView>
#include <cstddef>

namespace amberquill {

namespace {

constexpr std::array<const char*, allAppLanguages.size()> rawValues = {"system", "en", "it", "es",
                                                                       "fr",     "de", "zh", "ja"};

} // namespace

QString rawValue(AppLanguage language) {
    return QString::fromLatin1(rawValues.at(static_cast<std::size_t>(language)));
}

std::optional<AppLanguage> appLanguage(const QString& rawValue) {
    for (std::size_t i = 0; i < rawValues.size(); ++i) {
        if (rawValue == QLatin1StringView(rawValues.at(i))) {
            return allAppLanguages.at(i);
        }
    }
    return std::nullopt;
}

AppLanguage fromSystem(const SystemLanguages& languages) {
    const std::optional<QStringList> systemWide = languages.systemWideList();
    const QStringList tags = systemWide ? *systemWide : languages.preferred();
    for (const QString& tag : tags) {
        if (const auto language = appLanguage(tag.left(2))) {
            return *language;
        }
    }
    return AppLanguage::English;
}

} // namespace amberquill
