#pragma once

#include <QString>
#include <QStringList>
#include <memory>
#include <mutex>
#include <optional>

namespace amberquill::desktop {

struct DataFolders;

// Where icons are kept, most wanted first: `~/.icons`, `icons` below each data folder, /usr/share/pixmaps.
[[nodiscard]] QStringList iconBaseFolders(const QString& home, const DataFolders& dataFolders);

// Finds an icon's file by the freedesktop icon theme standard. Folders are read when they are first needed
// and what was read is remembered, so that asking again, or for what does not exist, does not touch the disk.
// Safe on any thread.
class IconLookup {
public:
    // `theme` is asked first, then what it inherits, then "hicolor", then the base folders themselves
    // (drawings before pictures), then "Adwaita". Nothing is read here.
    IconLookup(QStringList baseFolders, QString theme);
    IconLookup(const IconLookup&) = delete;
    IconLookup& operator=(const IconLookup&) = delete;
    ~IconLookup();

    // The absolute path of the regular file that suits `edge` device pixels best; IconOrder says which that
    // is. `icon` is a name, a name with an icon's ending, or an absolute path (itself the answer if it is a
    // regular file's). `skip`: for one whose better files turned out useless, that many are passed over.
    // None: there is no (other) such icon, or it is a relative path.
    [[nodiscard]] std::optional<QString> find(const QString& icon, int edge, int skip = 0) const;

    // The next question reads the folders again.
    void forget();

private:
    class Memory;

    const QStringList baseFolders_;
    const QString theme_;
    mutable std::mutex mutex_;
    mutable std::unique_ptr<Memory> memory_;
};

} // namespace amberquill::desktop
