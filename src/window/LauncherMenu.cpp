#include "window/LauncherMenu.h"

#include "localization/L.h"
#include "window/ClosureMenuItem.h"
#include "window/LayoutDialogs.h"
#include "window/MenuStyle.h"
#include "window/SettingsItems.h"

#include <QCoreApplication>
#include <QCursor>
#include <QKeyEvent>
#include <QKeySequence>
#include <QWindow>
#include <utility>

namespace amberquill {

namespace {

void addSection(QMenu& menu, const std::function<void(QMenu&)>& addItems) {
    if (addItems) {
        addItems(menu);
    }
}

} // namespace

LauncherMenu::LauncherMenu(Services services)
    : services_(std::move(services)) {}

LauncherMenu::~LauncherMenu() = default;

std::unique_ptr<QMenu> LauncherMenu::make() const {
    auto menu = std::make_unique<QMenu>();
    addSettingsItems(*menu, services_.model, services_.dialogs);
    addSection(*menu, services_.addUpdateItems);
    menu->addSeparator();
    addSection(*menu, services_.addPresenceItems);
    menu->addSeparator();
    auto* toggle = new ClosureMenuItem(L::toggleLauncher(), services_.hideLauncher, menu.get());
    // Only a reminder: the global shortcut does not come through this menu.
    toggle->setShortcut(QKeySequence(Qt::CTRL | Qt::ALT | Qt::Key_Space));
    toggle->setShortcutContext(Qt::WidgetShortcut);
    menu->addAction(toggle);
    menu->addSeparator();
    menu->addAction(new ClosureMenuItem(L::quit(), services_.quit, menu.get()));
    return menu;
}

void LauncherMenu::popUp(QWindow& above, const std::optional<QPoint>& place) {
    menu_ = make();
    MenuStyle::applyTo(*menu_);
    menu_->winId(); // makes the window, which needs a parent before it is shown
    menu_->windowHandle()->setTransientParent(&above);
    menu_->popup(place.value_or(QCursor::pos()));
    if (place) {
        // QMenu::setActiveAction() would open the entry's submenu.
        QKeyEvent down(QEvent::KeyPress, Qt::Key_Down, Qt::NoModifier);
        QCoreApplication::sendEvent(menu_.get(), &down);
    }
}

} // namespace amberquill
