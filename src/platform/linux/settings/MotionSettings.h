#pragma once

#include <QString>
#include <QStringList>
#include <optional>

namespace amberquill::desktop {

// What the desktop's files say.
struct MotionFiles {
    std::optional<bool> animations;       // GNOME's setting enable-animations
    std::optional<double> durationFactor; // KDE's: what animations' durations are multiplied by

    bool operator==(const MotionFiles&) const = default;
};

// Everything that says something of motion. None: it does not say.
struct MotionSettings {
    bool isKde = false;
    MotionFiles files = {};
    std::optional<bool> portalReducedMotion = {}; // org.freedesktop.appearance reduced-motion
    std::optional<bool> portalAnimations = {};    // org.gnome.desktop.interface enable-animations
};

// Whether less motion is asked for: by the setting that all desktops share; on KDE by a factor of nothing;
// elsewhere by animations that are switched off, of which a portal knows more than the user's file.
[[nodiscard]] bool asksForLessMotion(const MotionSettings& settings);

// Reads the user's dconf database and KDE's files of settings. `configuration`: the folders for settings, the
// user's first. Safe on any thread.
[[nodiscard]] MotionFiles readMotionFiles(const QStringList& configuration);

// The folders and files whose changes may change that, whether they are there or not. The system's are left
// out: they change with an update of the system.
[[nodiscard]] QStringList motionFolders(const QStringList& configuration);
[[nodiscard]] QStringList motionFilePaths(const QStringList& configuration);

} // namespace amberquill::desktop
