// shell/: makes the objects and connects them. `main` makes the desktop's answers, the delegate the objects
// that live as long as the process.
#pragma once

#include "data/KeptIcons.h"
#include "model/LauncherModel.h"
#include "model/LayoutStore.h"
#include "platform/GlobalShortcut.h"
#include "platform/MainBundle.h"
#include "platform/ProgramInstaller.h"
#include "shell/FocusKeeper.h"
#include "shell/FrameLog.h"
#include "shell/HotKey.h"
#include "shell/IconDiskCache.h"
#include "shell/LiveRefresh.h"
#include "shell/MainMenu.h"
#include "shell/MemoryRelease.h"
#include "shell/NameDiskCache.h"
#include "shell/VisibilityController.h"
#include "updates/dialogs/ProgramUpdates.h"
#include "window/LauncherMenu.h"
#include "window/LauncherWindowController.h"
#include "window/LayoutDialogs.h"

#include <QHash>
#include <QObject>
#include <QSessionManager>
#include <QStringList>
#include <memory>
#include <optional>
#include <vector>

namespace amberquill {

class ActivationTokens;
class ApplicationOpener;
class Backdrop;
class FileSystem;
class FolderWatcher;
class MainQueue;
class MotionPreference;
class Preferences;
class StatusItem;
class ScreenCapture;
class ScrollDevices;
class WindowSystem;

// What the first frame needs from the disk.
struct StartupData {
    StoredLayout layout;
    bool layoutIsLate = false;       // the layout is still being read; the model gets it later
    bool preferencesAreLate = false; // see takeLatePreferences()
    QHash<QString, QString> names;   // by path
    std::vector<KeptIcon> icons;
};

// Owns the model and the window's controller and ties them to what happens to the application.
class AppDelegate final : public QObject {
    Q_OBJECT

public:
    // What the desktop answers; all of it outlives the delegate.
    struct Services {
        MainQueue& queue;
        FileSystem& files;
        Preferences& preferences;
        WindowSystem& windows;
        ActivationTokens& tokens;
        ApplicationOpener& opener;
        FolderWatcher& watcher;
        StatusItem& statusItem;
        const ScrollDevices& scrollDevices;
        ScreenCapture& screens;
        std::shared_ptr<const Backdrop> firstBackdrop; // null: there is none
        MotionPreference& motion;
        std::function<ScanResult()> scan;
        std::function<void()> prepareOpening; // called once the launcher is on the screen
        std::function<void()> retryIcons;
        StartupData startupData;
        QString applicationSupport;
        QString caches;
        QString language;
        QStringList watchedFolders;
        HomeFolders homes = {};
        std::function<void(AppLanguage)> applyToFrameworks = [](AppLanguage) {};
        std::shared_ptr<LoginItem> loginItem = std::make_shared<NullLoginItem>();
        std::shared_ptr<GlobalShortcut> shortcut = std::make_shared<NullGlobalShortcut>();
        std::shared_ptr<const MainBundle> bundle = std::make_shared<NullMainBundle>();
        std::shared_ptr<ProgramInstaller> installer = std::make_shared<NullProgramInstaller>();
        // Runs what writes everything that waits to be saved, each piece of it on a thread of its own or one
        // after the other. May let go of them when they take too long; they use the delegate until they end.
        std::function<void(std::vector<std::function<void()>> flushes)> runFlushes = [](const auto& flushes) {
            for (const auto& flush : flushes) {
                flush();
            }
        };
        std::function<void()> trimHeap = [] {}; // gives what was freed back to the system
    };

    explicit AppDelegate(Services services);

    // Has the first page's icons decoded where they were not kept; whether there are none of these.
    [[nodiscard]] bool firstPageIsReady();

    // What was read late has been given to the preferences.
    void takeLatePreferences();

    // Once the event loop is about to run: makes the window and shows the launcher.
    void applicationDidFinishLaunching();

    // What others ask for from outside, with the activation token or startup id that came along; empty: none.
    // While the program is still starting, the start itself is the answer: it shows the launcher, unless the
    // last that was asked for is to hide it.
    void showLauncher(const QString& token = {});
    void hideLauncher();
    // Hides the launcher where it is shown and active; else shows it.
    void toggleLauncher(const PressOrigin& origin = {});

    // The same for a press of the launcher's keys, which a desktop may deliver by more than one route: only
    // the first of them counts.
    void toggleByPress(PressRoute route, const PressOrigin& origin);

    // A folder that a scan had given up can be read again.
    void rootAnswered();

    [[nodiscard]] LauncherModel& model() { return model_; }
    [[nodiscard]] const LauncherMenu& menu() const { return menu_; }
    // In the interface language; another one for each language that comes into effect.
    [[nodiscard]] const MainMenu& mainMenu() const { return *mainMenu_; }

private:
    void bringUp();
    void applicationStateChanged(Qt::ApplicationState state);
    [[nodiscard]] std::unique_ptr<MainMenu> makeMainMenu();
    void wireVisibility();
    [[nodiscard]] QWindow* shownWindow() const;
    void startUpdates();
    [[nodiscard]] bool isUserBusy() const;
    void openPage(const QUrl& page, QWindow& from);
    void showAbout();
    void giveFocusUp();
    // The one of ours that should have the focus; null: none.
    [[nodiscard]] QWindow* windowOfFocus() const;
    void applicationDidBecomeActive();
    void finishStart();
    void releaseMemory();
    void applicationWillTerminate();
    void sessionSaves(QSessionManager& manager);

    Services services_;
    LauncherModel model_;
    std::shared_ptr<LauncherWindowController> controller_;
    LayoutDialogs dialogs_;
    VisibilityController visibility_;
    ProgramUpdates updates_;
    LauncherMenu menu_;
    std::unique_ptr<MainMenu> mainMenu_;
    std::unique_ptr<FrameLog> frameLog_;
    std::optional<FocusKeeper> focus_;
    NameDiskCache names_;
    IconDiskCache icons_;
    LiveRefresh live_;
    MemoryRelease memory_;
    std::optional<HotKey> hotKey_;
    PressDeduplicator presses_;
    bool isActive_ = false;
    bool hadFocus_ = false;    // since the launcher was last brought up from hiding
    bool awaitsFocus_ = false; // the window system was asked for it and has not given it yet
    bool mayReturn_ = false;   // lost with a window of ours that closed, and nobody has it
    bool startsHidden_ = false;
    Context context_;
};

} // namespace amberquill
