#pragma once

#include "model/LauncherModel.h"

#include <QMenu>
#include <functional>
#include <memory>

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

    // Shows it at the pointer, above the window.
    void popUp(QWindow& above);

private:
    Services services_;
    std::unique_ptr<QMenu> menu_;
};

} // namespace amberquill
