#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QImage>
#include <QSize>
#include <optional>

namespace amberquill::desktop {

// The size that a PNG file's header states; none where it is not one.
[[nodiscard]] std::optional<QSize> pngSize(QByteArrayView bytes);

// Decodes a PNG file whose size is known to be bearable; with its colour profile, if it has one. Null:
// broken. Read by libpng itself, as nearly all icons are: Qt's reader first looks through its plugins, and
// leaves what libpng has to say about a broken file on standard error.
[[nodiscard]] QImage decodedPng(const QByteArray& bytes);

} // namespace amberquill::desktop
