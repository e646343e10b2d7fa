#include "shell/VisibilityController.h"

#include "localization/L.h"
#include "platform/MainQueue.h"
#include "platform/Preferences.h"
#include "platform/StatusItem.h"
#include "platform/WindowSystem.h"
#include "shell/ShellLog.h"
#include "window/ClosureMenuItem.h"

#include <QKeySequence>
#include <QMenu>

namespace amberquill {

namespace {

const QString dockKey = QStringLiteral("showInDock");
const QString menuBarKey = QStringLiteral("showInMenuBar");

// Seconds until a change of the task-bar entry has taken effect.
constexpr double taskBarDelay = 0.2;

ClosureMenuItem& add(QMenu& menu, const QString& title, std::function<void()> handler) {
    auto* item = new ClosureMenuItem(title, std::move(handler), &menu);
    menu.addAction(item);
    return *item;
}

} // namespace

VisibilityController::VisibilityController(const Services& services, QObject* parent)
    : QObject(parent)
    , services_(services) {
    services_.statusItem.setActions(
        {.clicked = context_.bind([this] { toggleLauncher(); }),
         .fillMenu = context_.bind([this](QMenu& menu) { addStatusMenu(menu); })});
}

bool VisibilityController::showsInDock() const {
    return services_.preferences.boolean(dockKey).value_or(true);
}

bool VisibilityController::showsInMenuBar() const {
    return services_.preferences.boolean(menuBarKey).value_or(false);
}

void VisibilityController::setShowsInDock(bool on) {
    if (!on && !showsInMenuBar()) {
        qCDebug(shellLog, "the task-bar entry stays on: the status item is off");
        return;
    }
    const bool wasShown = isLauncherShown();
    services_.preferences.setBoolean(dockKey, on);
    services_.windows.setListedInTaskBars(on);
    if (wasShown) {
        services_.queue.thenAfter(context_, taskBarDelay, [this] { showLauncher(); });
    }
}

void VisibilityController::toggleShowsInMenuBar() {
    if (showsInMenuBar() && !showsInDock()) {
        qCDebug(shellLog, "the status item stays on: the task-bar entry is off");
        return;
    }
    services_.preferences.setBoolean(menuBarKey, !showsInMenuBar());
    updateStatusItem();
}

void VisibilityController::apply() {
    services_.windows.setListedInTaskBars(showsInDock());
    updateStatusItem();
}

void VisibilityController::updateStatusItem() {
    if (services_.statusItem.isVisible() != showsInMenuBar()) {
        services_.statusItem.setVisible(showsInMenuBar());
    }
}

void VisibilityController::addItems(QMenu& menu, bool withHeader) {
    if (withHeader) {
        menu.addSection(L::visibility());
    }
    const bool dock = showsInDock();
    const bool menuBar = showsInMenuBar();
    const auto addSwitch = [&menu](const QString& title, bool isOn, bool canChange,
                                   std::function<void()> toggle) {
        ClosureMenuItem& item = add(menu, title, std::move(toggle));
        item.setCheckable(true);
        item.setChecked(isOn);
        item.setEnabled(canChange);
        if (!canChange) {
            item.setToolTip(L::visibilityHint());
        }
    };
    menu.setToolTipsVisible(true);
    addSwitch(L::showInDock(), dock, menuBar || !dock,
              context_.bind([this] { setShowsInDock(!showsInDock()); }));
    addSwitch(L::showInMenuBar(), menuBar, dock || !menuBar,
              context_.bind([this] { toggleShowsInMenuBar(); }));
}

void VisibilityController::addStatusMenu(QMenu& menu) {
    ClosureMenuItem& toggle = add(menu, L::toggleLauncher(), context_.bind([this] { toggleLauncher(); }));
    toggle.setShortcut(QKeySequence(Qt::CTRL | Qt::ALT | Qt::Key_Space));
    toggle.setShortcutContext(Qt::WidgetShortcut);
    menu.addSeparator();
    addItems(menu, false);
    addSettingsItems(*menu.addMenu(L::settings()));
    menu.addSeparator();
    add(menu, L::about(), context_.bind([this] { showAbout(); }));
    addUpdateItems(menu);
    menu.addSeparator();
    add(menu, L::quit(), context_.bind([this] { quit(); }));
}

} // namespace amberquill
