#pragma once

#include <string_view>

namespace amberquill::desktop {

// Why a drawing is not given to the SVG renderer.
enum class SvgVerdict {
    Harmless,
    NotSvg,            // another kind of text, not well-formed, or in an encoding that hides what it says
    TooLarge,          // text, embedded pictures or coordinates
    TooDeep,           // elements in elements, or references to references
    TooMuchToDraw,     // elements, counting what is drawn again by reference as often as it is drawn
    SuspectEntities,   // entities that build on each other, contain markup, or are read from elsewhere
    ExternalReference, // a picture or style sheet that is not in the file
};

// Looks an SVG document over before it is drawn. The renderer follows references wherever they lead, opens
// any file an image names (a pipe would stop the program), draws what refers to itself, and cannot be stopped
// once it has begun; so what would keep it busy is recognised beforehand. One pass over the text, well under
// the time that drawing takes.
[[nodiscard]] SvgVerdict inspectSvg(std::string_view text);

} // namespace amberquill::desktop
