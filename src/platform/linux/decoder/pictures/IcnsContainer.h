#pragma once

#include <QByteArrayView>
#include <QImage>
#include <vector>

namespace amberquill::desktop {

// One picture of an ICNS file, which has one icon in several sizes.
struct IcnsPicture {
    // Png: a whole PNG file. Packed: three planes of run-length packed bytes (red, green, blue), and separate
    // alpha bytes. PackedWithAlpha: four such planes, alpha first.
    enum class Kind { Png, Packed, PackedWithAlpha };

    Kind kind = Kind::Png;
    int edge = 0;         // pixels each way
    QByteArrayView data;  // points into the file's bytes
    QByteArrayView alpha; // of Packed, also in the file's bytes; empty: opaque

    bool operator==(const IcnsPicture&) const = default;
};

// The file's pictures in its order. Obsolete formats (fewer than 256 levels), unsupported ones (JPEG 2000)
// and pictures that reach beyond the file's end are left out.
[[nodiscard]] std::vector<IcnsPicture> icnsPictures(QByteArrayView file);

// Unpacks a picture that is not a PNG. Null: the data is too short.
[[nodiscard]] QImage unpackedIcnsPicture(const IcnsPicture& picture);

} // namespace amberquill::desktop
