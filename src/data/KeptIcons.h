#pragma once

#include <QByteArray>
#include <QImage>
#include <QString>
#include <vector>

namespace amberquill {

// Decoded icons, kept in a file that may be deleted at any time, so that the first picture of a start needs
// no decoding. Never trusted for long: each is decoded again once the launcher is on the screen.
struct KeptIcon {
    QString path;           // the application's
    QImage image;           // square, premultiplied ARGB, device pixels
    bool isStandIn = false; // the application has no icon, this is what is shown for such ones

    bool operator==(const KeptIcon&) const = default;
};

// The file's content. Icons that are not square are left out.
QByteArray encodeIcons(const std::vector<KeptIcon>& icons);

// Empty for anything that `encodeIcons` did not write whole. The images share the memory of `content`.
std::vector<KeptIcon> decodeIcons(const QByteArray& content);

} // namespace amberquill
