#include "model/LauncherController.h"
#include "model/LauncherModel.h"
#include "platform/MainQueue.h"

#include <algorithm>
#include <utility>

namespace amberquill {

namespace {

bool isSearch(QStringView text) {
    return !text.trimmed().isEmpty();
}

} // namespace

void LauncherModel::setSearchText(const QString& text) {
    if (text == searchText_) {
        return;
    }
    const int pagesBefore = displayedPageCount();
    const QString before = std::exchange(searchText_, text);
    search();
    searchChanged(before);
    Q_EMIT searchTextChanged();
    if (isSearch(before) || isSearching()) {
        Q_EMIT searchResultsChanged();
    }
    if (displayedPageCount() != pagesBefore) {
        Q_EMIT pageCountChanged();
    }
}

void LauncherModel::searchChanged(const QString& from) {
    const bool wasSearching = isSearch(from);
    if (!isSearching()) {
        if (wasSearching) {
            setPage(std::clamp(browsePage_, 0, displayedPageCount() - 1));
        }
        return;
    }
    if (!wasSearching) {
        browsePage_ = page_;
        setOpenFolderID(std::nullopt);
    }
    goToPage(0);
}

std::vector<AppInfo> LauncherModel::searchResults() const {
    std::vector<AppInfo> results;
    results.reserve(found_.size());
    for (const std::size_t position : found_) {
        results.push_back(installed_[position]);
    }
    return results;
}

void LauncherModel::launchFirstResult() {
    if (!foundItems_.empty()) {
        hideThenOpen(*foundItems_.front().asApp());
    }
}

void LauncherModel::search() {
    found_.clear();
    foundItems_.clear();
    if (!isSearching()) {
        return;
    }
    if (!searchIndex_) {
        searchIndex_.emplace(installed_, nameOrder());
    }
    found_ = searchIndex_->find(searchText_);
    foundItems_.reserve(found_.size());
    for (const std::size_t position : found_) {
        foundItems_.push_back(LaunchItem::app(installed_[position].path));
    }
}

// Made in the background, so that it is there for the first letter that is typed.
void LauncherModel::indexNames() {
    searchIndex_.reset();
    indexing_.reset();
    if (isSearching()) {
        const int pagesBefore = displayedPageCount();
        search();
        Q_EMIT searchResultsChanged();
        if (displayedPageCount() != pagesBefore) {
            Q_EMIT pageCountChanged();
        }
        return;
    }
    services_.queue.compute(
        indexing_, [apps = installed_] { return SearchIndex(apps, NameOrder()); },
        [this](SearchIndex index) { searchIndex_ = std::move(index); });
}

} // namespace amberquill
