// model/: the launcher's one observable object, and the pure rules beside it that it binds together.
#pragma once

#include <QString>
#include <optional>

namespace amberquill {

// What the model asks of the window that shows it.
class LauncherController {
public:
    LauncherController() = default;
    LauncherController(const LauncherController&) = delete;
    LauncherController& operator=(const LauncherController&) = delete;
    virtual ~LauncherController() = default;

    // Takes the launcher off the screen, then opens the application at this path, if one is given.
    virtual void hide(const std::optional<QString>& thenOpen) = 0;

    // Shows the launcher's menu at the pointer.
    virtual void showMenu() = 0;

    // Takes the keyboard focus from every field, which ends and commits what was being edited.
    virtual void endEditing() = 0;
};

} // namespace amberquill
