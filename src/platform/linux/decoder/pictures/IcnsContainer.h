#pragma once

#include <QByteArrayView>
#include <QImage>
#include <vector>

namespace amberquill::desktop {

// One picture of an ICNS file, which has the same icon in several sizes.
struct IcnsPicture {
    // Png: a whole PNG file. Packed: three planes of run-length packed bytes (red, green, blue) with the
    // alpha bytes beside them. PackedWithAlpha: four such planes, alpha first.
    enum class Kind { Png, Packed, PackedWithAlpha };

    Kind kind = Kind::Png;
    int edge = 0;         // pixels each way
    QByteArrayView data;  // points into the file's bytes, as does
    QByteArrayView alpha; // of Packed; may be empty: opaque

    bool operator==(const IcnsPicture&) const = default;
};

// The pictures in the file in its order. Those in formats nobody writes any more (fewer than 256 levels), or
// that nothing here can read (JPEG 2000), are left out; so is what reaches beyond the file's end.
[[nodiscard]] std::vector<IcnsPicture> icnsPictures(QByteArrayView file);

// Unpacks a picture that is not a PNG. Null: too short.
[[nodiscard]] QImage unpackedIcnsPicture(const IcnsPicture& picture);

} // namespace amberquill::desktop
