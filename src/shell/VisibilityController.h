#pragma once

#include "platform/Context.h"

#include <QObject>
#include <functional>

class QMenu;

namespace amberquill {

class MainQueue;
class Preferences;
class StatusItem;
class WindowSystem;

// The two ways to reach the program beside its keys: the task-bar entry and the status item. At least one of
// them is always on. Knows nothing of the launcher: the closures below do nothing until they are set.
class VisibilityController final : public QObject {
    Q_OBJECT

public:
    // All of it outlives the controller.
    struct Services {
        Preferences& preferences;
        MainQueue& queue;
        WindowSystem& windows;
        StatusItem& statusItem;
    };

    explicit VisibilityController(const Services& services, QObject* parent = nullptr);

    std::function<void()> toggleLauncher = [] {};
    std::function<void()> showLauncher = [] {};
    std::function<bool()> isLauncherShown = [] { return false; };
    std::function<void(QMenu&)> addSettingsItems = [](QMenu&) {};
    std::function<void(QMenu&)> addUpdateItems = [](QMenu&) {};
    std::function<void()> showAbout = [] {};
    std::function<void()> quit = [] {};

    [[nodiscard]] bool showsInDock() const;
    [[nodiscard]] bool showsInMenuBar() const;

    // Both refuse to turn off the last one.
    void setShowsInDock(bool on);
    void toggleShowsInMenuBar();

    // Applies both stored switches.
    void apply();
    void updateStatusItem();

    // Appends the two switches, under a heading if asked for. The only one that is on is disabled.
    void addItems(QMenu& menu, bool withHeader);

    // Appends the status item's menu.
    void addStatusMenu(QMenu& menu);

private:
    Services services_;
    Context context_;
};

} // namespace amberquill
