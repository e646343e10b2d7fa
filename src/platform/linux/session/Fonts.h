#pragma once

namespace amberquill::desktop {

// Reads the configuration of the fonts, which Qt then finds read. Safe on any thread, and worth one of its
// own while the application object is being made.
void readFontConfiguration();

} // namespace amberquill::desktop
