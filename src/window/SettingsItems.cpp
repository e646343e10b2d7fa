#include "window/SettingsItems.h"

#include "data/BackgroundTheme.h"
#include "localization/L.h"
#include "model/LauncherModel.h"
#include "motion/Animation.h"
#include "motion/Animations.h"
#include "window/ClosureMenuItem.h"
#include "window/LanguageFlag.h"
#include "window/LayoutDialogs.h"

#include <QActionGroup>
#include <QIcon>
#include <QMenu>
#include <QPixmap>
#include <array>

namespace amberquill {

namespace {

struct ThemeNames {
    const char16_t* blue;
    const char16_t* purple;
    const char16_t* green;
};

// In the order of AppLanguage, without `System`.
constexpr std::array<ThemeNames, allAppLanguages.size() - 1> themeNames = {{
    {u"Blue", u"Purple", u"Green"},
    {u"Blu", u"Viola", u"Verde"},
    {u"Azul", u"Morado", u"Verde"},
    {u"Bleu", u"Violet", u"Vert"},
    {u"Blau", u"Lila", u"Grün"},
    {u"蓝色", u"紫色", u"绿色"},
    {u"ブルー", u"パープル", u"グリーン"},
}};

// What a background theme is called in the interface language.
QString themeName(BackgroundTheme theme) {
    const ThemeNames& names = themeNames.at(static_cast<std::size_t>(L::effectiveLanguage()) -
                                            static_cast<std::size_t>(AppLanguage::English));
    switch (theme) {
    case BackgroundTheme::Purple:
        return QString::fromUtf16(names.purple);
    case BackgroundTheme::Green:
        return QString::fromUtf16(names.green);
    case BackgroundTheme::Blue:
        break;
    }
    return QString::fromUtf16(names.blue);
}

QString literally(QString title) {
    return title.replace(QLatin1Char('&'), QStringLiteral("&&"));
}

ClosureMenuItem& add(QMenu& menu, const QString& title, std::function<void()> handler) {
    auto* item = new ClosureMenuItem(title, std::move(handler), &menu);
    menu.addAction(item);
    return *item;
}

ClosureMenuItem& addChecked(QMenu& menu, const QString& title, bool isChecked,
                            std::function<void()> handler) {
    ClosureMenuItem& item = add(menu, title, std::move(handler));
    item.setCheckable(true);
    item.setChecked(isChecked);
    return item;
}

// At most one of the menu's entries is checked.
void makeExclusive(QMenu& menu) {
    auto* group = new QActionGroup(&menu);
    for (QAction* action : menu.actions()) {
        group->addAction(action);
    }
}

void addGrids(QMenu& menu, LauncherModel& model) {
    for (const auto& [columns, rows] : LauncherModel::gridPresets) {
        const QString title = QStringLiteral("%1 × %2").arg(columns).arg(rows);
        const bool isCurrent = columns == model.columns() && rows == model.rows();
        addChecked(menu, title, isCurrent, [&model, columns = columns, rows = rows] {
            withAnimation(motion::replaceLayout, [&] { model.setGrid(columns, rows); });
        });
    }
    makeExclusive(menu);
}

void addThemes(QMenu& menu, LauncherModel& model) {
    for (const BackgroundTheme theme : allBackgroundThemes) {
        addChecked(menu, themeName(theme), theme == model.background(),
                   [&model, theme] { model.setBackground(theme); });
    }
    makeExclusive(menu);
}

void addLanguages(QMenu& menu, LauncherModel& model) {
    for (const AppLanguage language : allAppLanguages) {
        ClosureMenuItem& item = addChecked(menu, languageTitle(language), language == model.language(),
                                           [&model, language] { model.setLanguage(language); });
        const QImage flag = languageFlag(language, menu.devicePixelRatioF());
        item.setIcon(QIcon(QPixmap::fromImage(flag)));
    }
    makeExclusive(menu);
}

} // namespace

void addSettingsItems(QMenu& menu, LauncherModel& model, LayoutDialogs& dialogs) {
    addGrids(*menu.addMenu(literally(L::grid())), model);
    addThemes(*menu.addMenu(literally(L::background())), model);
    addLanguages(*menu.addMenu(literally(L::languageLabel())), model);
    menu.addSeparator();
    add(menu, L::sortByName(), [&model] { model.sortByName(); });
    add(menu, L::resetLayout(), [&dialogs] { dialogs.confirmReset(); });
    add(menu, L::exportLayout(), [&dialogs] { dialogs.exportLayout(); });
    add(menu, L::importLayout(), [&dialogs] { dialogs.importLayout(); });
    add(menu, L::rescan(), [&model] { model.refreshApps(); });
    menu.addSeparator();
    addChecked(menu, L::openAtLogin(), model.opensAtLogin(), [&model] { model.toggleOpenAtLogin(); });
}

} // namespace amberquill
