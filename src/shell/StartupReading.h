#pragma once

#include "data/AppScanner.h"
#include "data/CacheFiles.h"
#include "model/LayoutStore.h"
#include "platform/common/AsyncValue.h"

#include <QDeadlineTimer>
#include <QHash>
#include <QString>
#include <functional>
#include <vector>

namespace amberquill {

class Context;
class FileSystem;
class MainQueue;

// What the first frame needs from the disk.
struct StartupData {
    StoredLayout layout;
    bool layoutIsLate = false;       // the layout is still being read; the model gets it later
    bool preferencesAreLate = false; // the same for the preferences
    QHash<QString, QString> names;   // by path
    std::vector<StoredIcon> icons;
};

// Reads the layout and the disk caches on threads of their own, while Qt starts. If no names are cached, the
// first scan begins too: without it there would be no names to show. The threads use this object until
// isUnderWay() answers false.
class StartupReading {
public:
    // The functions are called on any thread.
    struct Services {
        const FileSystem& files;
        QString applicationSupport;
        QString caches;
        QString language;
        std::function<ScanResult()> scan;
        std::function<void()> prepareDecoding; // called if no icons are cached
    };

    // Begins at once.
    explicit StartupReading(Services services);
    StartupReading(const StartupReading&) = delete;
    StartupReading& operator=(const StartupReading&) = delete;
    ~StartupReading() = default;

    // What has been read by then; once. `preferencesAreLate` is left to the caller.
    [[nodiscard]] StartupData takeBy(QDeadlineTimer deadline) const;

    // Calls `then` with a late layout.
    void whenLayoutIsThere(const MainQueue& queue, const Context& context,
                           std::function<void(StoredLayout)> then) const {
        layout_.whenThere(queue, context, std::move(then));
    }

    // The result of the first scan, if it has been begun, or of another one. Safe on any thread.
    [[nodiscard]] ScanResult scan() const;

    [[nodiscard]] bool isUnderWay() const;

private:
    struct Caches {
        QHash<QString, QString> names;
        std::vector<StoredIcon> icons;
    };

    Services services_;
    AsyncValue<StoredLayout> layout_;
    AsyncValue<Caches> caches_;
    AsyncValue<ScanResult> firstScan_;
};

} // namespace amberquill
