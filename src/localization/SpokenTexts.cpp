#include "localization/SpokenTexts.h"

#include "localization/L.h"

#include <array>

namespace amberquill {

namespace {

struct Texts {
    const char16_t* oneApp;
    const char16_t* apps;
    const char16_t* page;
    const char16_t* clear;
};

// In the order of AppLanguage, without `System`.
constexpr std::array<Texts, allAppLanguages.size() - 1> spokenTable = {{
    {u"%1, folder, %2 app", u"%1, folder, %2 apps", u"Page %1 of %2", u"Clear"},
    {u"%1, cartella, %2 app", u"%1, cartella, %2 app", u"Pagina %1 di %2", u"Cancella"},
    {u"%1, carpeta, %2 app", u"%1, carpeta, %2 apps", u"Página %1 de %2", u"Borrar"},
    {u"%1, dossier, %2 app", u"%1, dossier, %2 apps", u"Page %1 sur %2", u"Effacer"},
    {u"%1, Ordner, %2 App", u"%1, Ordner, %2 Apps", u"Seite %1 von %2", u"Löschen"},
    {u"%1，文件夹，%2 个应用", u"%1，文件夹，%2 个应用", u"第 %1 页，共 %2 页", u"清除"},
    {u"%1、フォルダ、アプリ%2個", u"%1、フォルダ、アプリ%2個", u"ページ %1 / %2", u"消去"},
}};

const Texts& texts() {
    return spokenTable.at(static_cast<std::size_t>(L::effectiveLanguage()) -
                          static_cast<std::size_t>(AppLanguage::English));
}

} // namespace

QString spokenFolder(const QString& name, qsizetype apps) {
    return QString::fromUtf16(apps == 1 ? texts().oneApp : texts().apps).arg(name, QString::number(apps));
}

QString spokenPage(int number, int count) {
    return QString::fromUtf16(texts().page).arg(QString::number(number), QString::number(count));
}

QString spokenClear() {
    return QString::fromUtf16(texts().clear);
}

} // namespace amberquill
