#include "model/LayoutHistory.h"

#include "data/HomePaths.h"
#include "data/LayoutCoding.h"
#include "data/LayoutFile.h"
#include "model/ModelLog.h"
#include "platform/FileSystem.h"
#include "platform/MainQueue.h"

#include <QDateTime>
#include <QRegularExpression>
#include <algorithm>
#include <chrono>
#include <mutex>
#include <tuple>
#include <utility>
#include <vector>

namespace amberquill {

namespace {

// Limits the memory while a disk hangs.
constexpr std::size_t mostWaitingCopies = LayoutHistory::mostCopies;
constexpr int largestCopyNumber = 999'999'999;

QString wordsOf(LayoutHistory::Reason reason) {
    switch (reason) {
    case LayoutHistory::Reason::Import:
        return QStringLiteral("before import");
    case LayoutHistory::Reason::Reset:
        return QStringLiteral("before reset");
    case LayoutHistory::Reason::Sort:
        return QStringLiteral("before sort");
    case LayoutHistory::Reason::Day:
        break;
    }
    return QStringLiteral("before changes");
}

struct KeptCopy {
    int number = 0;
    QString name;
};

std::optional<KeptCopy> keptCopy(const FolderEntry& entry) {
    static const QRegularExpression pattern(QStringLiteral(
        R"(^\d{4}-\d\d-\d\d \d\d\.\d\d\.\d\d before (?:changes|import|reset|sort) \((\d{1,9})\)\.json$)"));
    if (entry.isDirectory) {
        return std::nullopt;
    }
    const QRegularExpressionMatch match = pattern.match(entry.name);
    return match.hasMatch() ? std::optional(KeptCopy{match.capturedView(1).toInt(), entry.name})
                            : std::nullopt;
}

QString dayText(const QDateTime& time) {
    return time.toString(u"yyyy-MM-dd");
}

} // namespace

class LayoutHistory::Writer {
public:
    struct Copy {
        Layout layout;
        Reason reason = Reason::Day;
        std::chrono::sys_seconds date;
        QDateTime time; // in the user's time zone
    };

    Writer(FileSystem& files, QString folder, QString home)
        : files_(files)
        , folder_(std::move(folder))
        , home_(std::move(home)) {}

    void offer(Copy copy) {
        const std::scoped_lock lock(mutex_);
        if (waiting_.size() < mostWaitingCopies) {
            waiting_.push_back(std::move(copy));
        }
    }

    // Any thread. Returns whether everything was written.
    bool write() {
        const std::scoped_lock writing(writeMutex_);
        std::vector<Copy> copies;
        {
            const std::scoped_lock lock(mutex_);
            copies = std::exchange(waiting_, {});
        }
        bool isWritten = true;
        for (const Copy& copy : copies) {
            isWritten = write(copy) && isWritten;
        }
        return isWritten;
    }

private:
    bool write(const Copy& copy) {
        auto decoded = decodeItems(copy.layout.text);
        auto* items = std::get_if<LaunchItems>(&decoded);
        if (items == nullptr || items->empty()) {
            return true;
        }
        std::vector<KeptCopy> kept = keptCopies();
        if (copy.reason == Reason::Day && !kept.empty() && kept.back().name.startsWith(dayText(copy.time))) {
            return true;
        }
        const int number = kept.empty() ? 1 : std::min(kept.back().number + 1, largestCopyNumber);
        const QString name = QStringLiteral("%1 %2 (%3).json")
                                 .arg(copy.time.toString(u"yyyy-MM-dd HH.mm.ss"), wordsOf(copy.reason))
                                 .arg(number);
        const LayoutFile file{.exportedAt = copy.date,
                              .columns = copy.layout.columns,
                              .rows = copy.layout.rows,
                              .items = withPaths(std::move(*items), [this](const QString& path) {
                                  return homeRelative(path, home_);
                              })};
        if (!files_.writeAtomically(pathOf(name), encodeLayoutFile(file))) {
            qCDebug(modelLog) << "no copy of the layout:" << pathOf(name) << "cannot be written";
            return false;
        }
        const std::size_t surplus = kept.size() + 1 - std::min(kept.size() + 1, mostCopies);
        for (std::size_t i = 0; i < surplus; ++i) {
            files_.remove(pathOf(kept[i].name));
        }
        return true;
    }

    // Oldest first.
    [[nodiscard]] std::vector<KeptCopy> keptCopies() const {
        std::vector<KeptCopy> kept;
        const auto entries = files_.listFolder(folder_);
        for (const FolderEntry& entry : entries.value_or(std::vector<FolderEntry>())) {
            if (auto copy = keptCopy(entry)) {
                kept.push_back(*std::move(copy));
            }
        }
        std::sort(kept.begin(), kept.end(), [](const KeptCopy& left, const KeptCopy& right) {
            return std::tie(left.number, left.name) < std::tie(right.number, right.name);
        });
        return kept;
    }

    [[nodiscard]] QString pathOf(const QString& name) const { return folder_ + QLatin1Char('/') + name; }

    FileSystem& files_;
    const QString folder_;
    const QString home_;
    std::mutex writeMutex_; // held during a write
    std::mutex mutex_;      // guards waiting_
    std::vector<Copy> waiting_;
};

LayoutHistory::LayoutHistory(MainQueue& queue, FileSystem& files, const QString& folder, const QString& home)
    : queue_(queue)
    , writer_(std::make_shared<Writer>(files, folder + QStringLiteral("/Amberquill/layout-history"), home)) {}

void LayoutHistory::keep(Layout layout, Reason reason) {
    const std::chrono::sys_seconds date = queue_.date();
    const QDateTime time = QDateTime::fromSecsSinceEpoch(date.time_since_epoch().count());
    if (reason == Reason::Day && lastDay_ == time.date()) {
        return;
    }
    lastDay_ = time.date();
    writer_->offer({std::move(layout), reason, date, time});
    queue_.compute(
        context_, [writer = writer_] { return writer->write(); },
        [this](bool isWritten) {
            if (!isWritten) {
                lastDay_.reset();
            }
        },
        Lane::Save);
}

void LayoutHistory::flush() {
    writer_->write();
}

} // namespace amberquill
