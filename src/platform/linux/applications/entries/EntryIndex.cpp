#include "platform/linux/applications/entries/EntryIndex.h"

#include "platform/linux/files/FolderReader.h"

#include <cerrno>
#include <fcntl.h>
#include <map>
#include <sys/stat.h>
#include <utility>

namespace amberquill::desktop {
namespace {

constexpr std::string_view entryFileExtension = ".desktop";

using FolderKey = std::pair<dev_t, ino_t>;

class FolderWalk {
public:
    FolderWalk(std::size_t folder, QString path, std::vector<IndexedEntry>& found, ScannedFolders& scanned)
        : folder_(folder)
        , path_(std::move(path))
        , found_(found)
        , scanned_(scanned) {}

    void walk() {
        scanned_.roots.append(path_);
        enter(AT_FDCWD, path_.toUtf8().constData(), {});
    }

private:
    // `prefix` is the folder's path below the root, empty or with a slash at its end. `name` is its path from
    // the open folder `at`.
    void enter(int at, const char* name, const QByteArray& prefix) {
        struct stat status = {};
        FileDescriptor descriptor = openFolder(at, name);
        if (!descriptor.isOpen() || ::fstat(descriptor.get(), &status) != 0) {
            noteFailure(prefix, errno);
            return;
        }
        const FolderKey key(status.st_dev, status.st_ino);
        if (std::find(ancestors_.begin(), ancestors_.end(), key) != ancestors_.end() ||
            ++visits_[key] > maximumVisitsOfFolder) {
            return;
        }
        ancestors_.push_back(key);
        FolderReader reader(std::move(descriptor));
        if (reader.isOpen()) {
            readNames(reader, prefix);
        }
        if (!reader.isOpen() || reader.failed()) {
            noteFailure(prefix, EIO);
        }
        ancestors_.pop_back();
    }

    void noteFailure(const QByteArray& prefix, int error) {
        const QString folder =
            prefix.isEmpty() ? path_ : path_ + QLatin1Char('/') + QString::fromUtf8(prefix.chopped(1));
        scanned_.noteFailure(folder, {error, std::generic_category()}, prefix.isEmpty());
    }

    void readNames(FolderReader& reader, const QByteArray& prefix) {
        while (const auto child = reader.next()) {
            const bool isNamedEntry = child->nameView().ends_with(entryFileExtension);
            const unsigned char type = targetType(reader, *child);
            if (type == DT_DIR && !isNamedEntry && ancestors_.size() <= maximumEntryDepth) {
                enter(reader.descriptor(), child->name, prefix + child->name + '/');
            } else if (type != DT_DIR && type != DT_UNKNOWN && isNamedEntry) {
                add(prefix.isEmpty() ? QByteArray(child->name) : prefix + child->name);
            }
        }
    }

    // The child's type; for a link, its target's. DT_UNKNOWN: a dangling link.
    static unsigned char targetType(const FolderReader& reader, const FolderReader::Child& child) {
        const unsigned char type = reader.typeOf(child);
        if (type != DT_LNK) {
            return type;
        }
        struct stat status = {};
        if (::fstatat(reader.descriptor(), child.name, &status, 0) != 0) {
            return DT_UNKNOWN;
        }
        return static_cast<unsigned char>(IFTODT(status.st_mode));
    }

    void add(const QByteArray& file) {
        if (found_.size() >= maximumIndexedEntries || !file.isValidUtf8()) {
            return;
        }
        QByteArray id = file;
        if (ancestors_.size() > 1) {
            id.replace('/', '-');
        }
        found_.push_back({std::move(id), file, folder_});
    }

    std::size_t folder_;
    QString path_;
    std::vector<IndexedEntry>& found_;
    ScannedFolders& scanned_;
    std::vector<FolderKey> ancestors_; // the folders being walked, from the root down
    std::map<FolderKey, int> visits_;
};

bool comesFirst(const IndexedEntry& left, const IndexedEntry& right) {
    if (const int order = left.id.compare(right.id); order != 0) {
        return order < 0;
    }
    if (left.folder != right.folder) {
        return left.folder < right.folder;
    }
    const auto depth = [](const IndexedEntry& entry) { return entry.file.count('/'); };
    return std::pair(depth(left), left.file) < std::pair(depth(right), right.file);
}

} // namespace

std::vector<IndexedEntry> indexEntries(const QStringList& folders, ScannedFolders& scanned) {
    std::vector<IndexedEntry> found;
    for (qsizetype place = 0; place < folders.size(); ++place) {
        FolderWalk(static_cast<std::size_t>(place), folders[place], found, scanned).walk();
    }
    std::sort(found.begin(), found.end(), comesFirst);
    const auto sameId = [](const IndexedEntry& left, const IndexedEntry& right) {
        return left.id == right.id;
    };
    found.erase(std::unique(found.begin(), found.end(), sameId), found.end());
    return found;
}

std::optional<QString> desktopIdFor(QStringView path, const QStringList& folders) {
    if (!path.endsWith(desktopFileExtension)) {
        return std::nullopt;
    }
    for (const QString& folder : folders) {
        if (path.startsWith(folder) && path.size() > folder.size() + 1 &&
            path[folder.size()] == QLatin1Char('/')) {
            QString id = path.sliced(folder.size() + 1).toString();
            return id.replace(QLatin1Char('/'), QLatin1Char('-'));
        }
    }
    return std::nullopt;
}

QString applicationIdFor(const QString& path, const DataFolders& folders) {
    if (!path.endsWith(desktopFileExtension)) {
        return {};
    }
    const QString fileName = path.sliced(path.lastIndexOf(u'/') + 1);
    return desktopIdFor(path, folders.below(u"applications"))
        .value_or(fileName)
        .chopped(desktopFileExtension.size());
}

} // namespace amberquill::desktop
