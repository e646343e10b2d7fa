#pragma once

#include "data/FolderMetrics.h"
#include "motion/Animation.h"
#include "support/ModelFixture.h"

#include <optional>

namespace amberquill {

// Drags icons. Cells of 180 × 140 from (120, 120); an icon's centre is 12 above its cell's; the merge radius
// is 55.68, the hold radius 78.88.
class DragFixture : public ModelFixture {
protected:
    static inline const QUuid gamesID{QStringLiteral("3F2504E0-4F89-11D3-9A0C-0305E82C3301")};

    // The application with this number, and a folder "Games" of several.
    static LaunchItem app(int number) { return LaunchItem::app(path(number)); }
    static LaunchItem games(const std::vector<int>& numbers) {
        Folder folder{gamesID, QStringLiteral("Games"), {}};
        for (const int number : numbers) {
            folder.apps.append(path(number));
        }
        return LaunchItem::folder(folder);
    }
    static LaunchItems appsTo(int count) {
        LaunchItems items;
        for (int number = 1; number <= count; ++number) {
            items.push_back(app(number));
        }
        return items;
    }
    static QString id(int number) { return appItemId(path(number)); }

    // A model that has been shown with this layout, and with nothing else installed.
    LauncherModel& shownAs(const LaunchItems& items) {
        files_.addFile(layoutPath, encodeItems(items));
        int count = 0;
        for (const LaunchItem& item : items) {
            count += item.isFolder() ? static_cast<int>(item.asFolder()->apps.size()) : 1;
        }
        return shownWith(count);
    }

    // The layout as numbers, with folders in brackets.
    [[nodiscard]] std::string order() const {
        QStringList parts;
        for (const LaunchItem& item : model_->items()) {
            const Folder* folder = item.asFolder();
            QStringList numbers;
            for (const QString& path : folder != nullptr ? folder->apps : QStringList{*item.asApp()}) {
                numbers.append(nameFromPath(path));
            }
            const QString text = numbers.join(QLatin1Char(' '));
            parts.append(folder != nullptr ? QStringLiteral("[%1]").arg(text) : text);
        }
        return parts.join(QLatin1Char(' ')).toStdString();
    }

    [[nodiscard]] QPointF iconAt(int slot) const {
        return model_->metrics().cellCenter(slot) - QPointF(0, 12);
    }
    [[nodiscard]] FolderMetrics panel() const {
        return FolderMetrics::of(static_cast<int>(model_->folder(*model_->openFolderID())->apps.size()),
                                 model_->metrics());
    }

    // Presses at a point and moves far enough for a drag.
    void lift(const QPointF& place) {
        start_ = place;
        press(start_);
        pointTo(start_ + QPointF(7, 0));
    }
    // Lifts the icon of a slot at its centre: the floating icon is then at the pointer.
    void liftIcon(int slot) { lift(iconAt(slot)); }
    void pointTo(const QPointF& place) {
        pointer_ = place;
        dragTo(start_, pointer_);
    }
    void drop() { release(start_, pointer_); }
    void wait(double seconds) { queue_.advance(seconds); }

    [[nodiscard]] bool isDragging() const { return model_->drag().has_value(); }
    [[nodiscard]] QByteArray onDisk() {
        model_->flushSaves();
        return files_.file(layoutPath).value_or(QByteArray());
    }

    QPointF start_;
    QPointF pointer_;
};

// The animation that was current at the last emission of a signal.
template<typename Signal>
class Carried {
public:
    Carried(const LauncherModel& model, Signal signal)
        : connection_(QObject::connect(&model, signal, [this] { animation_ = currentAnimation(); })) {}
    ~Carried() { QObject::disconnect(connection_); }

    Carried(const Carried&) = delete;
    Carried& operator=(const Carried&) = delete;

    [[nodiscard]] std::optional<Animation> animation() const { return animation_; }

private:
    std::optional<Animation> animation_;
    QMetaObject::Connection connection_;
};

} // namespace amberquill
