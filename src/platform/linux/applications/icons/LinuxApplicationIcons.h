// applications/icons/: the pictures of applications. Answers with a picture for an application's path and a
// size in device pixels.
//
// - LinuxApplicationIcons is the answer: begin reading here. It reads the entry or bundle, asks for a file,
//   has it decoded, and tries the next best file if that fails, up to four files.
// - lookup/ turns an icon's name into a file, by the freedesktop icon theme standard.
// - workers/ turns a file's bytes into pixels, in processes of their own. No icon file is parsed in the
//   launcher.
// - UndecodableFiles remembers the files that crash or block these processes, so that no start tries them
//   again, until the file or the launcher's version changes.
//
// Safe on any thread; called on the threads of Lane::Icons. Bounds: 8 MiB for a file, 4096 pixels for a
// picture, 256 files in the list of undecodable ones. The log category amberquill.icons names each icon
// without a file, each file that gave no picture, and each one that is undecodable.
#pragma once

#include "platform/ApplicationIcons.h"
#include "platform/linux/applications/entries/EntryLocale.h"
#include "platform/linux/applications/icons/UndecodableFiles.h"
#include "platform/linux/applications/icons/lookup/IconLookup.h"

#include <QStringList>
#include <atomic>

namespace amberquill::desktop {

class IconWorkerPool;

// Pictures of applications on Linux desktops. A desktop entry's `Icon` is a name in the icon theme or an
// absolute path; a bundle's icon is in its Resources folder. If a file cannot be decoded, the next best one
// is tried. Safe on any thread; blocks while another process decodes.
class LinuxApplicationIcons final : public ApplicationIcons {
public:
    struct Settings {
        QStringList baseFolders; // from iconBaseFolders()
        QString theme;           // from iconThemeName()
        QString cacheFolder;     // the launcher's own; need not exist
        std::string version;     // the launcher's
        EntryLocale locale;      // for a translated `Icon`
    };

    // The workers outlive this object.
    LinuxApplicationIcons(const Settings& settings, IconWorkerPool& workers);

    [[nodiscard]] QImage image(const QString& applicationPath, int edge) const override;
    // The theme's icon for programs.
    [[nodiscard]] QImage genericIcon(int edge) const override;
    void forget() override;
    void rest() override;

    // Whether since the last call a file was not decoded because no process could be started. Such a picture
    // may be available later, so it is worth asking again.
    [[nodiscard]] bool takeUnavailable();

private:
    [[nodiscard]] QImage entryImage(const QString& path, int edge) const;
    [[nodiscard]] QImage namedImage(const QString& icon, int edge) const;
    [[nodiscard]] QImage bundleImage(const QString& path, int edge) const;
    [[nodiscard]] QImage fileImage(const QString& path, int edge) const;

    const EntryLocale locale_;
    IconLookup lookup_;
    IconWorkerPool& workers_;
    mutable UndecodableFiles undecodable_;
    mutable std::atomic<bool> wasUnavailable_ = false;
};

} // namespace amberquill::desktop
