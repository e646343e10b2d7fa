#pragma once

#include "data/KeptIcons.h"
#include "model/LayoutStore.h"
#include "platform/Locations.h"

#include <QHash>
#include <QString>
#include <vector>

namespace amberquill {

class FileSystem;

// What the first picture needs from the disk.
struct Preparations {
    StoredLayout layout;
    bool layoutIsLate = false;       // it is told to the delegate when it has been read
    bool preferencesAreLate = false; // so are these
    QHash<QString, QString> names;   // by path
    std::vector<KeptIcon> icons;

    // Safe on any thread. `language` is the one that names are in.
    [[nodiscard]] static Preparations read(const FileSystem& files, const Locations& locations,
                                           const QString& language);
};

} // namespace amberquill
