#include "window/ThemeNames.h"

#include "localization/L.h"

#include <array>

namespace amberquill {

namespace {

struct Names {
    const char16_t* blue;
    const char16_t* purple;
    const char16_t* green;
};

// In the order of AppLanguage, without `System`.
constexpr std::array<Names, allAppLanguages.size() - 1> table = {{
    {u"Blue", u"Purple", u"Green"},
    {u"Blu", u"Viola", u"Verde"},
    {u"Azul", u"Morado", u"Verde"},
    {u"Bleu", u"Violet", u"Vert"},
    {u"Blau", u"Lila", u"Grün"},
    {u"蓝色", u"紫色", u"绿色"},
    {u"ブルー", u"パープル", u"グリーン"},
}};

} // namespace

QString themeName(BackgroundTheme theme) {
    const Names& names = table.at(static_cast<std::size_t>(L::effectiveLanguage()) -
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

} // namespace amberquill
