// shell/: creates the program's objects and connects them. `main` creates the implementations of platform/,
// AppDelegate creates everything that lives as long as the process.
#pragma once

#include "model/LauncherModel.h"
#include "platform/GlobalShortcut.h"
#include "platform/MainBundle.h"
#include "platform/ProgramInstaller.h"
#include "shell/FocusController.h"
#include "shell/HotKey.h"
#include "shell/IconDiskCache.h"
#include "shell/LiveRefresh.h"
#include "shell/MainMenu.h"
#include "shell/MemoryRelease.h"
#include "shell/NameDiskCache.h"
#include "shell/StartupReading.h"
#include "shell/VisibilityController.h"
#include "updates/dialogs/ProgramUpdates.h"
#include "window/LauncherMenu.h"
#include "window/LauncherWindowController.h"
#include "window/LayoutDialogs.h"

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
class Keyboard;
class MainQueue;
class MotionPreference;
class Preferences;
class StatusItem;
class ScreenCapture;
class ScrollDevices;
class WindowSystem;

// Owns the model and the window's controller, and connects them to the application's events.
class AppDelegate final : public QObject {
    Q_OBJECT

public:
    // All of it outlives the delegate.
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
        const Keyboard& keyboard;
        ScreenCapture& screens;
        std::shared_ptr<const Backdrop> firstBackdrop; // may be null
        MotionPreference& motion;
        std::function<ScanResult()> scan;
        std::function<void()> finishStart; // called when the first frame is on the screen
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
        // Runs the functions that write everything unsaved, in parallel or one after the other. May return
        // before slow ones end; those use the delegate until they end.
        std::function<void(std::vector<std::function<void()>> flushes)> runFlushes = [](const auto& flushes) {
            for (const auto& flush : flushes) {
                flush();
            }
        };
        std::function<void()> trimHeap = [] {}; // returns freed memory to the system
    };

    explicit AppDelegate(Services services);

    // Requests those of the first page's icons that the cache lacks. Returns whether it lacks none.
    [[nodiscard]] bool firstPageIsReady();

    // The preferences have been read and set, later than the start could wait for.
    void takeLatePreferences();

    // Creates the window and shows the launcher. Called just before the event loop runs.
    void applicationDidFinishLaunching();

    // Requests from outside, with the activation token or startup id that came along, if any. Until
    // applicationDidFinishLaunching() they only decide whether that shows the launcher: the last one counts.
    void showLauncher(const QString& token = {});
    void hideLauncher();
    // Hides the launcher if it is shown and active, else shows it.
    void toggleLauncher(const PressOrigin& origin = {});

    // Takes the launcher off the screen and ends the program.
    void quit();

    // The same for a press of the launcher's keys. A desktop may deliver it by several routes: the first
    // delivery counts.
    void toggleByPress(PressRoute route, const PressOrigin& origin);

    // A folder on a mount that did not answer can be read again.
    void rootAnswered();

    [[nodiscard]] LauncherModel& model() { return model_; }
    [[nodiscard]] const LauncherMenu& menu() const { return menu_; }
    // Replaced when the interface language changes.
    [[nodiscard]] const MainMenu& mainMenu() const { return *mainMenu_; }

private:
    [[nodiscard]] std::unique_ptr<MainMenu> makeMainMenu();
    void connectVisibility();
    [[nodiscard]] QWindow* shownWindow() const;
    void startUpdates();
    [[nodiscard]] bool isUserBusy() const;
    void openPage(const QUrl& page, QWindow& from);
    void showAbout();
    void finishStart();
    void releaseMemory();
    void applicationWillTerminate();
    void saveForSession(QSessionManager& manager);

    Services services_;
    LauncherModel model_;
    std::shared_ptr<LauncherWindowController> controller_;
    LayoutDialogs dialogs_;
    VisibilityController visibility_;
    ProgramUpdates updates_;
    LauncherMenu menu_;
    std::unique_ptr<MainMenu> mainMenu_;
    FocusController focus_;
    NameDiskCache names_;
    IconDiskCache icons_;
    LiveRefresh live_;
    MemoryRelease memory_;
    std::optional<HotKey> hotKey_;
    PressDeduplicator presses_;
    Context context_;
};

} // namespace amberquill
