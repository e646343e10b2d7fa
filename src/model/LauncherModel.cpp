#include "model/LauncherModel.h"

#include "localization/L.h"
#include "model/ModelLog.h"
#include "motion/Animation.h"
#include "motion/Animations.h"
#include "platform/MainQueue.h"
#include "platform/Preferences.h"

#include <algorithm>
#include <utility>

namespace amberquill {

Q_LOGGING_CATEGORY(modelLog, "amberquill.model", QtCriticalMsg)

void DragTracker::setLocation(const QPointF& location) {
    if (location != location_) {
        location_ = location;
        Q_EMIT locationChanged();
    }
}

LauncherModel::LauncherModel(Services services, QObject* parent)
    : QObject(parent)
    , services_(std::move(services))
    , store_(services_.queue, services_.files, services_.applicationSupport)
    , history_(services_.queue, services_.files, services_.applicationSupport, services_.homes.own)
    , items_(services_.layoutIsLate ? LaunchItems()
             : services_.layout     ? store_.start(*std::exchange(services_.layout, std::nullopt))
                                    : store_.load())
    , columns_(storedColumns(services_.preferences))
    , rows_(storedRows(services_.preferences))
    , background_(storedBackground(services_.preferences))
    , language_(L::language())
    , places_(store_.takePlaces(), services_.queue.date())
    , awaitsLayout_(services_.layoutIsLate) {}

LauncherModel::~LauncherModel() = default;

void LauncherModel::setSize(const QSizeF& size) {
    if (size != size_) {
        size_ = size;
        Q_EMIT sizeChanged();
    }
}

void LauncherModel::setPresented(bool presented) {
    if (presented != presented_) {
        presented_ = presented;
        Q_EMIT presentedChanged();
    }
}

void LauncherModel::focusSearch() {
    ++focusSearchToken_;
    Q_EMIT focusSearchTokenChanged();
}

int LauncherModel::pageCount(const LaunchItems& items) const {
    return amberquill::pageCount(items.size(), columns_ * rows_);
}

std::vector<VisibleEntry> LauncherModel::visibleEntries() const {
    return amberquill::visibleEntries(displayedItems(), metrics(), page_, scrollOffset_);
}

void LauncherModel::clampPage() {
    setPage(std::clamp(page_, 0, displayedPageCount() - 1));
}

void LauncherModel::goToPage(int page) {
    setPage(std::clamp(page, 0, displayedPageCount() - 1));
    setScrollOffset(0);
}

void LauncherModel::turnToPage(int page) {
    withAnimation(motion::page, [this, page] { goToPage(page); });
}

void LauncherModel::handleScroll(const ScrollEvent& event) {
    if (drag_ || folderIsOpen() || size_.width() <= 0) {
        return;
    }
    if (!event.precise) {
        const int target = pageTurns_.wheel(event.delta, page_, services_.queue.now());
        if (target != page_) {
            turnToPage(target);
        }
        return;
    }
    if (event.momentum) {
        return;
    }
    switch (event.phase) {
    case ScrollEvent::Phase::Began:
    case ScrollEvent::Phase::MayBegin:
        pageTurns_.begin();
        break;
    case ScrollEvent::Phase::Changed:
        setScrollOffset(pageTurns_.move(event.delta, page_, displayedPageCount()));
        break;
    case ScrollEvent::Phase::Ended:
    case ScrollEvent::Phase::Cancelled:
        turnToPage(pageTurns_.end(page_));
        break;
    case ScrollEvent::Phase::None:
        break;
    }
}

QString LauncherModel::name(const LaunchItem& item) const {
    return item.isFolder() ? item.asFolder()->name : appName(*item.asApp());
}

QString LauncherModel::appName(const QString& path) const {
    if (const auto app = apps_.constFind(path); app != apps_.constEnd()) {
        return app->name;
    }
    if (!hasScanned_) {
        if (const auto name = services_.rememberedNames.constFind(path);
            name != services_.rememberedNames.constEnd()) {
            return *name;
        }
    }
    return nameFromPath(path);
}

void LauncherModel::save() {
    if (awaitsLayout_) {
        return;
    }
    if (auto before = store_.save(items_)) {
        history_.keep({*std::move(before), columns_, rows_}, LayoutHistory::Reason::Day);
    }
}

void LauncherModel::setItems(LaunchItems items) {
    editItems([&items](LaunchItems& all) { all = std::move(items); });
}

void LauncherModel::editItems(const std::function<void(LaunchItems&)>& edit) {
    const int before = displayedPageCount();
    edit(items_);
    Q_EMIT itemsChanged();
    if (displayedPageCount() != before) {
        Q_EMIT pageCountChanged();
    }
}

void LauncherModel::setPage(int page) {
    if (page != page_) {
        page_ = page;
        Q_EMIT pageChanged();
    }
}

void LauncherModel::setScrollOffset(double offset) {
    if (offset != scrollOffset_) {
        scrollOffset_ = offset;
        Q_EMIT scrollOffsetChanged();
    }
}

void LauncherModel::setOpenFolderID(const std::optional<QUuid>& id) {
    if (id != openFolderID_) {
        openFolderID_ = id;
        Q_EMIT openFolderIDChanged();
    }
}

const NameOrder& LauncherModel::nameOrder() {
    if (!nameOrder_) {
        nameOrder_.emplace();
    }
    return *nameOrder_;
}

} // namespace amberquill
