// applications/icons/lookup/: finds an icon's file by the freedesktop icon theme standard. Opens no icon.
//
// - IconLookup is the answer: begin reading here. It searches the user's theme, the theme's parents, hicolor,
//   the base folders themselves and Adwaita, and remembers the answers.
// - IconThemeName finds out the user's theme.
// - IconTheme searches one theme: in the order of sizes that IconOrder defines, in all its folders.
// - IconThemeFolder is the theme's folder in one base folder. It asks the folder's icon-theme.cache
//   (IconThemeCache) while that is up to date, else it reads the directories (IconFolder).
// - IconThemeIndex parses index.theme.
//
// tests/icon_lookup compares the chosen files with GTK's. Bounds: 32 themes, 16,384 directories in a theme,
// 100,000 names in a folder, 20,000 remembered answers, 1 MiB for an index. No file is trusted: an invalid
// index or cache is one that is missing. Only IconLookup is thread-safe.
#pragma once

#include <QString>
#include <QStringList>
#include <memory>
#include <mutex>
#include <optional>

namespace amberquill::desktop {

struct DataFolders;

// The folders of icons, most wanted first: `~/.icons`, `icons` below each data folder, /usr/share/pixmaps.
[[nodiscard]] QStringList iconBaseFolders(const QString& home, const DataFolders& dataFolders);

// Finds an icon's file by the freedesktop icon theme standard. Folders are read when they are first needed
// and kept in memory: a repeated question, also for a missing icon, does not touch the disk. Safe on any
// thread.
class IconLookup {
public:
    // Searches `theme` first, then its parents, "hicolor", the base folders themselves (drawings before
    // pictures), and "Adwaita". The constructor reads nothing.
    IconLookup(QStringList baseFolders, QString theme);
    IconLookup(const IconLookup&) = delete;
    IconLookup& operator=(const IconLookup&) = delete;
    ~IconLookup();

    // The absolute path of the best regular file for `edge` device pixels, by IconOrder. `icon` is a name, a
    // name with an icon's extension, or an absolute path (itself the answer if it is a regular file). `skip`:
    // how many better files to leave out, because they could not be decoded. None: no (other) such icon, or a
    // relative path.
    [[nodiscard]] std::optional<QString> find(const QString& icon, int edge, int skip = 0) const;

    // Drops the contents read so far. The next question reads the folders again.
    void forget();

private:
    class Cache;

    const QStringList baseFolders_;
    const QString theme_;
    mutable std::mutex mutex_;
    mutable std::unique_ptr<Cache> cache_;
};

} // namespace amberquill::desktop
