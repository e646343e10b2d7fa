#pragma once

namespace amberquill::desktop {

// Has everything loaded and read that decodedIcon() opens files for, but fonts, and has libraries say nothing
// on standard error any more. For a process that gives up the file system before it decodes; to be called
// once, before other threads.
void prepareDecoders();

// Has the configuration of fonts read, and the lists of what is installed: after that only fonts are opened.
void prepareFonts();

} // namespace amberquill::desktop
