// decoder/pictures/: makes pictures of icon files. Linked into amberquill-icons, not into the launcher.
//
// - IconDecoder is the answer: begin reading here. It detects the format and calls the reader.
// - IconFormat detects the format by the first bytes.
// - RasterPicture reads PNG, JPEG, WebP, TIFF, XPM and ICO by Qt. IcnsContainer reads ICNS.
// - SvgDrawing draws SVG by librsvg, compressed or not.
// - ImageFitting scales a picture to the size that was asked for.
//
// Bounds: 8 MiB for a file and for its unpacked document, 32 million pixels and 256 MiB for a picture in a
// file, 4096 pixels each way for the result. Time is not bounded here: the process has limits
// (decoder/process), and the launcher ends it. A broken file gives a null picture. Files that a drawing
// refers to are not opened.
#pragma once

#include <QByteArray>
#include <QImage>
#include <string>
#include <vector>

namespace amberquill::desktop {

// Whether this process can read fonts. Text in drawings needs them.
enum class Fonts { Absent, Present };

struct DecodedIcon {
    QImage image;            // null: broken, not an icon, over a bound, or `needsFonts`
    bool needsFonts = false; // a drawing that may have text, while fonts are absent
};

// Makes a picture of exactly `edge` × `edge` device pixels from an icon file's bytes: premultiplied ARGB,
// device pixel ratio 1, proportions kept, centred. The format is detected from the bytes, not the file's
// name: PNG, SVG (also compressed), ICNS, JPEG, WebP, TIFF, XPM, ICO. Of several sizes in a file the best one
// is taken, of an animation the first frame. No other file is opened but fonts.
//
// Hostile bytes may make this take any time and any memory, or crash the process. Any thread.
[[nodiscard]] DecodedIcon decodedIcon(const QByteArray& bytes, int edge, Fonts fonts);

// For a process that gives up the file system before it decodes: loads all files that decodedIcon() needs
// but fonts, and silences the libraries. Called once, before other threads start.
void prepareDecoders();

// Loads the configuration of fonts and the lists of installed ones: after that only font files are opened.
void prepareFonts();

// The paths that drawing text reads after prepareFonts(): the folders of fonts and of fontconfig's caches,
// and its configuration files. Some may not exist.
[[nodiscard]] std::vector<std::string> fontPaths();

} // namespace amberquill::desktop
