#include "model/LayoutStore.h"

#include "data/LayoutCoding.h"

#include <utility>

namespace amberquill {

namespace {

QString pathIn(const QString& folder) {
    return folder + QStringLiteral("/Amberquill/layout.json");
}

} // namespace

LayoutStore::LayoutStore(MainQueue& queue, FileSystem& files, const QString& folder)
    : files_(files)
    , folder_(folder)
    , file_(queue, files, pathIn(folder), largestLayoutText) {}

StoredLayout LayoutStore::read(const FileSystem& files, const QString& folder) {
    StoredLayout stored;
    if (auto content = files.readFile(pathIn(folder), largestLayoutText)) {
        auto decoded = decodeItems(*content);
        if (auto* items = std::get_if<LaunchItems>(&decoded)) {
            stored = {std::move(*content), std::move(*items)};
        }
    }
    return stored;
}

LaunchItems LayoutStore::start(StoredLayout stored) {
    if (!stored.items) {
        return {};
    }
    file_.assumeHeld(stored.content);
    return std::move(*stored.items);
}

void LayoutStore::save(const LaunchItems& items) {
    file_.save(encodeItems(items));
}

} // namespace amberquill
