#pragma once

#include <QByteArrayView>

namespace amberquill::desktop {

inline constexpr qsizetype maximumPropertyListBytes = qsizetype{1024} * 1024;

// Whether a property list, binary or XML, may be handed to the library that reads it: no larger than an
// information property list ever is, and not built to make its reader recurse without end or to grow when it
// is unfolded (in a binary list a value may stand for many copies). Says nothing on whether it is well formed
// beyond that.
[[nodiscard]] bool isSafePropertyList(QByteArrayView bytes);

// Whether the bytes are a binary property list, version 0.
[[nodiscard]] bool isBinaryPropertyList(QByteArrayView bytes);

} // namespace amberquill::desktop
