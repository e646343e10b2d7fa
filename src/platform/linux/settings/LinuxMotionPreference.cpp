#include "platform/linux/settings/LinuxMotionPreference.h"

#include "platform/linux/settings/DesktopSettings.h"

namespace amberquill::desktop {

using namespace Qt::StringLiterals;

namespace {

// Seconds to wait after a change: programs write their settings in several steps.
constexpr double settleTime = 0.2;

const PortalKey reducedMotion{u"org.freedesktop.appearance"_s, u"reduced-motion"_s};
const PortalKey enableAnimations{u"org.gnome.desktop.interface"_s, u"enable-animations"_s};

// 0: no preference, 1: reduced. Other numbers are not defined yet.
std::optional<bool> isOne(const std::optional<QVariant>& value) {
    return value && value->typeId() == QMetaType::UInt ? std::optional(value->toUInt() == 1) : std::nullopt;
}

std::optional<bool> boolean(const std::optional<QVariant>& value) {
    return value && value->typeId() == QMetaType::Bool ? std::optional(value->toBool()) : std::nullopt;
}

} // namespace

LinuxMotionPreference::LinuxMotionPreference(const Environment& environment, MainQueue& queue, CurrentBus bus)
    : queue_(queue)
    , bus_(std::move(bus))
    , configuration_(configurationFolders(environment))
    , settings_{.isKde = currentDesktops(environment).contains(u"KDE"_s)} {}

void LinuxMotionPreference::follow(std::function<void()> changed) {
    changed_ = std::move(changed);
    if (watcher_) {
        return;
    }
    watcher_ = std::make_unique<QFileSystemWatcher>();
    connect(watcher_.get(), &QFileSystemWatcher::directoryChanged, this,
            &LinuxMotionPreference::readFilesSoon);
    connect(watcher_.get(), &QFileSystemWatcher::fileChanged, this, &LinuxMotionPreference::readFilesSoon);
    readFiles();
    followPortal();
}

void LinuxMotionPreference::busCameBack() {
    if (portal_) {
        followPortal();
    }
}

void LinuxMotionPreference::followPortal() {
    portal_ = std::make_unique<PortalSettings>(
        bus_(), QList<PortalKey>{reducedMotion, enableAnimations},
        [this](const PortalKey& key, const std::optional<QVariant>& value) { take(key, value); });
}

void LinuxMotionPreference::readFilesSoon() {
    if (isReading_) {
        hasChangedMeanwhile_ = true;
        return;
    }
    isReading_ = true;
    queue_.thenAfter(context_, settleTime, [this] { readFiles(); });
}

void LinuxMotionPreference::readFiles() {
    isReading_ = true;
    hasChangedMeanwhile_ = false;
    watchFiles();
    queue_.compute(
        context_, [configuration = configuration_] { return readMotionFiles(configuration); },
        [this](const MotionFiles& files) { filesAreRead(files); });
}

void LinuxMotionPreference::filesAreRead(const MotionFiles& files) {
    isReading_ = false;
    settings_.files = files;
    decide();
    if (hasChangedMeanwhile_) {
        readFilesSoon();
    }
}

// Watching a folder reports created and replaced files, watching a file reports changes in place. Both are
// added again each time: QFileSystemWatcher stops watching a file that was replaced.
void LinuxMotionPreference::watchFiles() {
    const QStringList watched = watcher_->files() + watcher_->directories();
    const QStringList wanted = motionFolders(configuration_) + motionFilePaths(configuration_);
    for (const QString& path : wanted) {
        if (!watched.contains(path)) {
            watcher_->addPath(path);
        }
    }
}

void LinuxMotionPreference::take(const PortalKey& key, const std::optional<QVariant>& value) {
    if (key == reducedMotion) {
        settings_.portalReducedMotion = isOne(value);
    } else if (key == enableAnimations) {
        settings_.portalAnimations = boolean(value);
    }
    decide();
}

void LinuxMotionPreference::decide() {
    const bool reduced = asksForLessMotion(settings_);
    if (std::exchange(isReduced_, reduced) != reduced) {
        qCDebug(settingsLog, "%s motion is asked for", reduced ? "less" : "full");
        changed_();
    }
}

} // namespace amberquill::desktop
