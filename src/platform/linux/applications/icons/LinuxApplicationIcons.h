#pragma once

#include "platform/ApplicationIcons.h"
#include "platform/linux/applications/entries/EntryLocale.h"
#include "platform/linux/applications/icons/IconLookup.h"
#include "platform/linux/applications/icons/UndecodableFiles.h"

#include <QStringList>
#include <atomic>

namespace amberquill::desktop {

class IconWorkers;

// Pictures of applications on Linux desktops. A desktop entry's `Icon` is looked up in the icon theme or is a
// file's absolute path; a bundle's icon stands in its own Resources folder. What cannot be decoded is passed
// over for the next best file. Safe on any thread; whoever asks for a picture waits for another process.
class LinuxApplicationIcons final : public ApplicationIcons {
public:
    struct Settings {
        QStringList baseFolders; // iconBaseFolders
        QString theme;           // iconThemeName
        QString cacheFolder;     // the program's own below the user's; need not exist
        std::string version;     // the program's
        EntryLocale locale;      // in which `Icon` is read
    };

    // The workers, which do the decoding, outlive it.
    LinuxApplicationIcons(const Settings& settings, IconWorkers& workers);

    [[nodiscard]] QImage image(const QString& applicationPath, int edge) const override;
    // The theme's icon for programs.
    [[nodiscard]] QImage genericIcon(int edge) const override;
    void forget() override;
    void rest() override;

    // Whether a file could not be decoded because no process could be had for it, since this was last asked.
    // Its application may be without a picture only because of that, so that it is worth asking again.
    [[nodiscard]] bool takeUnavailable();

private:
    [[nodiscard]] QImage entryImage(const QString& path, int edge) const;
    [[nodiscard]] QImage namedImage(const QString& icon, int edge) const;
    [[nodiscard]] QImage bundleImage(const QString& path, int edge) const;
    [[nodiscard]] QImage fileImage(const QString& path, int edge) const;

    const EntryLocale locale_;
    IconLookup lookup_;
    IconWorkers& workers_;
    mutable UndecodableFiles undecodable_;
    mutable std::atomic<bool> wasUnavailable_ = false;
};

} // namespace amberquill::desktop
