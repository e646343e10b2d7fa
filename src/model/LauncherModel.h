#pragma once

#include "data/AppScanner.h"
#include "data/BackgroundTheme.h"
#include "data/GridMetrics.h"
#include "data/HomePaths.h"
#include "data/LaunchItem.h"
#include "data/LayoutFile.h"
#include "data/NameOrder.h"
#include "data/PlaceMemory.h"
#include "data/SearchIndex.h"
#include "localization/AppLanguage.h"
#include "localization/L.h"
#include "model/DragSession.h"
#include "model/HitTest.h"
#include "model/LayoutHistory.h"
#include "model/LayoutStore.h"
#include "model/MissingApplications.h"
#include "model/Pages.h"
#include "platform/Context.h"
#include "platform/LoginItem.h"
#include "platform/MainQueue.h"

#include <QByteArray>
#include <QByteArrayView>
#include <QHash>
#include <QObject>
#include <QPointF>
#include <QSizeF>
#include <QString>
#include <QUuid>
#include <array>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

namespace amberquill {

class FileSystem;
class LauncherController;
class Preferences;

// Where the pointer is during a drag, in the launcher's content. It is an object of its own so that a move
// of the pointer reaches only what follows the pointer.
class DragTracker final : public QObject {
    Q_OBJECT
    Q_PROPERTY(QPointF location READ location NOTIFY locationChanged FINAL)

public:
    using QObject::QObject;

    [[nodiscard]] QPointF location() const { return location_; }
    void setLocation(const QPointF& location);

Q_SIGNALS:
    void locationChanged();

private:
    QPointF location_;
};

// A file that was to be imported is no layout.
struct InvalidLayoutFile {
    // For the user, in the interface language.
    [[nodiscard]] static QString errorDescription() { return L::invalidLayoutFile(); }
};

// The launcher's state and everything that is done to it. Views and controllers read and change the launcher
// through this object alone; every change of a property is told at once, inside the animation it carries.
// Main thread only.
class LauncherModel final : public QObject {
    Q_OBJECT
    Q_PROPERTY(int page READ page NOTIFY pageChanged FINAL)
    Q_PROPERTY(int pageCount READ displayedPageCount NOTIFY pageCountChanged FINAL)
    Q_PROPERTY(double scrollOffset READ scrollOffset NOTIFY scrollOffsetChanged FINAL)
    Q_PROPERTY(QString searchText READ searchText WRITE setSearchText NOTIFY searchTextChanged FINAL)
    Q_PROPERTY(bool isSearching READ isSearching NOTIFY searchTextChanged FINAL)
    Q_PROPERTY(bool findsNothing READ findsNothing NOTIFY searchResultsChanged FINAL)
    Q_PROPERTY(bool folderIsOpen READ folderIsOpen NOTIFY openFolderIDChanged FINAL)
    Q_PROPERTY(QString pressedID READ pressedID NOTIFY pressedIDChanged FINAL)
    Q_PROPERTY(QString draggedID READ draggedID NOTIFY dragChanged FINAL)
    Q_PROPERTY(QString mergeTargetID READ mergeTargetID NOTIFY mergeTargetIDChanged FINAL)
    Q_PROPERTY(amberquill::DragTracker* tracker READ tracker CONSTANT FINAL)
    Q_PROPERTY(bool presented READ presented NOTIFY presentedChanged FINAL)
    Q_PROPERTY(int focusSearchToken READ focusSearchToken NOTIFY focusSearchTokenChanged FINAL)
    Q_PROPERTY(QSizeF size READ size WRITE setSize NOTIFY sizeChanged FINAL)

public:
    // What the model works with; all of it outlives the model.
    struct Services {
        MainQueue& queue;
        FileSystem& files;
        Preferences& preferences;
        QString applicationSupport;                   // the folder of the layout's own folder
        std::function<ScanResult()> scan;             // run away from the main thread
        QHash<QString, QString> rememberedNames = {}; // by path: shown until the first scan is in
        std::optional<StoredLayout> layout = {};      // read beforehand; none: read by the model
        HomeFolders homes = {};
        // Makes the frameworks' own texts follow the interface language.
        std::function<void(AppLanguage)> applyToFrameworks = [](AppLanguage) {};
        std::shared_ptr<LoginItem> loginItem = std::make_shared<NullLoginItem>();
        bool layoutIsLate = false; // `takeLateLayout` will bring it: nothing is read for it
    };

    explicit LauncherModel(Services services, QObject* parent = nullptr);
    ~LauncherModel() override;

    LauncherModel(const LauncherModel&) = delete;
    LauncherModel& operator=(const LauncherModel&) = delete;

    // The background theme that the user chose last.
    [[nodiscard]] static BackgroundTheme storedBackground(const Preferences& preferences);

    // Called back for what only the window can do; held weakly.
    void setController(std::weak_ptr<LauncherController> controller) { controller_ = std::move(controller); }

    [[nodiscard]] const LaunchItems& items() const { return items_; }
    [[nodiscard]] const QHash<QString, AppInfo>& apps() const { return apps_; }
    [[nodiscard]] int page() const { return page_; }
    [[nodiscard]] double scrollOffset() const { return scrollOffset_; }
    [[nodiscard]] QString searchText() const { return searchText_; }
    [[nodiscard]] std::optional<QUuid> openFolderID() const { return openFolderID_; }
    [[nodiscard]] bool folderIsOpen() const { return openFolderID_ && folder(*openFolderID_) != nullptr; }
    [[nodiscard]] QString pressedID() const { return pressedID_; }
    [[nodiscard]] bool presented() const { return presented_; }
    [[nodiscard]] int focusSearchToken() const { return focusSearchToken_; }
    [[nodiscard]] QSizeF size() const { return size_; }
    [[nodiscard]] int columns() const { return columns_; }
    [[nodiscard]] int rows() const { return rows_; }
    [[nodiscard]] BackgroundTheme background() const { return background_; }
    [[nodiscard]] AppLanguage language() const { return language_; }

    // The content's size in points, as the view reports it.
    void setSize(const QSizeF& size);
    void setPresented(bool presented);
    // Asks the view to put the keyboard focus into the search field.
    void focusSearch();

    // --- Pages

    [[nodiscard]] GridMetrics metrics() const { return {size_, columns_, rows_}; }
    // What the pages show: the layout, or what a search has found.
    [[nodiscard]] const LaunchItems& displayedItems() const { return isSearching() ? foundItems_ : items_; }
    [[nodiscard]] int pageCount(const LaunchItems& items) const;
    [[nodiscard]] int displayedPageCount() const { return pageCount(displayedItems()); }
    [[nodiscard]] std::vector<VisibleEntry> visibleEntries() const;
    void clampPage();
    // Shows the page nearest to `page`, without an animation of its own.
    void goToPage(int page);
    // The same on the page spring: what a dot, a key or the wheel does.
    Q_INVOKABLE void turnToPage(int page);
    void handleScroll(const ScrollEvent& event);

    // A folder's name; an application's as scanned, or what its path tells.
    [[nodiscard]] QString name(const LaunchItem& item) const;
    [[nodiscard]] QString appName(const QString& path) const;

    // --- Showing and scanning

    // Just before the launcher comes on screen: clears what the last showing left, and scans.
    void willShow();
    // As it begins to leave the screen: takes the pointer's gesture away.
    void willHide();
    // Scans in the background, unless a scan is under way.
    void refreshApps();
    [[nodiscard]] bool isScanning() const { return scanning_; }
    // Applications that are not installed leave the layout, their places are remembered; those that come back
    // take theirs again, and new ones stand at its end.
    void applyScan(const std::vector<AppInfo>& installed);

    // --- Search

    // The text as typed. A search begins, changes or ends with it; it begins on the first page, and its end
    // returns to the page before it.
    void setSearchText(const QString& text);
    // Whether there is more in the text than white space.
    [[nodiscard]] bool isSearching() const { return !QStringView(searchText_).trimmed().isEmpty(); }
    // The applications found, the best first.
    [[nodiscard]] std::vector<AppInfo> searchResults() const;
    [[nodiscard]] bool findsNothing() const { return isSearching() && foundItems_.empty(); }
    Q_INVOKABLE void launchFirstResult();

    // --- Pointer

    [[nodiscard]] Hit hitTest(const QPointF& point) const;
    void pointerChanged(const PointerGesture& gesture);
    void pointerEnded(const PointerGesture& gesture);
    // The gesture was taken away: it is no tap, a drag ends where it is, and what is still told of it is not
    // heard.
    void pointerCancelled();
    // What a tap on the tile of this identity does, on the page or in the open folder: for who does not use a
    // pointer.
    Q_INVOKABLE void activate(const QString& id);

    // --- Folders

    // An id that names no folder is none to open or rename: nothing happens.
    [[nodiscard]] std::optional<std::size_t> folderIndex(const QUuid& id) const;
    // The folder of this id; null when there is none.
    [[nodiscard]] const Folder* folder(const QUuid& id) const;
    void openFolder(const QUuid& id);
    void closeFolder();
    // Takes any text, the empty one too. It is on the disk when the folder is closed.
    void renameFolder(const QUuid& id, const QString& name);
    // Adds an empty folder at the end, and shows it there.
    Q_INVOKABLE void newEmptyFolder();

    // --- Drag and drop

    // What is being dragged; none between drags. A drag begins and ends with the pointer's gesture.
    [[nodiscard]] const std::optional<DragInfo>& drag() const { return drag_; }
    [[nodiscard]] QString draggedID() const { return drag_ ? drag_->id : QString(); }
    // The tile marked as the one that the dragged application merges with; empty when there is none.
    [[nodiscard]] QString mergeTargetID() const { return mergeTargetID_; }
    // Where the pointer is during a drag.
    [[nodiscard]] DragTracker* tracker() { return &tracker_; }
    // What waits for the icon to rest; empty when nothing does.
    [[nodiscard]] QString pendingKey() const { return dragSession_.pendingKey(); }
    // Lets go of what a drag waits to do.
    void cancelPending();

    // What a drag does to the layout, each on its animation; the end of the drag saves it. Where the item,
    // the folder or the place is missing, nothing happens.
    void move(const QString& id, std::size_t to);
    void moveInFolder(const QUuid& folderID, const QString& path, std::size_t to);
    void pullOut(const QString& path, const QUuid& folderID);
    // A folder that this makes opens a moment later.
    void merge(const QString& draggedID, const QString& targetID);

    // --- The menu

    Q_INVOKABLE void showMenu();

    // --- The layout as a whole

    // Writes the private layout file, once it is known what that held. Before the first change of a day, a
    // copy of it is kept.
    void save();
    // The layout that was late. It takes the place of what was arranged meanwhile, but not of an import or a
    // reset: these stand for any layout.
    void takeLateLayout(StoredLayout stored);
    // The preferences have been read only now: takes the grid, the background and the language from them.
    void takeLatePreferences();
    // Returns when what was saved is on the disk. Safe on any thread.
    void flushSaves() {
        store_.flush();
        history_.flush();
    }

    // The layout and the grid as a file for other machines: paths below the home folder are written from "~".
    [[nodiscard]] QByteArray exportLayoutData() const;
    // Takes layout and grid from such a file. Applications that are not installed are left out, several that
    // the file does not know come into a folder of their own. Before the first scan, it waits for it. After a
    // failure nothing has changed.
    [[nodiscard]] std::optional<InvalidLayoutFile> importLayout(QByteArrayView data);
    // All applications by their names, no folders.
    void resetLayout();
    // Folders among applications; what folders hold stays in its order.
    void sortByName();

    // --- Settings, each kept in the preferences as soon as it changes

    // The grids offered, as columns and rows.
    static constexpr std::array<std::pair<int, int>, 6> gridPresets = {
        {{5, 4}, {6, 4}, {7, 5}, {8, 5}, {8, 6}, {9, 6}}};

    // The page stays one of those that are left. The caller brings the animation.
    void setColumns(int columns);
    void setRows(int rows);
    void setGrid(int columns, int rows);
    void setBackground(BackgroundTheme background);
    void setLanguage(AppLanguage language);
    [[nodiscard]] bool opensAtLogin() const;
    void toggleOpenAtLogin();

Q_SIGNALS:
    void itemsChanged();
    void pageChanged();
    void pageCountChanged();
    void scrollOffsetChanged();
    void searchTextChanged();
    // While searching, or when a search ends: the displayed items are others now.
    void searchResultsChanged();
    void openFolderIDChanged();
    void dragChanged();
    void mergeTargetIDChanged();
    void pressedIDChanged();
    void presentedChanged();
    void focusSearchTokenChanged();
    void sizeChanged();
    void gridChanged();
    void backgroundChanged();
    // The interface language is another and stored: texts are to be made anew.
    void languageDidChange();
    // Names may read differently now: the first scan after a start, or a renamed application.
    void namesChanged();
    // A scan is in and has been applied.
    void scanned(const std::vector<amberquill::AppInfo>& installed);

private:
    void setItems(LaunchItems items);
    // Changes the layout in place; every change of it goes through here.
    void editItems(const std::function<void(LaunchItems&)>& edit);
    void setPage(int page);
    void setScrollOffset(double offset);
    void setOpenFolderID(const std::optional<QUuid>& id);
    void setPressedID(const QString& id);
    void setDrag(const std::optional<DragInfo>& drag);
    void setMergeTarget(const QString& id);
    void handleTap(const Hit& hit);
    void hideThenOpen(const std::optional<QString>& path);
    const NameOrder& nameOrder();

    [[nodiscard]] DragScene dragScene() const;
    void apply(const DragSession::Actions& actions);
    void applyDeferred();
    void cancelGesture(const char* cause);
    void endTransientState(const char* cause);

    void takeScan(const ScanResult& scan);
    void rememberPlaces(const LaunchItems& before, const LaunchItems& after);
    void forgetPlaces();
    void setInstalled(const std::vector<AppInfo>& installed);
    void indexNames();
    void search();
    void searchChanged(const QString& from);

    void takeGridSide(int& side, int value);
    void takeBackground(BackgroundTheme background);
    void applyLanguage();
    [[nodiscard]] static int storedColumns(const Preferences& preferences);
    [[nodiscard]] static int storedRows(const Preferences& preferences);
    void setGridSide(int& side, int value, const QString& key);
    void applyWaitingImport();
    void keepCopy(LayoutHistory::Reason reason);
    void replaceLayout(
        LaunchItems items, const std::function<void()>& before = [] {});

    Services services_;
    LayoutStore store_;
    LayoutHistory history_;
    std::weak_ptr<LauncherController> controller_;
    std::optional<NameOrder> nameOrder_; // made when first needed: it costs milliseconds

    LaunchItems items_;
    QHash<QString, AppInfo> apps_;
    int page_ = 0;
    double scrollOffset_ = 0;
    QString searchText_;
    std::optional<QUuid> openFolderID_;
    QString pressedID_;
    bool presented_ = false;
    int focusSearchToken_ = 0;
    QSizeF size_;
    int columns_;
    int rows_;
    BackgroundTheme background_;
    AppLanguage language_;

    std::vector<AppInfo> installed_;         // as the last scan found them, in its order
    std::optional<SearchIndex> searchIndex_; // of `installed_`; none until it is made or needed
    std::vector<std::size_t> found_;         // positions in `installed_`
    LaunchItems foundItems_;
    int browsePage_ = 0; // shown when the search began

    std::optional<LayoutFile> waitingImport_; // for the first scan
    PlaceMemory places_;
    MissingApplications missing_;
    DelayedWork nextDecision_; // about those of `missing_` that stay
    bool scanning_ = false;
    bool hasScanned_ = false;
    PageTurns pageTurns_;

    DragSession dragSession_;
    // As the session's actions have set them.
    std::optional<DragInfo> drag_;
    QString mergeTargetID_;
    DragTracker tracker_;
    DelayedWork dragTimer_;
    DelayedWork glideEnd_;
    std::optional<std::vector<AppInfo>> deferredScan_; // came in during a drag
    std::optional<StoredLayout> deferredLayout_;       // so did this
    bool awaitsLayout_;
    bool layoutIsReplaced_ = false; // before it has come
    DelayedWork newFolderOpening_;

    Context indexing_; // of `installed_`: the index under way
    Context context_;
};

} // namespace amberquill
