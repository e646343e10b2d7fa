#pragma once

#include <QString>
#include <QStringList>
#include <optional>

namespace amberquill::desktop {

// The settings in the desktop's files. None: not set.
struct MotionFiles {
    std::optional<bool> animations;       // GNOME's setting enable-animations
    std::optional<double> durationFactor; // KDE's factor for animation durations

    bool operator==(const MotionFiles&) const = default;
};

// All settings about motion. None: not set.
struct MotionSettings {
    bool isKde = false;
    MotionFiles files = {};
    std::optional<bool> portalReducedMotion = {}; // org.freedesktop.appearance reduced-motion
    std::optional<bool> portalAnimations = {};    // org.gnome.desktop.interface enable-animations
};

// Whether the user asks for less motion: by the setting that all desktops share; on KDE by a duration factor
// of zero; on other desktops by switching animations off (the portal's value, or else that of GNOME's file).
[[nodiscard]] bool asksForLessMotion(const MotionSettings& settings);

// Reads the user's dconf database and KDE's settings files. `configuration`: the settings folders, the user's
// first. Safe on any thread.
[[nodiscard]] MotionFiles readMotionFiles(const QStringList& configuration);

// The folders and files that readMotionFiles() depends on, whether or not they exist, without the system's:
// those change only with a system update.
[[nodiscard]] QStringList motionFolders(const QStringList& configuration);
[[nodiscard]] QStringList motionFilePaths(const QStringList& configuration);

} // namespace amberquill::desktop
