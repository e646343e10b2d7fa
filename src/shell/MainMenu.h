#pragma once

#include "window/LauncherWindow.h"

#include <QString>
#include <functional>
#include <memory>
#include <vector>

class QAction;
class QKeyEvent;

namespace amberquill {

class Keyboard;

// The program's main menu, in the interface language at its construction. It is never shown: a full-screen
// window has no menu bar. It holds the key equivalents that work while the launcher is up. The entries are
// plain actions, because Qt handles the shortcuts of QMenu only while a widget's window has the focus.
class MainMenu {
public:
    // One for each entry.
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

    // The keyboard outlives the menu.
    MainMenu(const Actions& actions, const Keyboard& keyboard);
    ~MainMenu();

    MainMenu(const MainMenu&) = delete;
    MainMenu& operator=(const MainMenu&) = delete;

    [[nodiscard]] const std::vector<Menu>& menus() const { return menus_; }

    // Triggers the entry with these keys. Returns whether there is one. Letters of other scripts count as the
    // Latin letters on the same keys of an American keyboard.
    [[nodiscard]] bool performKeyEquivalent(const QKeyEvent& event) const;

private:
    [[nodiscard]] int latinKey(const QKeyEvent& event) const;

    std::vector<Menu> menus_;
    const Keyboard& keyboard_;
};

} // namespace amberquill
