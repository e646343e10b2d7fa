#pragma once

#include "window/LauncherWindow.h"

#include <QString>
#include <functional>
#include <memory>
#include <vector>

class QAction;
class QKeyEvent;

namespace amberquill {

// The program's main menu, in the language in which it was made. Nothing shows it, as there is no bar over a
// full-screen window: it holds the key equivalents that work while the launcher is up. Its entries are plain
// actions and no widgets, because Qt finds the shortcuts of menus only while a widget's window has the focus.
class MainMenu {
public:
    // What its entries do.
    struct Actions {
        std::function<void()> about;
        std::function<void()> hide;
        std::function<void()> quit;
        std::function<void(EditCommand)> edit;
        std::function<void()> close;
    };

    struct Menu {
        QString title;
        std::vector<std::unique_ptr<QAction>> items;
    };

    explicit MainMenu(const Actions& actions);
    ~MainMenu();

    MainMenu(const MainMenu&) = delete;
    MainMenu& operator=(const MainMenu&) = delete;

    [[nodiscard]] const std::vector<Menu>& menus() const { return menus_; }

    // Does what the entry with these keys does; whether there is one.
    [[nodiscard]] bool performKeyEquivalent(const QKeyEvent& event) const;

private:
    std::vector<Menu> menus_;
};

} // namespace amberquill
