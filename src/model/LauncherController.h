// model/: LauncherModel, the one observable object, and the pure rules that it uses.
#pragma once

#include <QString>
#include <optional>

namespace amberquill {

// What the model needs from its window.
class LauncherController {
public:
    LauncherController() = default;
    LauncherController(const LauncherController&) = delete;
    LauncherController& operator=(const LauncherController&) = delete;
    virtual ~LauncherController() = default;

    // Hides the launcher, then opens the application at this path, if one is given.
    virtual void hide(const std::optional<QString>& thenOpen) = 0;

    // Shows the launcher's menu at the pointer.
    virtual void showMenu() = 0;

    // Removes the keyboard focus from all fields, which commits an edit.
    virtual void endEditing() = 0;
};

} // namespace amberquill
