#pragma once

class QMenu;

namespace amberquill {

class LauncherModel;
class LayoutDialogs;

// Appends the launcher's settings to a menu: grid, background, language, the layout as a whole, start at
// login. Titles and check marks are the current ones: menus are made anew for each opening. Model and dialogs
// outlive the menu.
void addSettingsItems(QMenu& menu, LauncherModel& model, LayoutDialogs& dialogs);

} // namespace amberquill
