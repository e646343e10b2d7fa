#pragma once

#include <QIcon>
#include <functional>

class QImage;

namespace amberquill {

// The brightness of a panel's background.
enum class PanelTone { Unknown, Light, Dark };

// Determines a panel's tone from a picture of the symbol on it, by the outermost pixels, which the symbol
// leaves free. Unknown where they are too transparent to tell.
[[nodiscard]] PanelTone panelTone(const QImage& symbolOnPanel);

// The status item's symbol: dark on a light panel, light on a dark one, light with a dark outline where the
// tone is unknown. If the icon theme has the program's symbolic icon, the symbol carries its name, so that
// hosts can draw that icon in a colour of their own. `drawn` is called after each drawing.
[[nodiscard]] QIcon statusSymbol(PanelTone tone, std::function<void()> drawn);

} // namespace amberquill
