#pragma once

#include <QByteArray>
#include <string>
#include <vector>

namespace amberquill {

// A file that no application's icon should be, and some are.
struct BadIcon {
    // What becomes of it. Overload: it keeps a processor busy for seconds, takes gigabytes of memory, or
    // ends the process that decodes it, depending on the libraries' versions; within the limits of an icon no
    // picture comes of it. All others are answered at once: Either, with or without a picture, depending on
    // the libraries' versions.
    enum class Ending { Picture, NoPicture, Either, Overload };

    std::string name; // as the file would be called
    QByteArray bytes;
    Ending ending = Ending::NoPicture;
};

using BadIcons = std::vector<BadIcon>;

} // namespace amberquill
