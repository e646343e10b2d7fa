#include "shell/MainMenu.h"

#include "localization/L.h"
#include "platform/Keyboard.h"
#include "window/ClosureMenuItem.h"

#include <QChar>
#include <QKeyEvent>
#include <QKeySequence>
#include <utility>

namespace amberquill {
namespace {

void add(MainMenu::Menu& menu, const QString& title, Qt::Key key, std::function<void()> handler) {
    auto item = std::make_unique<ClosureMenuItem>(title, std::move(handler));
    if (key != Qt::Key_unknown) {
        item->setShortcut(QKeySequence(Qt::CTRL | key));
    }
    menu.items.push_back(std::move(item));
}

void addSeparator(MainMenu::Menu& menu) {
    auto item = std::make_unique<QAction>();
    item->setSeparator(true);
    menu.items.push_back(std::move(item));
}

bool isForeignLetter(int key) {
    constexpr int firstWithoutText = Qt::Key_Escape;
    if (key <= 0 || key >= firstWithoutText) {
        return false;
    }
    const auto letter = static_cast<char32_t>(key);
    return QChar::isLetter(letter) && QChar::script(letter) != QChar::Script_Latin;
}

MainMenu::Menu applicationMenu(const MainMenu::Actions& actions) {
    MainMenu::Menu menu;
    add(menu, L::about(), Qt::Key_unknown, actions.about);
    addSeparator(menu);
    add(menu, L::hide(), Qt::Key_H, actions.hide);
    add(menu, L::quit(), Qt::Key_Q, actions.quit);
    return menu;
}

MainMenu::Menu editMenu(const MainMenu::Actions& actions) {
    MainMenu::Menu menu{L::edit(), {}};
    const auto addEdit = [&](const QString& title, Qt::Key key, EditCommand command) {
        add(menu, title, key, [edit = actions.edit, command] { edit(command); });
    };
    addEdit(L::undo(), Qt::Key_Z, EditCommand::Undo);
    addSeparator(menu);
    addEdit(L::cut(), Qt::Key_X, EditCommand::Cut);
    addEdit(L::copy(), Qt::Key_C, EditCommand::Copy);
    addEdit(L::paste(), Qt::Key_V, EditCommand::Paste);
    addEdit(L::selectAll(), Qt::Key_A, EditCommand::SelectAll);
    addSeparator(menu);
    add(menu, L::close(), Qt::Key_W, actions.close);
    return menu;
}

} // namespace

MainMenu::MainMenu(const Actions& actions, const Keyboard& keyboard)
    : keyboard_(keyboard) {
    menus_.push_back(applicationMenu(actions));
    menus_.push_back(editMenu(actions));
}

MainMenu::~MainMenu() = default;

int MainMenu::latinKey(const QKeyEvent& event) const {
    if (isForeignLetter(event.key())) {
        if (const char letter = keyboard_.americanLetter(event.nativeScanCode()); letter != 0) {
            return letter;
        }
    }
    return event.key();
}

bool MainMenu::performKeyEquivalent(const QKeyEvent& event) const {
    // Qt reports the active keyboard layout as a modifier.
    const Qt::KeyboardModifiers modifiers = event.modifiers() & ~Qt::GroupSwitchModifier;
    const QKeySequence pressed(QKeyCombination(modifiers, static_cast<Qt::Key>(latinKey(event))));
    for (const Menu& menu : menus_) {
        for (const auto& item : menu.items) {
            if (!item->shortcut().isEmpty() && item->shortcut() == pressed) {
                item->trigger();
                return true;
            }
        }
    }
    return false;
}

} // namespace amberquill
