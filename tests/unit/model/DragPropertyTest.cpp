// Random sequences of user actions: no application is lost and no state is stuck.
#include "data/FolderMetrics.h"
#include "data/LayoutCoding.h"
#include "model/LauncherModel.h"
#include "motion/Animation.h"
#include "motion/Animations.h"
#include "support/ManualQueue.h"
#include "support/MemoryFileSystem.h"
#include "support/MemoryPreferences.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <map>
#include <memory>
#include <random>
#include <set>

using namespace amberquill;
using namespace Qt::StringLiterals;

namespace {

constexpr unsigned sequencesPerTest = 2000;
constexpr unsigned stepsPerSequence = 40;

using FolderSizes = std::map<QUuid, qsizetype>;

QString text(const QPointF& point) {
    return u"(%1, %2)"_s.arg(point.x()).arg(point.y());
}

// One sequence of random steps, determined by its seed. It ends at the first rule that is broken.
class Sequence {
public:
    explicit Sequence(unsigned seed)
        : random_(seed) {
        makeWorld();
        for (unsigned step = 0; step < stepsPerSequence && broken_.isEmpty(); ++step) {
            takeStep();
        }
        if (broken_.isEmpty()) {
            comeToRest();
        }
    }

    // The rule that was broken; empty when none was.
    [[nodiscard]] QString broken() const { return broken_; }
    [[nodiscard]] QString steps() const { return steps_.join(u'\n'); }

    // How often each event has happened: the test checks that the sequences reach all of them.
    [[nodiscard]] const std::map<QString, int>& reached() const { return reached_; }

private:
    int below(int limit) { return static_cast<int>(random_() % static_cast<unsigned>(std::max(limit, 1))); }
    bool oneIn(int count) { return below(count) == 0; }
    double between(double low, double high) {
        return low + (high - low) * static_cast<double>(random_() % 10'001) / 10'000;
    }

    QString newPath() { return u"/Applications/%1.app"_s.arg(++lastApp_); }

    // --- The world

    void makeWorld() {
        preferences_.setInteger(u"gridColumns"_s, 2 + below(3));
        preferences_.setInteger(u"gridRows"_s, 1 + below(3));
        LaunchItems items;
        for (int count = below(16); count > 0; --count) {
            items.push_back(oneIn(4) ? LaunchItem::folder(newFolder()) : LaunchItem::app(newPath()));
        }
        for (int number = 1; number <= lastApp_; ++number) {
            const QString path = u"/Applications/%1.app"_s.arg(number);
            installed_.push_back({path, u"App %1"_s.arg(number)});
        }
        files_.addFile(layoutPath, encodeItems(items));
        model_ = std::make_unique<LauncherModel>(LauncherModel::Services{
            .queue = queue_,
            .files = files_,
            .preferences = preferences_,
            .applicationSupport = u"/data"_s,
            .scan = [this] { return installed_; },
        });
        folders_ = foldersNow();
        QObject::connect(model_.get(), &LauncherModel::itemsChanged, [this] { itemsChanged(); });
        QObject::connect(model_.get(), &LauncherModel::scanned,
                         [this](const std::vector<AppInfo>& apps) { scanned(apps); });
        model_->setSize({700 + between(0, 900), 500 + between(0, 700)});
        model_->willShow();
        queue_.runPosted();
        steps_.append(u"%1 items on pages of %2 × %3 in %4 × %5"_s.arg(model_->items().size())
                          .arg(model_->columns())
                          .arg(model_->rows())
                          .arg(model_->size().width())
                          .arg(model_->size().height()));
    }

    Folder newFolder() {
        Folder folder{QUuid(static_cast<uint>(random_()), 1, 2, 3, 4, 5, 6, 7, 8, 9, 10), u"F"_s, {}};
        for (int count = below(5); count > 0; --count) {
            folder.apps.append(newPath());
        }
        return folder;
    }

    // --- The rules

    void require(bool kept, const QString& rule) {
        if (!kept && broken_.isEmpty()) {
            broken_ = rule;
        }
    }

    void scanned(const std::vector<AppInfo>& apps) {
        expected_.clear();
        for (const AppInfo& app : apps) {
            expected_.insert(app.path);
        }
        require(!model_->drag(), u"a scan is not applied during a drag"_s);
    }

    [[nodiscard]] FolderSizes foldersNow() const {
        FolderSizes sizes;
        for (const LaunchItem& item : model_->items()) {
            if (const Folder* folder = item.asFolder()) {
                sizes[folder->id] = folder->apps.size();
            }
        }
        return sizes;
    }

    // Each change of the layout is recognised by its animation.
    void itemsChanged() {
        FolderSizes now = foldersNow();
        for (const auto& [id, size] : folders_) {
            if (!now.contains(id) && currentAnimation() != motion::replaceLayout) {
                require(currentAnimation() == motion::pullOut, u"only a pull-out takes a folder away"_s);
                require(size <= 2, u"a folder that still holds two applications stays"_s);
                ++reached_[u"folder dissolved"_s];
            }
        }
        if (currentAnimation() == motion::merge) {
            ++reached_[u"merged"_s];
            if (now.size() > folders_.size()) {
                opensUntil_ = queue_.now() + 0.3;
            }
        }
        if (currentAnimation() == motion::pullOut) {
            ++reached_[u"pulled out"_s];
        }
        if (currentAnimation() == motion::move) {
            ++reached_[model_->drag() && model_->drag()->fromFolder ? u"moved in a folder"_s : u"moved"_s];
        }
        folders_ = std::move(now);
    }

    void checkAlways() {
        std::set<QString> seen;
        std::size_t count = 0;
        for (const LaunchItem& item : model_->items()) {
            for (const QString& path : item.isFolder() ? item.asFolder()->apps : QStringList{*item.asApp()}) {
                seen.insert(path);
                ++count;
            }
        }
        require(count == seen.size(), u"no path stands twice"_s);
        require(seen == expected_, u"the applications change by scans alone"_s);
        require(model_->page() >= 0 && model_->page() < model_->displayedPageCount(),
                u"the page is in range"_s);
        const bool live = model_->drag() && !model_->drag()->dropping;
        require(live || model_->pendingKey().isEmpty(), u"only a drag waits for something"_s);
        require(live || model_->mergeTargetID().isEmpty(), u"only a drag marks a target"_s);
        require(!live || holding_, u"a drag is in a hand"_s);
        require(queue_.timers() <= (model_->pendingKey().isEmpty() ? 0U : 1U) +
                                       (model_->drag() && !live ? 1U : 0U) + (opens() ? 1U : 0U) +
                                       (hasMissing() ? 1U : 0U),
                u"nothing runs late but what waits, glides, opens or vanishes"_s);
        const bool ended = wasLive_ && !live;
        if (ended) {
            ++reached_[u"drag"_s];
            model_->flushSaves();
            require(files_.file(layoutPath) == encodeItems(model_->items()),
                    u"after a drag the file holds the layout"_s);
        }
        wasLive_ = live;
    }

    [[nodiscard]] bool opens() const { return queue_.now() < opensUntil_ + 1e-6; }

    // Whether a missing application is still shown: another scan decides about it.
    [[nodiscard]] bool hasMissing() const {
        const QHash<QString, AppInfo>& shown = model_->apps();
        return std::count_if(installed_.begin(), installed_.end(), [&shown](const AppInfo& app) {
                   return shown.contains(app.path);
               }) < shown.size();
    }

    void checkTakenAway(bool hidden) {
        require(!model_->drag(), u"a gesture taken away leaves no drag"_s);
        require(model_->pressedID().isEmpty(), u"a gesture taken away leaves nothing pressed"_s);
        require(queue_.timers() <= (opens() && !hidden ? 1U : 0U) + (hasMissing() ? 1U : 0U),
                u"a gesture taken away leaves no timer"_s);
    }

    // --- The steps

    void takeStep() {
        // While pressed, mostly moves, waits and releases.
        const int choice = below(holding_ ? 62 : 24);
        switch (choice) {
        case 0:
            takeAway();
            break;
        case 1:
            hide();
            break;
        case 2:
            note(u"show"_s);
            model_->willShow();
            opensUntil_ = 0;
            checkTakenAway(true);
            break;
        case 3:
            scan();
            break;
        case 4:
            search();
            break;
        case 5:
            rename();
            break;
        case 6:
            turnPage();
            break;
        case 7:
            toggleFolder();
            break;
        case 8:
            toggleFolder();
            break;
        case 9:
            note(u"new folder"_s);
            if (model_->items().size() < 30) {
                model_->newEmptyFolder();
            }
            break;
        case 10:
            arrange();
            break;
        case 11:
            exchange();
            break;
        case 12:
            wait();
            break;
        default:
            if (holding_) {
                handStep(choice);
            } else {
                press();
            }
        }
        checkAlways();
    }

    void handStep(int choice) {
        if (choice < 20) {
            letGo();
        } else if (choice < 38) {
            wait();
        } else {
            const QPointF place = somewhere();
            note(u"move "_s + text(place));
            pointer_ = place;
            model_->pointerChanged({*pressedAt_, pointer_});
        }
    }

    void press() {
        pressedAt_ = oneIn(8) ? anywhere() : somewhere();
        pointer_ = *pressedAt_;
        holding_ = true;
        note(u"press "_s + text(pointer_));
        model_->pointerChanged({pointer_, pointer_});
        if (oneIn(2)) {
            pointer_ += QPointF(7, 1);
            note(u"move "_s + text(pointer_));
            model_->pointerChanged({*pressedAt_, pointer_});
        }
    }

    void letGo() {
        note(u"release"_s);
        holding_ = false;
        model_->pointerEnded({*pressedAt_, pointer_});
        if (model_->drag()) {
            ++reached_[u"glide"_s];
        }
    }

    // After a cancelled gesture, its moves may still arrive.
    void takeAway() {
        note(u"lost grab"_s);
        model_->pointerCancelled();
        checkTakenAway(false);
        if (holding_) {
            ++reached_[u"taken away"_s];
            goOnUnheard();
        }
    }

    void hide() {
        note(u"hide"_s);
        model_->willHide();
        opensUntil_ = 0;
        checkTakenAway(true);
        if (holding_) {
            goOnUnheard();
        }
    }

    void goOnUnheard() {
        const LaunchItems before = model_->items();
        if (oneIn(2)) {
            for (int count = below(4); count > 0; --count) {
                const QPointF place = somewhere();
                note(u"unheard move "_s + text(place));
                model_->pointerChanged({*pressedAt_, place == *pressedAt_ ? place + QPointF(9, 0) : place});
                require(!model_->drag(), u"a gesture taken away begins no drag"_s);
            }
            note(u"unheard release"_s);
            model_->pointerEnded({*pressedAt_, somewhere()});
        }
        require(model_->items() == before, u"a gesture taken away changes nothing more"_s);
        holding_ = false;
    }

    void scan() {
        for (int count = below(3); count > 0; --count) {
            if (oneIn(2) && !installed_.empty()) {
                installed_.erase(installed_.begin() + below(static_cast<int>(installed_.size())));
            } else if (installed_.size() < 40) {
                const QString path = newPath();
                installed_.push_back({path, u"App "_s + path});
            }
        }
        note(u"scan of %1"_s.arg(installed_.size()));
        model_->refreshApps();
        queue_.runPosted();
        if (model_->drag()) {
            ++reached_[u"scan held back"_s];
        }
    }

    void search() {
        static const QString texts[] = {u""_s, u" "_s, u"App"_s, u"1"_s, u"nothing"_s};
        const QString& text = texts[oneIn(2) ? 0 : below(std::size(texts))];
        note(u"search '%1'"_s.arg(text));
        model_->setSearchText(text);
        if (model_->isSearching() && model_->drag()) {
            ++reached_[u"search during a drag"_s];
        }
    }

    void arrange() {
        switch (below(6)) {
        case 0:
            note(u"reset"_s);
            model_->resetLayout();
            break;
        case 1:
        case 2:
            note(u"sort"_s);
            model_->sortByName();
            break;
        default:
            const int columns = 2 + below(3);
            const int rows = 1 + below(3);
            note(u"grid of %1 × %2"_s.arg(columns).arg(rows));
            model_->setGrid(columns, rows);
        }
    }

    void exchange() {
        if (exported_.isEmpty() || oneIn(2)) {
            note(u"export"_s);
            exported_ = model_->exportLayoutData();
            return;
        }
        note(u"import"_s);
        require(!model_->importLayout(exported_), u"what was exported can be imported"_s);
        opensUntil_ = 0;
        checkTakenAway(true);
        if (holding_) {
            goOnUnheard();
        }
    }

    void rename() {
        if (!folders_.empty()) {
            auto folder = folders_.begin();
            std::advance(folder, below(static_cast<int>(folders_.size())));
            note(u"rename "_s + canonicalText(folder->first));
            model_->renameFolder(folder->first, u"Name %1"_s.arg(below(3)));
        }
    }

    void turnPage() {
        const int page = below(5) - 1;
        note(u"page %1"_s.arg(page));
        model_->turnToPage(page);
    }

    void toggleFolder() {
        if (model_->folderIsOpen()) {
            note(u"close folder"_s);
            model_->closeFolder();
        } else if (!folders_.empty()) {
            auto folder = folders_.begin();
            std::advance(folder, below(static_cast<int>(folders_.size())));
            note(u"open "_s + canonicalText(folder->first));
            model_->openFolder(folder->first);
        }
    }

    void wait() {
        static constexpr double waits[] = {0.05, 0.119, 0.12, 0.18, 0.19, 0.3, 0.35, 0.65, 1.0};
        const double seconds = waits[below(std::size(waits))];
        note(u"wait %1"_s.arg(seconds));
        const int page = model_->page();
        const QString target = model_->mergeTargetID();
        queue_.advance(seconds);
        if (model_->page() != page) {
            ++reached_[u"page turned by a drag"_s];
        }
        if (model_->mergeTargetID() != target) {
            ++reached_[u"marked"_s];
        }
    }

    void comeToRest() {
        if (holding_) {
            letGo();
            checkAlways();
        }
        note(u"rest"_s);
        queue_.advance(MissingApplications::gracePeriod + 2);
        checkAlways();
        require(!model_->drag(), u"at rest nothing is dragged"_s);
        require(model_->pressedID().isEmpty(), u"at rest nothing is pressed"_s);
        require(queue_.timers() == 0, u"at rest nothing runs late"_s);
    }

    // --- Places

    QPointF anywhere() {
        return {between(-20, model_->size().width() + 20), between(-20, model_->size().height() + 20)};
    }

    // A point near an icon, at an edge, or in, around or outside a panel.
    QPointF somewhere() {
        const GridMetrics grid = model_->metrics();
        const QPointF jitter(between(-1, 1) * grid.cellSize().width() / 2,
                             between(-1, 1) * grid.cellSize().height() / 2);
        const QPointF offset = oneIn(3) ? jitter : jitter / 10;
        const Folder* open = model_->openFolderID() ? model_->folder(*model_->openFolderID()) : nullptr;
        if (open != nullptr && !oneIn(3)) {
            const FolderMetrics panel = FolderMetrics::of(static_cast<int>(open->apps.size()), grid);
            return panel.cellCenter(below(panel.columns * panel.rows)) + offset * panel.scale;
        }
        switch (below(10)) {
        case 0:
            return {20, between(0, grid.size.height())};
        case 1:
            return {grid.size.width() - 20, between(0, grid.size.height())};
        case 2:
            return anywhere();
        default:
            return grid.cellCenter(below(grid.slotsPerPage())) - QPointF(0, grid.iconRise()) + offset;
        }
    }

    void note(const QString& step) { steps_.append(u"%1  "_s.arg(queue_.now(), 0, 'f', 3) + step); }

    static inline const QString layoutPath = u"/data/Amberquill/layout.json"_s;

    std::mt19937 random_;
    ManualQueue queue_;
    MemoryFileSystem files_;
    MemoryPreferences preferences_;
    std::vector<AppInfo> installed_;
    int lastApp_ = 0;
    std::unique_ptr<LauncherModel> model_;

    QByteArray exported_;

    std::set<QString> expected_;
    FolderSizes folders_;
    double opensUntil_ = 0;
    bool wasLive_ = false;
    bool holding_ = false; // pressed and not released
    std::optional<QPointF> pressedAt_;
    QPointF pointer_;

    QStringList steps_;
    QString broken_;
    std::map<QString, int> reached_;
};

class DragProperties : public testing::TestWithParam<unsigned> {};

} // namespace

TEST_P(DragProperties, RandomActionsLoseNothingAndLeaveNothingStuck) {
    std::map<QString, int> reached;
    for (unsigned i = 0; i < sequencesPerTest; ++i) {
        const unsigned seed = GetParam() * sequencesPerTest + i;
        const Sequence sequence(seed);
        ASSERT_TRUE(sequence.broken().isEmpty())
            << "seed " << seed << ": broken rule: " << sequence.broken().toStdString() << "\n"
            << sequence.steps().toStdString();
        for (const auto& [event, count] : sequence.reached()) {
            reached[event] += count;
        }
    }
    for (const QString& event :
         {u"drag"_s, u"glide"_s, u"merged"_s, u"moved"_s, u"moved in a folder"_s, u"pulled out"_s,
          u"folder dissolved"_s, u"marked"_s, u"page turned by a drag"_s, u"taken away"_s,
          u"scan held back"_s, u"search during a drag"_s}) {
        EXPECT_GT(reached[event], 20) << "the sequences hardly reach: " << event.toStdString();
    }
}

INSTANTIATE_TEST_SUITE_P(Seeds, DragProperties, testing::Range(0U, 8U));
