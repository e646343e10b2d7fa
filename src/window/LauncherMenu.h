#pragma once

#include "model/LauncherModel.h"

#include <QMenu>
#include <QPoint>
#include <functional>
#include <memory>
#include <optional>

class QWindow;

namespace amberquill {

class LayoutDialogs;

// The launcher's pop-up menu.
class LauncherMenu final {
public:
    struct Services {
        LauncherModel& model;
        LayoutDialogs& dialogs;
        std::function<void()> hideLauncher;
        std::function<void()> quit;
        // Other parts of the program append their entries. May be null.
        std::function<void(QMenu&)> addUpdateItems;
        std::function<void(QMenu&)> addPresenceItems;
    };

    explicit LauncherMenu(Services services);
    ~LauncherMenu();

    LauncherMenu(const LauncherMenu&) = delete;
    LauncherMenu& operator=(const LauncherMenu&) = delete;

    // A new menu with the current titles and check marks.
    [[nodiscard]] std::unique_ptr<QMenu> make() const;

    // Shows a new menu above the window: at a place in global points, for the keyboard, with the first entry
    // marked; or else at the pointer.
    void popUp(QWindow& above, const std::optional<QPoint>& place);

private:
    Services services_;
    std::unique_ptr<QMenu> menu_;
};

} // namespace amberquill
