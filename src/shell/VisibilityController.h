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

// How the program can be reached beside its chord: the task-bar entry, the status item or both; never
// neither. Keeps the two switches and knows nothing of the launcher: what it does to it are closures, which
// do nothing until they are set.
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

    // Refused where it would turn off the last way in.
    void setShowsInDock(bool on);
    void toggleShowsInMenuBar();

    // Makes task-bar entry and status item what the switches say: at the start.
    void apply();
    void updateStatusItem();

    // Appends the two switches, the last one on disabled; under a heading if asked for.
    void addItems(QMenu& menu, bool withHeader);

    // Appends the status item's menu.
    void addStatusMenu(QMenu& menu);

private:
    Services services_;
    Context context_;
};

} // namespace amberquill
