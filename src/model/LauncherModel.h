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

// The pointer's location during a drag, in the launcher's content. An object of its own, so that a move of
// the pointer updates only the floating icon.
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

// The error of an import whose file is not a layout.
struct InvalidLayoutFile {
    // For the user, in the interface language.
    [[nodiscard]] static QString errorDescription() { return L::invalidLayoutFile(); }
};

// The launcher's state and the operations on it. Views and controllers read and change the launcher only
// through this object. A change of a property is signalled at once, inside the animation that belongs to it.
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
    // The services outlive the model.
    struct Services {
        MainQueue& queue;
        FileSystem& files;
        Preferences& preferences;
        QString applicationSupport;                   // the layout's folder is inside this one
        std::function<ScanResult()> scan;             // runs in the background
        QHash<QString, QString> rememberedNames = {}; // by path; shown until the first scan
        std::optional<StoredLayout> layout = {};      // none: the model reads it
        HomeFolders homes = {};
        // Sets the language of the texts of Qt.
        std::function<void(AppLanguage)> applyToFrameworks = [](AppLanguage) {};
        std::shared_ptr<LoginItem> loginItem = std::make_shared<NullLoginItem>();
        bool layoutIsLate = false; // nothing is read: `takeLateLayout` brings the layout
    };

    explicit LauncherModel(Services services, QObject* parent = nullptr);
    ~LauncherModel() override;

    LauncherModel(const LauncherModel&) = delete;
    LauncherModel& operator=(const LauncherModel&) = delete;

    // The stored background theme.
    [[nodiscard]] static BackgroundTheme storedBackground(const Preferences& preferences);

    // The window; held weakly.
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
    // Asks the view to focus the search field.
    void focusSearch();

    // --- Pages

    [[nodiscard]] GridMetrics metrics() const { return {size_, columns_, rows_}; }
    // The items on the pages: the layout, or the search results.
    [[nodiscard]] const LaunchItems& displayedItems() const { return isSearching() ? foundItems_ : items_; }
    [[nodiscard]] int pageCount(const LaunchItems& items) const;
    [[nodiscard]] int displayedPageCount() const { return pageCount(displayedItems()); }
    [[nodiscard]] std::vector<VisibleEntry> visibleEntries() const;
    void clampPage();
    // Shows `page`, or the nearest there is. The caller brings the animation.
    void goToPage(int page);
    // The same, on the page spring.
    Q_INVOKABLE void turnToPage(int page);
    void handleScroll(const ScrollEvent& event);

    // A folder's name; an application's name from the scan, or else from its path.
    [[nodiscard]] QString name(const LaunchItem& item) const;
    [[nodiscard]] QString appName(const QString& path) const;

    // --- Showing and scanning

    // Called just before the launcher is shown: resets search, folder, drag and scroll offset, and scans.
    void willShow();
    // Called when the launcher begins to hide: cancels the pointer's gesture.
    void willHide();
    // Scans in the background, unless a scan is running.
    void refreshApps();
    [[nodiscard]] bool isScanning() const { return scanning_; }
    // Removes applications that are not installed, and remembers their places. Applications that are back
    // return to their places; new ones are appended.
    void applyScan(const std::vector<AppInfo>& installed);

    // --- Search

    // Starts, changes or ends a search. A search begins on the first page; when it ends, the page from before
    // is shown again.
    void setSearchText(const QString& text);
    // Whether the text has more than white space.
    [[nodiscard]] bool isSearching() const { return !QStringView(searchText_).trimmed().isEmpty(); }
    // The applications found, best match first.
    [[nodiscard]] std::vector<AppInfo> searchResults() const;
    [[nodiscard]] bool findsNothing() const { return isSearching() && foundItems_.empty(); }
    Q_INVOKABLE void launchFirstResult();

    // --- Pointer

    [[nodiscard]] Hit hitTest(const QPointF& point) const;
    void pointerChanged(const PointerGesture& gesture);
    void pointerEnded(const PointerGesture& gesture);
    // The gesture was cancelled: it is not a tap, a drag ends where it is, and the rest of the gesture is
    // ignored.
    void pointerCancelled();
    // Does what a tap on this tile does, on the page or in the open folder. For the keyboard and screen
    // readers.
    Q_INVOKABLE void activate(const QString& id);

    // --- Folders

    // `openFolder` and `renameFolder` do nothing for an id without a folder.
    [[nodiscard]] std::optional<std::size_t> folderIndex(const QUuid& id) const;
    // The folder with this id; null: none.
    [[nodiscard]] const Folder* folder(const QUuid& id) const;
    void openFolder(const QUuid& id);
    void closeFolder();
    // Accepts any text, also an empty one. Saved when the folder is closed.
    void renameFolder(const QUuid& id, const QString& name);
    // Appends an empty folder and shows its page.
    Q_INVOKABLE void newEmptyFolder();

    // --- Drag and drop

    // None between drags.
    [[nodiscard]] const std::optional<DragInfo>& drag() const { return drag_; }
    [[nodiscard]] QString draggedID() const { return drag_ ? drag_->id : QString(); }
    // The tile marked as the merge target of the dragged application; empty: none.
    [[nodiscard]] QString mergeTargetID() const { return mergeTargetID_; }
    [[nodiscard]] DragTracker* tracker() { return &tracker_; }
    // The key of the intent that is carried out when the icon rests; empty: none.
    [[nodiscard]] QString pendingKey() const { return dragSession_.pendingKey(); }
    void cancelPending();

    // The edits of a drag, each on its animation. They do not save: the end of the drag does. They do nothing
    // when the item, the folder or the index does not exist.
    void move(const QString& id, std::size_t to);
    void moveInFolder(const QUuid& folderID, const QString& path, std::size_t to);
    void pullOut(const QString& path, const QUuid& folderID);
    // A new folder opens 0.3 s later.
    void merge(const QString& draggedID, const QString& targetID);

    // --- The menu

    Q_INVOKABLE void showMenu();

    // --- The layout as a whole

    // Writes the private layout file. Does nothing until a late layout has come. Before the first change of a
    // day, a copy of the layout is kept.
    void save();
    // The layout was read late. It replaces changes made meanwhile, but not an import or a reset: these would
    // have replaced it.
    void takeLateLayout(StoredLayout stored);
    // The preferences were read late: takes grid, background and language from them.
    void takeLatePreferences();
    // Returns when everything saved is on the disk. Any thread.
    void flushSaves() {
        store_.flush();
        history_.flush();
    }

    // The layout and the grid as an exchange file: paths below the home folder begin with "~".
    [[nodiscard]] QByteArray exportLayoutData() const;
    // Takes layout and grid from an exchange file. Applications that are not installed are left out; several
    // that are not in the file are put into a new folder. Before the first scan, the import waits for it. A
    // failure changes nothing.
    [[nodiscard]] std::optional<InvalidLayoutFile> importLayout(QByteArrayView data);
    // Lays out all applications by name, without folders.
    void resetLayout();
    // Sorts folders and applications together; the order inside folders stays.
    void sortByName();

    // --- Settings, each kept in the preferences as soon as it changes

    // The grids offered, as columns and rows.
    static constexpr std::array<std::pair<int, int>, 6> gridPresets = {
        {{5, 4}, {6, 4}, {7, 5}, {8, 5}, {8, 6}, {9, 6}}};

    // The page stays in range. The caller brings the animation.
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
    // The displayed items have changed because of a search or its end.
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
    // The interface language has changed and is stored: texts must be made again.
    void languageDidChange();
    // Names may have changed: after the first scan, or when an application was renamed.
    void namesChanged();
    // A scan has been applied.
    void scanned(const std::vector<amberquill::AppInfo>& installed);

private:
    void setItems(LaunchItems items);
    // Every change of the layout goes through here.
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
    std::optional<NameOrder> nameOrder_; // made on first use: it takes milliseconds

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

    std::vector<AppInfo> installed_;         // in the order of the last scan
    std::optional<SearchIndex> searchIndex_; // of `installed_`
    std::vector<std::size_t> found_;         // positions in `installed_`
    LaunchItems foundItems_;
    int browsePage_ = 0; // the page when the search began

    std::optional<LayoutFile> waitingImport_; // for the first scan
    PlaceMemory places_;
    MissingApplications missing_;
    DelayedWork nextDecision_; // the scan that decides about `missing_`
    bool scanning_ = false;
    bool hasScanned_ = false;
    PageTurns pageTurns_;

    DragSession dragSession_;
    // Set by the session's actions.
    std::optional<DragInfo> drag_;
    QString mergeTargetID_;
    DragTracker tracker_;
    DelayedWork dragTimer_;
    DelayedWork glideEnd_;
    std::optional<std::vector<AppInfo>> deferredScan_; // arrived during a drag
    std::optional<StoredLayout> deferredLayout_;       // likewise
    bool awaitsLayout_;
    bool layoutIsReplaced_ = false; // while it was awaited
    DelayedWork newFolderOpening_;

    Context indexing_; // the running making of `searchIndex_`
    Context context_;
};

} // namespace amberquill
