#include "model/LayoutStore.h"

#include "data/LayoutCoding.h"
#include "data/RememberedItem.h"
#include "model/LayoutEdits.h"
#include "model/ModelLog.h"

#include <utility>

namespace amberquill {

namespace {

QString pathIn(const QString& folder) {
    return folder + QStringLiteral("/Amberquill/layout.json");
}

QString placesPathIn(const QString& folder) {
    return folder + QStringLiteral("/Amberquill/places.json");
}

} // namespace

LayoutStore::LayoutStore(MainQueue& queue, FileSystem& files, const QString& folder)
    : files_(files)
    , folder_(folder)
    , placesFile_(queue, files, placesPathIn(folder), largestPlacesText)
    , file_(queue, files, pathIn(folder), largestLayoutText) {
    file_.writeAfter(placesFile_);
}

StoredLayout LayoutStore::read(const FileSystem& files, const QString& folder) {
    StoredLayout stored;
    if (auto content = files.readFile(pathIn(folder), largestLayoutText)) {
        auto decoded = decodeItems(*content);
        if (auto* items = std::get_if<LaunchItems>(&decoded)) {
            stored.content = std::move(*content);
            stored.items = std::move(*items);
        } else {
            qCDebug(modelLog) << pathIn(folder) << "does not decode: the next save sets it aside";
        }
    }
    if (auto content = files.readFile(placesPathIn(folder), largestPlacesText)) {
        stored.places = decodePlaces(*content);
        stored.placesContent = std::move(*content);
    }
    return stored;
}

LaunchItems LayoutStore::start(StoredLayout stored) {
    if (stored.places) {
        placesFile_.assumeHeld(stored.placesContent);
    }
    if (!stored.items) {
        return {};
    }
    places_ = std::move(stored.places).value_or(std::vector<RememberedItem>());
    file_.assumeHeld(stored.content);
    text_ = stored.content;
    // Files from other programs and earlier versions may hold an id twice.
    LayoutEdits::separateFolders(*stored.items);
    return std::move(*stored.items);
}

void LayoutStore::savePlaces(const std::vector<RememberedItem>& places) {
    placesFile_.save(encodePlaces(places));
}

std::optional<QByteArray> LayoutStore::save(const LaunchItems& items) {
    const QByteArray text = encodeItems(items);
    file_.save(text);
    const auto before = std::exchange(text_, text);
    return before != text ? before : std::nullopt;
}

} // namespace amberquill
