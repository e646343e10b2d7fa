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
        // What other parts of the program add to it; they may add nothing.
        std::function<void(QMenu&)> addUpdateItems;
        std::function<void(QMenu&)> addPresenceItems;
    };

    explicit LauncherMenu(Services services);
    ~LauncherMenu();

    LauncherMenu(const LauncherMenu&) = delete;
    LauncherMenu& operator=(const LauncherMenu&) = delete;

    // Made anew, with titles and marks of now.
    [[nodiscard]] std::unique_ptr<QMenu> make() const;

    // Shows it above the window: at the pointer, or at a place in global points, with its first entry marked
    // as keys expect it.
    void popUp(QWindow& above, const std::optional<QPoint>& place);

private:
    Services services_;
    std::unique_ptr<QMenu> menu_;
};

} // namespace amberquill
