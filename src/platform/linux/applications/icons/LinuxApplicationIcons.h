#pragma once

#include "platform/ApplicationIcons.h"
#include "platform/linux/applications/entries/EntryLocale.h"
#include "platform/linux/applications/icons/DecodingJournal.h"
#include "platform/linux/applications/icons/IconLookup.h"

#include <QStringList>

namespace amberquill::desktop {

// Pictures of applications on Linux desktops. A desktop entry's `Icon` is looked up in the icon theme or is a
// file's absolute path; a bundle's icon stands in its own Resources folder. What cannot be decoded is passed
// over for the next best file. Safe on any thread.
class LinuxApplicationIcons final : public ApplicationIcons {
public:
    struct Settings {
        QStringList baseFolders; // iconBaseFolders
        QString theme;           // iconThemeName
        QString journalFolder;   // in the user's cache folder; need not exist
        EntryLocale locale;      // in which `Icon` is read
    };

    explicit LinuxApplicationIcons(const Settings& settings);

    [[nodiscard]] QImage image(const QString& applicationPath, int edge) const override;
    // The theme's icon for programs.
    [[nodiscard]] QImage standIn(int edge) const override;
    void forget() override;
    void rest() override {}

    // The process is about to end, whatever is still being decoded.
    void endDecoding() { journal_.withdraw(); }

private:
    [[nodiscard]] QImage entryImage(const QString& path, int edge) const;
    [[nodiscard]] QImage namedImage(const QString& icon, int edge) const;
    [[nodiscard]] QImage bundleImage(const QString& path, int edge) const;
    [[nodiscard]] QImage fileImage(const QString& path, int edge) const;

    const EntryLocale locale_;
    IconLookup lookup_;
    mutable DecodingJournal journal_;
};

} // namespace amberquill::desktop
