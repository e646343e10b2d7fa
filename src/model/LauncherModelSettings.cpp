#include "localization/L.h"
#include "model/LauncherController.h"
#include "model/LauncherModel.h"
#include "platform/LoginItem.h"
#include "platform/Preferences.h"

#include <algorithm>

namespace amberquill {

namespace {

constexpr int defaultColumns = 7;
constexpr int defaultRows = 5;

// The bounds of a stored grid side: a page has at least one cell, and their number fits an integer.
constexpr int largestGridSide = 1000;

constexpr auto columnsKey = QLatin1StringView("gridColumns");
constexpr auto rowsKey = QLatin1StringView("gridRows");
constexpr auto backgroundKey = QLatin1StringView("backgroundTheme");

int gridSide(const Preferences& preferences, const QString& key, int otherwise) {
    return std::clamp(preferences.integer(key).value_or(otherwise), 1, largestGridSide);
}

} // namespace

int LauncherModel::storedColumns(const Preferences& preferences) {
    return gridSide(preferences, columnsKey, defaultColumns);
}

int LauncherModel::storedRows(const Preferences& preferences) {
    return gridSide(preferences, rowsKey, defaultRows);
}

BackgroundTheme LauncherModel::storedBackground(const Preferences& preferences) {
    const auto text = preferences.string(backgroundKey);
    return text ? backgroundTheme(*text).value_or(BackgroundTheme::Blue) : BackgroundTheme::Blue;
}

void LauncherModel::setColumns(int columns) {
    setGridSide(columns_, columns, columnsKey);
}

void LauncherModel::setRows(int rows) {
    setGridSide(rows_, rows, rowsKey);
}

void LauncherModel::setGrid(int columns, int rows) {
    setColumns(columns);
    setRows(rows);
}

void LauncherModel::takeLatePreferences() {
    takeGridSide(columns_, storedColumns(services_.preferences));
    takeGridSide(rows_, storedRows(services_.preferences));
    takeBackground(storedBackground(services_.preferences));
    L::loadLanguage(services_.preferences);
    language_ = L::language();
    applyLanguage();
}

void LauncherModel::setGridSide(int& side, int value, const QString& key) {
    const int allowed = std::clamp(value, 1, largestGridSide);
    services_.preferences.setInteger(key, allowed);
    takeGridSide(side, allowed);
}

void LauncherModel::takeGridSide(int& side, int value) {
    const int pagesBefore = displayedPageCount();
    const int valueBefore = std::exchange(side, value);
    clampPage();
    if (value != valueBefore) {
        Q_EMIT gridChanged();
    }
    if (displayedPageCount() != pagesBefore) {
        Q_EMIT pageCountChanged();
    }
}

void LauncherModel::setBackground(BackgroundTheme background) {
    services_.preferences.setString(backgroundKey, rawValue(background));
    takeBackground(background);
}

void LauncherModel::takeBackground(BackgroundTheme background) {
    const BackgroundTheme before = std::exchange(background_, background);
    if (background != before) {
        Q_EMIT backgroundChanged();
    }
}

void LauncherModel::setLanguage(AppLanguage language) {
    language_ = language;
    L::setLanguage(language);
    services_.preferences.setString(QStringLiteral("appLanguage"), rawValue(language));
    applyLanguage();
}

void LauncherModel::applyLanguage() {
    services_.applyToFrameworks(language_);
    Q_EMIT languageDidChange();
}

bool LauncherModel::opensAtLogin() const {
    return services_.loginItem->isEnabled();
}

void LauncherModel::toggleOpenAtLogin() {
    if (services_.loginItem->isEnabled()) {
        services_.loginItem->disable();
    } else {
        services_.loginItem->enable();
    }
}

void LauncherModel::showMenu() {
    if (const auto controller = controller_.lock()) {
        controller->showMenu();
    }
}

} // namespace amberquill
