#include "platform/linux/settings/MotionSettings.h"

#include "platform/linux/environment/BaseFolders.h"
#include "platform/linux/settings/DconfDatabase.h"
#include "platform/linux/settings/DesktopSettings.h"

#include <QByteArray>
#include <cmath>

namespace amberquill::desktop {

using namespace Qt::StringLiterals;

namespace {

QString dconfPath(const QStringList& configuration) {
    return pathBelow(configuration.front(), u"dconf/user");
}

std::optional<bool> animations(const QStringList& configuration) {
    const auto database = settingsContent(dconfPath(configuration));
    return database ? dconfBoolean(*database, "/org/gnome/desktop/interface/enable-animations")
                    : std::nullopt;
}

std::optional<double> durationFactor(const QStringList& configuration) {
    for (const QString& path : kdeSettingsFiles(configuration)) {
        const auto content = settingsContent(path);
        const auto text = content ? settingsValue(*content, "KDE", "AnimationDurationFactor") : std::nullopt;
        if (!text) {
            continue;
        }
        bool isNumber = false;
        const double factor =
            QByteArray(text->data(), static_cast<qsizetype>(text->size())).toDouble(&isNumber);
        return isNumber && std::isfinite(factor) ? std::optional(factor) : std::nullopt;
    }
    return std::nullopt;
}

} // namespace

bool asksForLessMotion(const MotionSettings& settings) {
    if (settings.portalReducedMotion.value_or(false)) {
        return true;
    }
    if (settings.isKde) {
        return settings.files.durationFactor.value_or(1) <= 0;
    }
    return !settings.portalAnimations.value_or(settings.files.animations.value_or(true));
}

MotionFiles readMotionFiles(const QStringList& configuration) {
    return {animations(configuration), durationFactor(configuration)};
}

QStringList motionFolders(const QStringList& configuration) {
    const QString& own = configuration.front();
    return {own, pathBelow(own, u"dconf"), pathBelow(own, u"kdedefaults")};
}

QStringList motionFilePaths(const QStringList& configuration) {
    return QStringList{dconfPath(configuration)} + kdeSettingsFiles(configuration.first(1));
}

} // namespace amberquill::desktop
