#pragma once

#include <QByteArray>

namespace amberquill::desktop {

// Whether an SVG document, in any of the Unicode encodings, has an element for text. True as well where that
// is in a comment, or not drawn.
[[nodiscard]] bool mayHoldText(const QByteArray& document);

} // namespace amberquill::desktop
