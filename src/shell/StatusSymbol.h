#pragma once

#include <QIcon>
#include <functional>

class QImage;

namespace amberquill {

// Whether a symbol on a panel has to be dark or light.
enum class PanelTone { Unknown, Light, Dark };

// The panel's, from a picture of a symbol on it: by the outermost pixels, which the symbol leaves free. Where
// they are transparent, what is behind them may be anything.
[[nodiscard]] PanelTone panelTone(const QImage& symbolOnPanel);

// The status item's symbol: dark on a light panel, light on a dark one, and with an edge of the other kind
// where that is unknown. It has the name of the symbol of the icon theme, which hosts draw in a colour of
// their own, where the theme has that. `drawn` is called each time that it has been drawn.
[[nodiscard]] QIcon statusSymbol(PanelTone tone, std::function<void()> drawn);

} // namespace amberquill
